#include "runtime/ui/QuitMenuItem.h"

#include <QApplication>

namespace vx {

void QuitMenuItem::_Choose() {
    // Windows close first, so each gets its chance to go, then the loop ends.
    QApplication::closeAllWindows();
    QApplication::quit();
}

}  // namespace vx
