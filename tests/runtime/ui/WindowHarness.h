#pragma once

#include <QRect>
#include <cstdint>

#include "runtime/ui/Window.h"

namespace vx::test {

// A window of 600 by 600 that stays hidden until the test shows it.
inline Ref<Window> HiddenWindow() {
    auto window = New<Window>();
    window->Width(600);
    window->Height(600);
    window->Visible(false);
    window->Constructor();
    return window;
}

// A control at frame in window coordinates, on the given page of PagePanel1
// (1 is its first page), or on the window itself for page 0.
template <class C>
Ref<C> AddControl(Window& window, const char* name, QRect frame, int64_t page = 0) {
    auto control = New<C>();
    control->Name(name);
    if (page > 0) {
        control->InitialParent("PagePanel1");
        control->TabPanelIndex(page);
    }
    window._AddControl(control);
    control->Left(frame.x());
    control->Top(frame.y());
    control->Width(frame.width());
    control->Height(frame.height());
    return control;
}

}  // namespace vx::test
