#include "runtime/text/Val.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

#include "runtime/text/TextCodec.h"

namespace vx {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t skipDigits(std::string_view text, std::size_t pos) {
    while (pos < text.size() && isDigit(text[pos])) {
        ++pos;
    }
    return pos;
}

int radixOf(char prefix) {
    switch (prefix) {
        case 'h':
        case 'H':
            return 16;
        case 'o':
        case 'O':
            return 8;
        case 'b':
        case 'B':
            return 2;
        default:
            return 0;
    }
}

// Digits of the radix after the prefix; more than 64 bits keep the low ones.
double radixNumber(std::string_view digits, int radix) {
    uint64_t bits = 0;
    for (const char c : digits) {
        int value = radix;
        if (isDigit(c)) {
            value = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            value = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            value = c - 'A' + 10;
        }
        if (value >= radix) {
            break;
        }
        bits = bits * static_cast<uint64_t>(radix) + static_cast<uint64_t>(value);
    }
    return static_cast<double>(static_cast<int64_t>(bits));
}

// Whether number text that a Double cannot hold is too large rather than too
// small. The mantissa has a significant digit, or it would have read as 0;
// the exponent comes without its "e".
bool overflows(std::string_view mantissa, std::string_view exponent) {
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    // How many places the first significant digit stands left of the point.
    const long order =
        first < point ? static_cast<long>(point - first) : -static_cast<long>(first - point - 1);
    bool negative = false;
    if (!exponent.empty() && (exponent.front() == '+' || exponent.front() == '-')) {
        negative = exponent.front() == '-';
        exponent.remove_prefix(1);
    }
    long power = 0;
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), power).ec ==
        std::errc::result_out_of_range) {
        power = std::numeric_limits<long>::max() / 2;
    }
    return order + (negative ? -power : power) > 0;
}

double decimalNumber(std::string_view text) {
    bool negative = false;
    std::size_t pos = 0;
    if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) {
        negative = text[pos] == '-';
        ++pos;
    }
    const std::size_t start = pos;
    pos = skipDigits(text, pos);
    bool hasDigits = pos > start;
    if (pos < text.size() && text[pos] == '.') {
        const std::size_t fraction = pos + 1;
        pos = skipDigits(text, fraction);
        hasDigits = hasDigits || pos > fraction;
    }
    if (!hasDigits) {
        return 0;
    }
    const std::size_t mantissaEnd = pos;
    if (pos < text.size() && (text[pos] == 'e' || text[pos] == 'E')) {
        std::size_t digits = pos + 1;
        if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) {
            ++digits;
        }
        const std::size_t end = skipDigits(text, digits);
        pos = end > digits ? end : pos;
    }
    double value = 0;
    const auto [ptr, error] = std::from_chars(text.data() + start, text.data() + pos, value);
    if (error == std::errc::result_out_of_range) {
        const std::string_view mantissa = text.substr(start, mantissaEnd - start);
        const std::string_view exponent =
            pos > mantissaEnd ? text.substr(mantissaEnd + 1, pos - mantissaEnd - 1) : "";
        value = overflows(mantissa, exponent) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}

}  // namespace

double Val(const String& text) {
    std::string_view bytes = text.bytes();
    std::size_t pos = 0;
    while (pos < bytes.size() && IsWhiteSpace(static_cast<unsigned char>(bytes[pos]))) {
        ++pos;
    }
    bytes.remove_prefix(pos);
    if (bytes.size() >= 2 && bytes[0] == '&') {
        const int radix = radixOf(bytes[1]);
        return radix == 0 ? 0.0 : radixNumber(bytes.substr(2), radix);
    }
    return decimalNumber(bytes);
}

}  // namespace vx
