#include "runtime/text/Hex.h"

#include <cmath>
#include <limits>
#include <string>

#include "runtime/text/TextCodec.h"
#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

}  // namespace

int HexDigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

String Hex(int64_t value) {
    auto bits = static_cast<uint64_t>(value);
    std::string text;
    do {
        text.insert(text.begin(), kDigits[bits & 0x0F]);
        bits >>= 4;
    } while (bits != 0);
    return String(std::move(text), Encodings::UTF8);
}

String Hex(double value) {
    // 2^63 is the first Double past the range; the lowest Int64 is exact.
    constexpr double kPastMax = 9223372036854775808.0;
    if (std::isnan(value)) {
        return Hex(int64_t{0});
    }
    if (value >= kPastMax) {
        return Hex(std::numeric_limits<int64_t>::max());
    }
    if (value <= -kPastMax) {
        return Hex(std::numeric_limits<int64_t>::min());
    }
    return Hex(static_cast<int64_t>(std::trunc(value)));
}

String EncodeHex(const String& bytes, bool withSpaces) {
    std::string text;
    text.reserve(bytes.byteLength() * 3);
    for (const char byte : bytes.bytes()) {
        if (withSpaces && !text.empty()) {
            text += ' ';
        }
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 0x0F];
    }
    return String(std::move(text), Encodings::UTF8);
}

void AppendDecodedHex(std::string_view text, std::string& bytes) {
    int high = -1;
    for (const char c : text) {
        const int value = HexDigitValue(c);
        if (value < 0) {
            if (high < 0 && IsWhiteSpace(static_cast<unsigned char>(c))) {
                continue;
            }
            break;
        }
        if (high < 0) {
            high = value;
        } else {
            bytes += static_cast<char>(high << 4 | value);
            high = -1;
        }
    }
}

String DecodeHex(const String& text) {
    std::string bytes;
    bytes.reserve(text.byteLength() / 2);
    AppendDecodedHex(text.bytes(), bytes);
    return String(std::move(bytes), nullptr);
}

}  // namespace vx
