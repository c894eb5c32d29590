#include "runtime/text/TextCodec.h"

namespace vx {
namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

DecodedCharacter standIn(std::string_view bytes, std::size_t offset) {
    return {static_cast<unsigned char>(bytes[offset]), 1, false};
}

DecodedCharacter readUTF8(std::string_view bytes, std::size_t offset) {
    const auto lead = static_cast<unsigned char>(bytes[offset]);
    if (lead < 0x80) {
        return {lead, 1, true};
    }
    std::size_t size = 0;
    char32_t codePoint = 0;
    // The range of the second byte rules out overlong forms and values past
    // the last code point; surrogates are let through on purpose.
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        size = 2;
        codePoint = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        size = 3;
        codePoint = lead & 0x0F;
        low = lead == 0xE0 ? 0xA0 : 0x80;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        size = 4;
        codePoint = lead & 0x07;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return standIn(bytes, offset);
    }
    if (offset + size > bytes.size()) {
        return standIn(bytes, offset);
    }
    const auto second = static_cast<unsigned char>(bytes[offset + 1]);
    if (second < low || second > high) {
        return standIn(bytes, offset);
    }
    for (std::size_t i = 1; i < size; ++i) {
        const auto next = static_cast<unsigned char>(bytes[offset + i]);
        if (!isContinuation(next)) {
            return standIn(bytes, offset);
        }
        codePoint = (codePoint << 6) | (next & 0x3F);
    }
    return {codePoint, size, true};
}

char32_t unitAt(std::string_view bytes, std::size_t offset) {
    return (static_cast<char32_t>(static_cast<unsigned char>(bytes[offset])) << 8) |
           static_cast<unsigned char>(bytes[offset + 1]);
}

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

DecodedCharacter readUTF16(std::string_view bytes, std::size_t offset) {
    if (offset + 2 > bytes.size()) {
        return standIn(bytes, offset);
    }
    const char32_t unit = unitAt(bytes, offset);
    if (isHighSurrogate(unit) && offset + 4 <= bytes.size()) {
        const char32_t next = unitAt(bytes, offset + 2);
        if (isLowSurrogate(next)) {
            return {0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00), 4, true};
        }
    }
    const bool lone = isHighSurrogate(unit) || isLowSurrogate(unit);
    return {unit, 2, !lone};
}

void appendUTF8(std::string& out, char32_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

void appendUnit(std::string& out, char32_t unit) {
    out += static_cast<char>(unit >> 8);
    out += static_cast<char>(unit & 0xFF);
}

void appendUTF16(std::string& out, char32_t codePoint) {
    if (codePoint < 0x10000) {
        appendUnit(out, codePoint);
        return;
    }
    const char32_t offset = codePoint - 0x10000;
    appendUnit(out, 0xD800 + (offset >> 10));
    appendUnit(out, 0xDC00 + (offset & 0x3FF));
}

bool appendSingleByte(std::string& out, char32_t codePoint, char32_t limit) {
    if (codePoint >= limit) {
        return false;
    }
    out += static_cast<char>(codePoint);
    return true;
}

// Paths and names are mostly ASCII, and every package build measures them:
// an ASCII byte is one character under UTF-8 without decoding anything.
std::size_t characterSize(std::string_view bytes, std::size_t offset,
                          const TextEncoding* encoding) {
    if (encoding->scheme() == TextEncoding::Scheme::UTF8 &&
        static_cast<unsigned char>(bytes[offset]) < 0x80) {
        return 1;
    }
    return ReadCharacter(bytes, offset, encoding).size;
}

}  // namespace

DecodedCharacter ReadCharacter(std::string_view bytes, std::size_t offset,
                               const TextEncoding* encoding) {
    if (offset >= bytes.size()) {
        return {};
    }
    if (HasSingleByteCharacters(encoding)) {
        const auto byte = static_cast<unsigned char>(bytes[offset]);
        const bool valid = encoding == nullptr ||
                           encoding->scheme() == TextEncoding::Scheme::Latin1 || byte < 0x80;
        return {byte, 1, valid};
    }
    if (encoding->scheme() == TextEncoding::Scheme::UTF16) {
        return readUTF16(bytes, offset);
    }
    return readUTF8(bytes, offset);
}

bool HasSingleByteCharacters(const TextEncoding* encoding) {
    return encoding == nullptr || encoding->scheme() == TextEncoding::Scheme::ASCII ||
           encoding->scheme() == TextEncoding::Scheme::Latin1;
}

std::size_t SkipCharacters(std::string_view bytes, std::size_t offset, int64_t count,
                           const TextEncoding* encoding) {
    if (offset >= bytes.size() || count <= 0) {
        return offset < bytes.size() ? offset : bytes.size();
    }
    if (HasSingleByteCharacters(encoding)) {
        const std::size_t left = bytes.size() - offset;
        return offset +
               (static_cast<uint64_t>(count) < left ? static_cast<std::size_t>(count) : left);
    }
    for (; count > 0 && offset < bytes.size(); --count) {
        offset += characterSize(bytes, offset, encoding);
    }
    return offset;
}

int64_t CountCharacters(std::string_view bytes, const TextEncoding* encoding) {
    if (HasSingleByteCharacters(encoding)) {
        return static_cast<int64_t>(bytes.size());
    }
    int64_t count = 0;
    for (std::size_t offset = 0; offset < bytes.size(); ++count) {
        offset += characterSize(bytes, offset, encoding);
    }
    return count;
}

bool AppendCharacter(std::string& out, char32_t codePoint, const TextEncoding* encoding) {
    if (codePoint > kLastCodePoint) {
        return false;
    }
    if (encoding == nullptr) {
        appendUTF8(out, codePoint);
        return true;
    }
    switch (encoding->scheme()) {
        case TextEncoding::Scheme::ASCII:
            return appendSingleByte(out, codePoint, 0x80);
        case TextEncoding::Scheme::Latin1:
            return appendSingleByte(out, codePoint, 0x100);
        case TextEncoding::Scheme::UTF16:
            appendUTF16(out, codePoint);
            return true;
        case TextEncoding::Scheme::UTF8:
            break;
    }
    appendUTF8(out, codePoint);
    return true;
}

bool IsWhiteSpace(char32_t codePoint) {
    return codePoint == ' ' || (codePoint >= '\t' && codePoint <= '\r');
}

}  // namespace vx
