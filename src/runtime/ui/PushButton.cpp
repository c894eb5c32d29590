#include "runtime/ui/PushButton.h"

#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>

#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {

// A push button that can also take the look of the round help button, which
// this toolkit does not have: a circle with a question mark, at the start of
// the button's frame and as high as a standard button.
class ButtonWidget : public QPushButton {
public:
    bool roundHelp = false;

    QRect HelpCircle() const {
        const int diameter = std::min({height(), width(), 24}) - 2;
        return {1, (height() - diameter) / 2, diameter, diameter};
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        if (!roundHelp) {
            QPushButton::paintEvent(event);
            return;
        }
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect circle = HelpCircle();
        const QPalette& colours = palette();
        painter.setPen(QPen(colours.color(QPalette::Mid), 1));
        painter.setBrush(isDown() ? colours.color(QPalette::Mid) : colours.color(QPalette::Button));
        painter.drawEllipse(circle);
        QFont mark = font();
        mark.setBold(true);
        mark.setPixelSize(circle.height() * 2 / 3);
        painter.setFont(mark);
        painter.setPen(colours.color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                     QPalette::ButtonText));
        painter.drawText(circle, Qt::AlignCenter, QStringLiteral("?"));
        if (hasFocus()) {
            painter.setPen(QPen(colours.color(QPalette::Highlight), 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(circle.adjusted(1, 1, -1, -1));
        }
    }

    bool hitButton(const QPoint& position) const override {
        return roundHelp ? HelpCircle().contains(position) : QPushButton::hitButton(position);
    }
};

ButtonWidget* Button(const PushButton& control) {
    return static_cast<ButtonWidget*>(control._Widget());
}

}  // namespace

PushButton::PushButton() : RectControl(new ButtonWidget()) {
    QObject::connect(Button(*this), &QPushButton::clicked, Button(*this),
                     [this] { Action.Raise(*this); });
}

String PushButton::Caption() const {
    return FromQString(Button(*this)->text());
}

void PushButton::Caption(const String& caption) {
    Button(*this)->setText(ToQString(caption));
}

void PushButton::Default(bool isDefault) {
    default_ = isDefault;
    Button(*this)->setDefault(isDefault);
}

void PushButton::ButtonStyle(int64_t style) {
    buttonStyle_ = style;
    ButtonWidget* button = Button(*this);
    button->roundHelp = style == kHelpButtonStyle;
    button->setAccessibleName(button->roundHelp ? QStringLiteral("Help") : QString());
    button->update();
}

void PushButton::Push() {
    Button(*this)->click();
}

void PushButton::_Opened() {
    Open.Raise(*this);
}

}  // namespace vx
