#include "runtime/ui/MenuShortcuts.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <algorithm>

#include "runtime/ui/Application.h"
#include "runtime/ui/MenuBar.h"

namespace vx {

namespace {

// Sees the question the toolkit puts to the focused control before it looks
// for a shortcut, and answers it for the control where a menu has the keys.
class MenuShortcutFilter : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::ShortcutOverride) {
            return QObject::eventFilter(watched, event);
        }
        const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
        const std::vector<Ref<MenuBar>> bars = _MenuBarsInUse();
        if (std::none_of(bars.begin(), bars.end(),
                         [&](const Ref<MenuBar>& bar) { return bar->_HasShortcut(pressed); })) {
            return false;
        }
        // An Edit item takes the keys only where it can act on the field now;
        // where it cannot, they go on to the field as they always did.
        _UpdateMenuEnabling();
        event->ignore();
        return true;
    }
};

}  // namespace

void _GiveMenuShortcutsPriority() {
    QCoreApplication* toolkit = QCoreApplication::instance();
    toolkit->installEventFilter(new MenuShortcutFilter(toolkit));
}

}  // namespace vx
