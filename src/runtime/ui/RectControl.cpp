#include "runtime/ui/RectControl.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QWidget>
#include <cmath>

#include "runtime/ui/PagePanel.h"
#include "runtime/ui/Window.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {
// Families that are known to be fixed-pitch, so that a desktop without them
// shows such a field in its own fixed-pitch font instead.
bool IsFixedPitchFamily(const QString& family) {
    static const QStringList families{"Monaco", "Menlo", "Courier", "Courier New"};
    return families.contains(family, Qt::CaseInsensitive);
}
}  // namespace

RectControl::RectControl(QWidget* widget) : Control(widget) {}

void RectControl::Left(int64_t left) {
    SetFrameSide(&Rect::left, left);
}

void RectControl::Top(int64_t top) {
    SetFrameSide(&Rect::top, top);
}

void RectControl::Width(int64_t width) {
    SetFrameSide(&Rect::width, width);
}

void RectControl::Height(int64_t height) {
    SetFrameSide(&Rect::height, height);
}

void RectControl::LockLeft(bool locked) {
    SetLock(&Locks::left, locked);
}

void RectControl::LockTop(bool locked) {
    SetLock(&Locks::top, locked);
}

void RectControl::LockRight(bool locked) {
    SetLock(&Locks::right, locked);
}

void RectControl::LockBottom(bool locked) {
    SetLock(&Locks::bottom, locked);
}

void RectControl::SetFrameSide(int64_t Rect::*side, int64_t value) {
    Rect frame = Frame();
    frame.*side = value;
    Rebase(frame);
}

void RectControl::SetLock(bool Locks::*lock, bool locked) {
    const Rect frame = Frame();
    locks_.*lock = locked;
    Rebase(frame);
}

RectControl::Size RectControl::ContainerSize() const {
    if (parent_ != nullptr) {
        const Rect frame = parent_->Frame();
        return {frame.width, frame.height};
    }
    if (Window* window = ParentWindow()) {
        return {window->Width(), window->Height()};
    }
    return baseContainer_;
}

RectControl::Rect RectControl::Frame() const {
    const Size container = ContainerSize();
    const int64_t dw = container.width - baseContainer_.width;
    const int64_t dh = container.height - baseContainer_.height;
    Rect frame = base_;
    if (locks_.right) {
        (locks_.left ? frame.width : frame.left) += dw;
    }
    if (locks_.bottom) {
        (locks_.top ? frame.height : frame.top) += dh;
    }
    frame.width = std::max<int64_t>(frame.width, 0);
    frame.height = std::max<int64_t>(frame.height, 0);
    return frame;
}

void RectControl::Rebase(const Rect& frame) {
    base_ = frame;
    baseContainer_ = ContainerSize();
    _Place();
}

void RectControl::_Place() {
    QWidget* widget = _Widget();
    if (widget->parentWidget() == nullptr) {
        return;
    }
    Rect frame = Frame();
    if (parent_ != nullptr) {
        const Rect container = parent_->Frame();
        frame.left -= container.left;
        frame.top -= container.top;
    }
    widget->setGeometry(static_cast<int>(frame.left), static_cast<int>(frame.top),
                        static_cast<int>(frame.width), static_cast<int>(frame.height));
    if (Window* window = ParentWindow()) {
        for (RectControl* child : window->_ChildrenOf(this)) {
            child->_Place();
        }
    }
}

void RectControl::InitialParent(const String& name) {
    initialParent_ = name;
    _PlacementChanged();
}

RectControl* RectControl::FindParent() const {
    Window* window = ParentWindow();
    if (window == nullptr || initialParent_.isEmpty()) {
        return nullptr;
    }
    return dynamic_cast<RectControl*>(window->_ControlByName(initialParent_).get());
}

void RectControl::_AddedTo(Window* window) {
    Control::_AddedTo(window);
    ApplyFocusPolicy();
    // The frame given so far is the frame at the window's present size.
    baseContainer_ = ContainerSize();
    _PlacementChanged();
}

