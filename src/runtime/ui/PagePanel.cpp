#include "runtime/ui/PagePanel.h"

#include <QStackedWidget>

#include "runtime/core/RuntimeException.h"
#include "runtime/ui/Window.h"

namespace vx {

namespace {
QStackedWidget* Stack(const PagePanel& panel) {
    return static_cast<QStackedWidget*>(panel._Widget());
}
}  // namespace

PagePanel::PagePanel() : RectControl(new QStackedWidget()) {}

int64_t PagePanel::PanelCount() const {
    return Stack(*this)->count();
}

void PagePanel::PanelCount(int64_t count) {
    QStackedWidget* stack = Stack(*this);
    while (stack->count() < count) {
        stack->addWidget(new QWidget());
    }
    while (stack->count() > count && count >= 0) {
        QWidget* page = stack->widget(stack->count() - 1);
        // The controls of a page that goes keep their widgets, on the panel.
        for (QWidget* child : page->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            child->setParent(stack);
        }
        stack->removeWidget(page);
        delete page;
    }
    // Controls that were waiting for their page now have one.
    if (Window* window = ParentWindow()) {
        for (RectControl* child : window->_ChildrenOf(this)) {
            child->TabPanelIndex(child->TabPanelIndex());
        }
    }
}

int64_t PagePanel::Value() const {
    return Stack(*this)->currentIndex();
}

void PagePanel::Value(int64_t page) {
    if (page < 0 || page >= PanelCount()) {
        throw OutOfBoundsException();
    }
    Stack(*this)->setCurrentIndex(static_cast<int>(page));
}

QWidget* PagePanel::_Page(int64_t page) const {
    if (page < 0 || page >= PanelCount()) {
        return nullptr;
    }
    return Stack(*this)->widget(static_cast<int>(page));
}

}  // namespace vx
