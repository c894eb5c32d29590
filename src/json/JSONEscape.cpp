#include "json/JSONEscape.h"

#include <array>
#include <cstdint>

namespace vx {
namespace {

// Bytes that can begin something to escape: the ASCII specials, and the lead
// bytes of the characters written as \u beyond ASCII.
constexpr std::array<bool, 256> makeInterestingBytes() {
    std::array<bool, 256> table{};
    for (int c = 0; c < 0x20; ++c) {
        table[c] = true;
    }
    for (const int c : {int{'"'}, int{'\\'}, int{'/'}, 0x7F, 0xC2, 0xD8, 0xDC, 0xE1, 0xE2, 0xEF}) {
        table[c] = true;
    }
    return table;
}
constexpr std::array<bool, 256> interestingBytes = makeInterestingBytes();

bool inRange(unsigned char byte, unsigned char first, unsigned char last) {
    return byte >= first && byte <= last;
}

// The characters beyond ASCII that are written as \u: the soft hyphen, the
// Arabic number signs and the Syriac abbreviation mark, two Khmer vowels,
// the zero-width and direction marks, the line and paragraph separators, the
// invisible operators, the byte order mark and the specials block. Returns
// the number of bytes of the match, 0 for none.
std::size_t specialCharacterLength(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t offset) -> unsigned char {
        return at + offset < text.size() ? static_cast<unsigned char>(text[at + offset]) : 0;
    };
    switch (byte(0)) {
        case 0xC2:
            return byte(1) == 0xAD ? 2 : 0;
        case 0xD8:
            return inRange(byte(1), 0x80, 0x84) ? 2 : 0;
        case 0xDC:
            return byte(1) == 0x8F ? 2 : 0;
        case 0xE1:
            return byte(1) == 0x9E && inRange(byte(2), 0xB4, 0xB5) ? 3 : 0;
        case 0xE2:
            if (byte(1) == 0x80) {
                return inRange(byte(2), 0x8C, 0x8F) || inRange(byte(2), 0xA8, 0xAF) ? 3 : 0;
            }
            return byte(1) == 0x81 && inRange(byte(2), 0xA0, 0xAF) ? 3 : 0;
        case 0xEF:
            if (byte(1) == 0xBB) {
                return byte(2) == 0xBF ? 3 : 0;
            }
            return byte(1) == 0xBF && inRange(byte(2), 0xB0, 0xBF) ? 3 : 0;
        default:
            return 0;
    }
}

void appendUnicodeEscape(uint32_t code, std::string& out) {
    static constexpr char digits[] = "0123456789ABCDEF";
    const char escaped[] = {'\\',
                            'u',
                            digits[(code >> 12) & 0xF],
                            digits[(code >> 8) & 0xF],
                            digits[(code >> 4) & 0xF],
                            digits[code & 0xF]};
    out.append(escaped, sizeof escaped);
}

// The code point of a matched two- or three-byte sequence.
uint32_t codeOf(std::string_view sequence) {
    const auto b = [&](std::size_t i) { return static_cast<uint32_t>(sequence[i]) & 0xFF; };
    if (sequence.size() == 2) {
        return ((b(0) & 0x1F) << 6) | (b(1) & 0x3F);
    }
    return ((b(0) & 0x0F) << 12) | ((b(1) & 0x3F) << 6) | (b(2) & 0x3F);
}

// Appends the escape of the ASCII byte c; false when c stands for itself.
bool appendAsciiEscape(unsigned char c, bool escapeSlashes, std::string& out) {
    switch (c) {
        case '\\':
            out += "\\\\";
            return true;
        case '"':
            out += "\\\"";
            return true;
        case '\b':
            out += "\\b";
            return true;
        case '\f':
            out += "\\f";
            return true;
        case '\n':
            out += "\\n";
            return true;
        case '\r':
            out += "\\r";
            return true;
        case '\t':
            out += "\\t";
            return true;
        case '/':
            if (escapeSlashes) {
                out += "\\/";
                return true;
            }
            return false;
        default:
            if (c < 0x20 || c == 0x7F) {
                appendUnicodeEscape(c, out);
                return true;
            }
            return false;
    }
}

}  // namespace

void AppendEscapedJSON(std::string_view utf8, bool escapeSlashes, std::string& out) {
    std::size_t plainFrom = 0;
    std::size_t at = 0;
    while (at < utf8.size()) {
        const auto c = static_cast<unsigned char>(utf8[at]);
        if (!interestingBytes[c]) {
            ++at;
            continue;
        }
        out.append(utf8, plainFrom, at - plainFrom);
        std::size_t taken = 1;
        if (c < 0x80) {
            if (!appendAsciiEscape(c, escapeSlashes, out)) {
                out += static_cast<char>(c);
            }
        } else if (const std::size_t length = specialCharacterLength(utf8, at); length > 0) {
            appendUnicodeEscape(codeOf(utf8.substr(at, length)), out);
            taken = length;
        } else {
            out += static_cast<char>(c);
        }
        at += taken;
        plainFrom = at;
    }
    out.append(utf8, plainFrom, at - plainFrom);
}

}  // namespace vx
