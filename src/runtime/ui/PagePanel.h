#pragma once

#include <cstdint>

#include "runtime/ui/RectControl.h"

namespace vx {

// A stack of pages of which one is shown. A control stands on a page when its
// InitialParent names the panel and its TabPanelIndex is the page's Value plus
// 1; the controls of the other pages are hidden.
class PagePanel : public RectControl {
public:
    PagePanel();

    int64_t PanelCount() const;
    void PanelCount(int64_t count);
    // The page shown, from 0; a value outside the pages raises OutOfBoundsException.
    int64_t Value() const;
    void Value(int64_t page);

    // The widget that holds the controls of a page (from 0), or null.
    QWidget* _Page(int64_t page) const;

private:
    // The panel is a container; its controls take the focus, not it.
    bool _CanTakeFocus() const override { return false; }
};

}  // namespace vx
