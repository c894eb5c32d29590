#include "runtime/ui/Control.h"

#include <QHash>
#include <QWidget>

#include "runtime/ui/UITrap.h"
#include "runtime/ui/Window.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {
// Widget -> control, for the toolkit's side of things (which control has the
// focus). A control leaves it when it goes, so a widget that outlives its
// control for a moment is no longer taken for one.
QHash<const QWidget*, Control*>& ControlsByWidget() {
    static QHash<const QWidget*, Control*> controls;
    return controls;
}
}  // namespace

Control::Control(QWidget* widget) : widget_(widget) {
    widget_->hide();
    ControlsByWidget().insert(widget_, this);
}

Control::~Control() {
    ControlsByWidget().remove(widget_);
    if (widget_->parent() == nullptr) {
        delete widget_;
    } else {
        // The window deletes the widget with its own; until then it must not
        // call back into this object.
        QObject::disconnect(widget_, nullptr, nullptr, nullptr);
    }
}

QWidget* Control::_Widget() const {
    _UITrap();
    return widget_;
}

Control* Control::_FromWidget(const QWidget* widget) {
    return ControlsByWidget().value(widget);
}

void Control::Name(const String& name) {
    name_ = name;
    _Widget()->setObjectName(ToQString(name));
}

void Control::TabPanelIndex(int64_t index) {
    tabPanelIndex_ = index;
    _PlacementChanged();
}

void Control::_AddedTo(Window* window) {
    window_ = window;
}

}  // namespace vx
