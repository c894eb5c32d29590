#pragma once

#include <cstdint>

#include "runtime/ui/RectControl.h"

namespace vx {

// A check box. State 0 is unticked, 1 ticked, 2 the mixed state; Value is
// True exactly when ticked.
class CheckBox : public RectControl {
public:
    CheckBox();

    String Caption() const;
    void Caption(const String& caption);
    int64_t State() const;
    void State(int64_t state);
    bool Value() const { return State() == 1; }
    void Value(bool ticked) { State(ticked ? 1 : 0); }
};

}  // namespace vx
