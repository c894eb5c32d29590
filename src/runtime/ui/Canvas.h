#pragma once

#include <vector>

#include "runtime/ui/Event.h"
#include "runtime/ui/Graphics.h"
#include "runtime/ui/RectControl.h"

namespace vx {

// A drawing surface: Paint is raised whenever the surface must be drawn, with
// the areas to draw in the canvas's own coordinates.
class Canvas : public RectControl {
public:
    struct Rect {
        int64_t Left = 0, Top = 0, Width = 0, Height = 0;
    };

    Canvas();

    bool AcceptFocus() const { return acceptFocus_; }
    void AcceptFocus(bool accept);
    // Asks for the surface to be drawn again.
    void Invalidate();

    Event<Canvas&, Graphics&, const std::vector<Rect>&> Paint;

    // Called by the toolkit with the painter of the surface.
    void _Paint(Graphics& g, const std::vector<Rect>& areas);

private:
    bool _CanTakeFocus() const override { return acceptFocus_; }

    bool acceptFocus_ = true;
};

}  // namespace vx
