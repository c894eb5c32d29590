#include "runtime/ui/Canvas.h"

#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

namespace vx {

namespace {
class CanvasWidget : public QWidget {
protected:
    void paintEvent(QPaintEvent* event) override {
        auto* canvas = dynamic_cast<Canvas*>(Control::_FromWidget(this));
        if (canvas == nullptr) {
            return;
        }
        QPainter painter(this);
        if (!canvas->Transparent()) {
            painter.fillRect(rect(), palette().window());
        }
        std::vector<Canvas::Rect> areas;
        for (const QRect& area : event->region()) {
            areas.push_back({area.x(), area.y(), area.width(), area.height()});
        }
        Graphics g(painter, width(), height());
        canvas->_Paint(g, areas);
    }
};
}  // namespace

Canvas::Canvas() : RectControl(new CanvasWidget()) {}

void Canvas::AcceptFocus(bool accept) {
    acceptFocus_ = accept;
    ApplyFocusPolicy();
}

void Canvas::Invalidate() {
    _Widget()->update();
}

void Canvas::_Paint(Graphics& g, const std::vector<Rect>& areas) {
    Paint.Raise(*this, g, areas);
}

}  // namespace vx
