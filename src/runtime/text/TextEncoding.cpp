#include "runtime/text/TextEncoding.h"

#include <string>

#include "runtime/text/TextCodec.h"

namespace vx {

String TextEncoding::Chr(int64_t codePoint) const {
    std::string bytes;
    if (codePoint >= 0 && codePoint <= 0x10FFFF) {
        AppendCharacter(bytes, static_cast<char32_t>(codePoint), this);
    }
    return String(std::move(bytes), this);
}

}  // namespace vx
