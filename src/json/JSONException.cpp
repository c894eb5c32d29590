#include "json/JSONException.h"

#include "runtime/text/NumberFormat.h"
#include "runtime/text/StringFunctions.h"

namespace vx {

JSONException::JSONException(const String& message, int64_t number, int64_t position) {
    Message = message;
    if (position >= 1) {
        // The mask "0" has no thousands separator, so large positions stay plain digits.
        Message = Message + " at position " + Format(static_cast<double>(position), "0");
    }
    ErrorNumber = number;
}

JSONException::JSONException(const String& message, int64_t number, const String& info) {
    Message = message;
    if (!Trim(info).isEmpty()) {
        Message = Message + ": " + info;
    }
    ErrorNumber = number;
}

}  // namespace vx
