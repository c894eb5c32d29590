#include "json/JSONScanner.h"

#include <string>
#include <utility>

#include "json/JSONException.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/text/Val.h"
#include "runtime/values/VariantNumber.h"

namespace vx {
namespace {

bool isLetter(int byte, std::string_view letter) {
    if (byte == JSONScanner::End) {
        return false;
    }
    const char c = static_cast<char>(byte);
    return JSONScanner::IsWord(std::string_view(&c, 1), letter);
}

bool isExponentMark(int byte) {
    return isLetter(byte, "e") || isLetter(byte, "E");
}

// The escapes of one letter, and the byte each stands for.
constexpr std::pair<int, char> shortEscapes[] = {
    {'"', '"'},  {'\\', '\\'}, {'/', '/'},  {'b', '\b'},
    {'f', '\f'}, {'n', '\n'},  {'r', '\r'}, {'t', '\t'},
};

// Up to this many digits an integer is exact in an Int64, and converting it
// to a Double rounds it just as reading its decimal text would.
constexpr std::size_t exactDigits = 18;

}  // namespace

int JSONScanner::ParseGet() {
    if (position_ >= text_.size()) {
        return End;
    }
    return static_cast<unsigned char>(text_[position_++]);
}

int JSONScanner::ParsePeek() const {
    return position_ < text_.size() ? static_cast<unsigned char>(text_[position_]) : End;
}

std::string_view JSONScanner::ParseGet(std::size_t count) {
    const std::string_view taken = text_.substr(position_, count);
    position_ += taken.size();
    return taken;
}

void JSONScanner::skipWhiteSpace() {
    while (position_ < text_.size()) {
        const char c = text_[position_];
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') {
            return;
        }
        ++position_;
    }
}

String JSONScanner::parseString() {
    if (ParseGet() != '"') {
        throw JSONException("Missing \"", 7, position());
    }
    // Filled only once an escape turns up; a plain string is one copy of its bytes.
    std::string unescaped;
    for (;;) {
        const std::string_view run = takePlainRun();
        if (ParseGet() != '\\') {
            // The closing quote, or the end of the text.
            if (unescaped.empty()) {
                return String(run, nullptr);
            }
            unescaped.append(run);
            return String(std::move(unescaped), nullptr);
        }
        unescaped.append(run);
        appendEscaped(unescaped);
    }
}

std::string_view JSONScanner::takePlainRun() {
    const std::size_t start = position_;
    while (position_ < text_.size() && text_[position_] != '"' && text_[position_] != '\\') {
        ++position_;
    }
    return text_.substr(start, position_ - start);
}

void JSONScanner::appendEscaped(std::string& out) {
    const int escape = ParseGet();
    for (const auto& [letter, byte] : shortEscapes) {
        if (escape == letter) {
            out.push_back(byte);
            return;
        }
    }
    if (escape != 'u') {
        throw JSONException("Illegal Character", 9, position());
    }
    const std::string_view digits = ParseGet(4);
    if (digits.size() < 4) {
        throw JSONException("Illegal Unicode Character Format", 8, position());
    }
    // Val stops at the first byte that isn't hexadecimal, so "00G1" is code 0;
    // each half of a surrogate pair becomes a character alone.
    std::string hex = "&h";
    hex.append(digits);
    const auto code = static_cast<int64_t>(Val(String(std::move(hex), nullptr)));
    out.append(Encodings::UTF8->Chr(code).bytes());
}

Variant JSONScanner::parseNumber() {
    const std::size_t start = position_;
    int c = ParseGet();
    if (c == '-') {
        c = ParseGet();
    }
    int next = End;
    if (c == '0') {
        // A leading 0 is a whole number unless a point or a small "e"
        // follows; a digit after it is left to the caller.
        next = ParseGet();
        if (next != '.' && !isLetter(next, "e")) {
            back();
            return integerValue(start);
        }
    } else {
        if (!IsDigit(c)) {
            throw JSONException("Illegal Number Format", 3, position());
        }
        next = skipDigits();
        if (next != '.' && !isExponentMark(next)) {
            back();
            return integerValue(start);
        }
    }
    if (next == '.') {
        if (!IsDigit(ParseGet())) {
            throw JSONException("Illegal Number Format", 3, position());
        }
        next = skipDigits();
        if (!isExponentMark(next)) {
            back();
            return fractionValue(start);
        }
    }
    // The exponent needs no digit: "1e" and "1e+" are numbers.
    const int sign = ParseGet();
    if (sign != '+' && sign != '-') {
        back();
    }
    skipDigits();
    back();
    return fractionValue(start);
}

int JSONScanner::skipDigits() {
    int c = ParseGet();
    while (IsDigit(c)) {
        c = ParseGet();
    }
    return c;
}

Variant JSONScanner::integerValue(std::size_t start) const {
    const std::string_view digits = text_.substr(start, position_ - start);
    double value = 0;
    if (digits.size() <= exactDigits) {
        int64_t exact = 0;
        for (const char c : digits.substr(digits.front() == '-' ? 1 : 0)) {
            exact = exact * 10 + (c - '0');
        }
        value = static_cast<double>(digits.front() == '-' ? -exact : exact);
    } else {
        value = Val(String(digits, nullptr));
    }
    // Every integer passes through a Double, so that beyond 2 to the 53rd the
    // low digits are lost; its size then picks the kind.
    if (value > 2147483647.0 || value < -2147483648.0) {
        return Variant(VariantNumber::ofFloating(value).toInt64());
    }
    return Variant(static_cast<int32_t>(value));
}

Variant JSONScanner::fractionValue(std::size_t start) const {
    return Variant(Val(String(text_.substr(start, position_ - start), nullptr)));
}

}  // namespace vx
