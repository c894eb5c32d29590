#pragma once

#include <cstdint>

#include "runtime/core/RuntimeException.h"
#include "runtime/text/String.h"

namespace vx {

// The failure of the JSON engine: a number that says what went wrong, and a
// message that names the byte position or carries an extra text.
class JSONException : public RuntimeException {
public:
    // A position of 1 or more is added as " at position " and its digits; the
    // first byte of a text (position 0) is never named.
    JSONException(const String& message, int64_t number, int64_t position);
    // An info that is not blank is added after ": ", as it stands.
    JSONException(const String& message, int64_t number, const String& info);
};

}  // namespace vx
