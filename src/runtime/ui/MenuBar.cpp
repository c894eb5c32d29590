#include "runtime/ui/MenuBar.h"

#include <QAction>
#include <QMenuBar>
#include <algorithm>

namespace vx {

void MenuBar::_AttachTo(QMenuBar* bar) {
    attached_.push_back(bar);
    for (int64_t i = 0; i < Count(); ++i) {
        bar->addAction(Item(i)->_Action());
    }
}

void MenuBar::_Detach(QMenuBar* bar) {
    std::erase(attached_, bar);
    bar->clear();
}

void MenuBar::_ChildAppended(const Ref<MenuItem>& child) {
    for (QMenuBar* bar : attached_) {
        bar->addAction(child->_Action());
    }
}

}  // namespace vx
