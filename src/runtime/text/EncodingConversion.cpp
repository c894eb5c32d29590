#include "runtime/text/EncodingConversion.h"

#include <algorithm>
#include <string>

#include "runtime/text/TextCodec.h"

namespace vx {
namespace {

bool isASCIICompatible(const TextEncoding* encoding) {
    return encoding->scheme() != TextEncoding::Scheme::UTF16;
}

bool isAllASCII(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

String ConvertEncoding(const String& text, const TextEncoding* encoding) {
    if (encoding == nullptr) {
        return text.withEncoding(nullptr);
    }
    const TextEncoding* source = text.encoding() ? text.encoding() : Encodings::UTF8;
    const std::string_view bytes = text.bytes();
    if (source == encoding ||
        (isASCIICompatible(source) && isASCIICompatible(encoding) && isAllASCII(bytes))) {
        return text.withEncoding(encoding);
    }
    std::string converted;
    converted.reserve(bytes.size() * 2);
    for (std::size_t offset = 0; offset < bytes.size();) {
        const DecodedCharacter character = ReadCharacter(bytes, offset, source);
        if (!AppendCharacter(converted, character.codePoint, encoding)) {
            AppendCharacter(converted, U'?', encoding);
        }
        offset += character.size;
    }
    return String(std::move(converted), encoding);
}

}  // namespace vx