void RectControl::_PlacementChanged() {
    Window* window = ParentWindow();
    if (window == nullptr) {
        return;
    }
    // Taking the frame at the old container and re-basing it at the new one
    // keeps the control where it stands in the window.
    const Rect frame = Frame();
    parent_ = FindParent();
    QWidget* container = window->_Content();
    if (auto* panel = dynamic_cast<PagePanel*>(parent_)) {
        QWidget* page = panel->_Page(TabPanelIndex() - 1);
        container = page != nullptr ? page : panel->_Widget();
    } else if (parent_ != nullptr) {
        container = parent_->_Widget();
    }
    QWidget* widget = _Widget();
    if (widget->parentWidget() != container) {
        widget->setParent(container);
        widget->setVisible(visible_);
    }
    Rebase(frame);
}

bool RectControl::Enabled() const {
    return !_Widget()->testAttribute(Qt::WA_ForceDisabled);
}
void RectControl::Enabled(bool enabled) {
    _Widget()->setEnabled(enabled);
}

bool RectControl::Visible() const {
    return visible_;
}
void RectControl::Visible(bool visible) {
    visible_ = visible;
    QWidget* widget = _Widget();
    // A widget without a parent would show as a window of its own.
    if (widget->parentWidget() != nullptr) {
        widget->setVisible(visible);
    }
}

String RectControl::HelpTag() const {
    return FromQString(_Widget()->toolTip());
}
void RectControl::HelpTag(const String& tag) {
    _Widget()->setToolTip(ToQString(tag));
}

void RectControl::TabIndex(int64_t index) {
    tabIndex_ = index;
    if (Window* window = ParentWindow()) {
        window->_UpdateTabOrder();
    }
}

void RectControl::TabStop(bool stop) {
    tabStop_ = stop;
    ApplyFocusPolicy();
}

void RectControl::Transparent(bool transparent) {
    transparent_ = transparent;
    _Widget()->update();
}

void RectControl::ApplyFocusPolicy() {
    Qt::FocusPolicy policy = Qt::StrongFocus;
    if (!_CanTakeFocus()) {
        policy = Qt::NoFocus;
    } else if (!tabStop_) {
        policy = Qt::ClickFocus;
    }
    _Widget()->setFocusPolicy(policy);
}

void RectControl::TextFont(const String& family) {
    textFont_ = family;
    ApplyFont();
}

void RectControl::TextSize(double size) {
    textSize_ = size;
    ApplyFont();
}

void RectControl::Bold(bool bold) {
    bold_ = bold;
    ApplyFont();
}

void RectControl::Italic(bool italic) {
    italic_ = italic;
    ApplyFont();
}

void RectControl::Underline(bool underline) {
    underline_ = underline;
    ApplyFont();
}

void RectControl::ApplyFont() {
    QWidget* widget = _Widget();
    QFont font = QApplication::font(widget);
    const QString family = ToQString(textFont_);
    if (family != "System" && family != "SmallSystem") {
        QString shown = family;
        if (IsFixedPitchFamily(family) && !QFontDatabase::hasFamily(family)) {
            shown = QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family();
        }
        font.setFamilies({shown});
    }
    // Sizes are in points of 1/72 inch, which the platform the system was
    // made for draws as one logical pixel each.
    if (textSize_ > 0) {
        font.setPixelSize(static_cast<int>(std::lround(textSize_)));
    }
    font.setBold(bold_);
    font.setItalic(italic_);
    font.setUnderline(underline_);
    widget->setFont(font);
}

void RectControl::TextColor(Color color) {
    textColor_ = color;
    QWidget* widget = _Widget();
    QPalette palette = QApplication::palette(widget);
    if (color != Color()) {
        const QColor shade(color.Red, color.Green, color.Blue, 255 - color.Alpha);
        for (QPalette::ColorRole role :
             {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, shade);
        }
    }
    widget->setPalette(palette);
}

void RectControl::SetFocus() {
    _Widget()->setFocus(Qt::OtherFocusReason);
}

}  // namespace vx
