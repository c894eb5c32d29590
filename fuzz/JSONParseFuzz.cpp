// Arbitrary bytes through JSONItem::Load. Refusing the text with a
// JSONException, or a nesting too deep with StackOverflowException, is an
// answer; any other exception escapes and is reported as a crash.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "json/JSONException.h"
#include "json/JSONItem.h"
#include "runtime/core/RuntimeException.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    vx::JSONItem item;
    try {
        item.Load(vx::String(bytes, nullptr));
    } catch (const vx::JSONException&) {
    } catch (const vx::StackOverflowException&) {
    }
    return 0;
}
