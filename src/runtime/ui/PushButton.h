#pragma once

#include <cstdint>

#include "runtime/ui/Event.h"
#include "runtime/ui/RectControl.h"

namespace vx {

// A button. Action is raised when it is pressed, Open once when its window has
// been built.
class PushButton : public RectControl {
public:
    // The platform's round help button.
    static constexpr int64_t kHelpButtonStyle = 9;

    PushButton();

    String Caption() const;
    void Caption(const String& caption);
    // A default button is pressed by the Return key when it is visible and enabled.
    bool Default() const { return default_; }
    void Default(bool isDefault);
    int64_t ButtonStyle() const { return buttonStyle_; }
    void ButtonStyle(int64_t style);

    // Presses the button as the user would.
    void Push();

    Event<PushButton&> Action;
    Event<PushButton&> Open;

private:
    void _Opened() override;

    bool default_ = false;
    int64_t buttonStyle_ = 0;
};

}  // namespace vx
