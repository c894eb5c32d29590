#pragma once

#include "runtime/text/String.h"

namespace vx {

// Whatever shows the progress of a build to the user; the wizard window is
// one. The packer needs nothing else of its owner.
class LogReceiver {
public:
    virtual ~LogReceiver() = default;
    // Appends one line; the text comes without a line ending.
    virtual void log(const String& text) = 0;
};

}  // namespace vx
