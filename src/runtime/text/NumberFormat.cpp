#include "runtime/text/NumberFormat.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <string>
#include <string_view>

#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

// The parts of a mask: literal text, the run of digit places, literal text.
struct Mask {
    std::string_view head;
    std::string_view tail;
    bool hasDigitPlaces = false;
    int requiredIntegerDigits = 0;
    int requiredDecimals = 0;
    int decimals = 0;
};

bool isDigitPlace(char c) {
    return c == '0' || c == '#';
}

Mask parseMask(std::string_view text) {
    Mask mask;
    std::size_t pos = 0;
    while (pos < text.size() && !isDigitPlace(text[pos]) && text[pos] != '.') {
        ++pos;
    }
    mask.head = text.substr(0, pos);
    bool afterPoint = false;
    for (; pos < text.size(); ++pos) {
        const char c = text[pos];
        if (c == '.' && !afterPoint) {
            afterPoint = true;
        } else if (isDigitPlace(c)) {
            mask.hasDigitPlaces = true;
            const int required = c == '0' ? 1 : 0;
            (afterPoint ? mask.requiredDecimals : mask.requiredIntegerDigits) += required;
            mask.decimals += afterPoint ? 1 : 0;
        } else {
            break;
        }
    }
    mask.tail = text.substr(pos);
    return mask;
}

// A non-negative finite value as significant digits d1 d2 ... and an exponent
// e, meaning 0.d1d2... times ten to the e. Zero has no digits.
struct Decimal {
    std::string digits;
    int exponent = 0;
};

Decimal shortestDecimal(double magnitude) {
    Decimal decimal;
    if (magnitude == 0) {
        return decimal;
    }
    char buffer[32];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific).ptr;
    const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
    const std::size_t e = text.find('e');
    for (const char c : text.substr(0, e)) {
        if (c != '.') {
            decimal.digits += c;
        }
    }
    decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
    // The exponent reads "e+21" or "e-07"; from_chars takes no "+".
    const std::string_view exponent = text.substr(e + 2);
    std::from_chars(exponent.data(), exponent.data() + exponent.size(), decimal.exponent);
    decimal.exponent = (text[e + 1] == '-' ? -decimal.exponent : decimal.exponent) + 1;
    return decimal;
}

// Rounds half away from zero so that no digit is left beyond `decimals`
// places after the point.
void roundTo(Decimal& decimal, int decimals) {
    const long keep = static_cast<long>(decimal.exponent) + decimals;
    if (keep >= static_cast<long>(decimal.digits.size())) {
        return;
    }
    if (keep < 0) {
        decimal = {};
        return;
    }
    const bool up = decimal.digits[static_cast<std::size_t>(keep)] >= '5';
    decimal.digits.resize(static_cast<std::size_t>(keep));
    if (up) {
        std::size_t i = decimal.digits.size();
        while (i > 0 && decimal.digits[i - 1] == '9') {
            --i;
        }
        decimal.digits.resize(i);
        if (i == 0) {
            // Filled rather than assigned from a literal. Assigning a pointer
            // keeps a branch for a source inside the string's own buffer,
            // which the compiler cannot rule out for a literal; GCC 12 at -O3
            // inlines that branch with the length the loop above left
            // unbounded and warns (-Wrestrict) about a copy that never runs.
            decimal.digits.assign(1, '1');
            ++decimal.exponent;
        } else {
            ++decimal.digits[i - 1];
        }
    }
    decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
    if (decimal.digits.empty()) {
        decimal = {};
    }
}

std::string integerDigits(const Decimal& decimal, int required) {
    std::string digits;
    if (decimal.exponent > 0 && !decimal.digits.empty()) {
        const auto count = static_cast<std::size_t>(decimal.exponent);
        digits = decimal.digits.substr(0, count);
        digits.append(count - digits.size(), '0');
    }
    if (digits.size() < static_cast<std::size_t>(required)) {
        digits.insert(0, static_cast<std::size_t>(required) - digits.size(), '0');
    }
    return digits;
}

std::string fractionDigits(const Decimal& decimal, int required) {
    std::string digits;
    if (!decimal.digits.empty()) {
        if (decimal.exponent < 0) {
            digits.assign(static_cast<std::size_t>(-decimal.exponent), '0');
        }
        const std::size_t skip =
            decimal.exponent > 0 ? static_cast<std::size_t>(decimal.exponent) : 0;
        if (skip < decimal.digits.size()) {
            digits.append(decimal.digits, skip);
        }
    }
    if (digits.size() < static_cast<std::size_t>(required)) {
        digits.append(static_cast<std::size_t>(required) - digits.size(), '0');
    }
    return digits;
}

std::string_view decimalPoint(bool useLocale) {
    if (useLocale) {
        const char* point = std::localeconv()->decimal_point;
        if (point != nullptr && *point != '\0') {
            return point;
        }
    }
    return ".";
}

std::string plainDigits(double magnitude, std::string_view point) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, magnitude).ptr;
    std::string text(buffer, end);
    if (const std::size_t dot = text.find('.'); dot != std::string::npos) {
        text.replace(dot, 1, point);
    }
    return text;
}

std::string maskedDigits(double magnitude, const Mask& mask, std::string_view point) {
    Decimal decimal = shortestDecimal(magnitude);
    roundTo(decimal, mask.decimals);
    std::string text = integerDigits(decimal, mask.requiredIntegerDigits);
    const std::string fraction = fractionDigits(decimal, mask.requiredDecimals);
    if (!fraction.empty()) {
        text.append(point).append(fraction);
    }
    return text;
}

// The sign goes where the head has its "-", or else in front of the digits.
std::string withSign(std::string_view head, bool negative, std::string_view digits) {
    std::string text;
    const std::size_t minus = head.find('-');
    if (minus == std::string_view::npos) {
        text.append(head);
        if (negative) {
            text += '-';
        }
    } else {
        text.append(head.substr(0, minus));
        if (negative) {
            text += '-';
        }
        text.append(head.substr(minus + 1));
    }
    text.append(digits);
    return text;
}

}  // namespace

String FormatNumber(double value, const String& mask, bool useLocale) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    const Mask parsed = parseMask(mask.bytes());
    const std::string_view point = decimalPoint(useLocale);
    const double magnitude = std::fabs(value);
    const std::string digits = parsed.hasDigitPlaces ? maskedDigits(magnitude, parsed, point)
                                                     : plainDigits(magnitude, point);
    // Rounded to zero, a negative value (or -0.0) shows no minus.
    const bool negative = value < 0 && digits.find_first_of("123456789") != std::string::npos;
    std::string text = withSign(parsed.head, negative, digits);
    text.append(parsed.tail);
    return String(std::move(text), Encodings::UTF8);
}

String Str(int64_t value, const String& mask) {
    if (mask.isEmpty()) {
        return String(std::to_string(value), Encodings::UTF8);
    }
    return FormatNumber(static_cast<double>(value), mask, false);
}

String Format(double value, const String& mask) {
    return FormatNumber(value, mask, true);
}

}  // namespace vx
