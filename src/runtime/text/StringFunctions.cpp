#include "runtime/text/StringFunctions.h"

#include <string>

#include "runtime/text/TextCodec.h"
#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

// Characters before the one at start; a start below 1 is taken as 1.
int64_t charactersBefore(int64_t start) {
    return start < 1 ? 0 : start - 1;
}

// The bytes from..to of text under its tag; the whole String is shared.
String slice(const String& text, std::size_t from, std::size_t to) {
    if (from == 0 && to == text.byteLength()) {
        return text;
    }
    return String(text.bytes().substr(from, to - from), text.encoding());
}

String replace(const String& text, const String& oldText, const String& newText, bool all) {
    const std::string_view bytes = text.bytes();
    const std::string_view needle = oldText.bytes();
    std::size_t found = needle.empty() ? std::string_view::npos : bytes.find(needle);
    if (found == std::string_view::npos) {
        return text;
    }
    std::string result;
    result.reserve(bytes.size() - needle.size() + newText.byteLength());
    std::size_t done = 0;
    while (found != std::string_view::npos) {
        result.append(bytes.substr(done, found - done)).append(newText.bytes());
        done = found + needle.size();
        found = all ? bytes.find(needle, done) : std::string_view::npos;
    }
    result.append(bytes.substr(done));
    return String(std::move(result), text.encoding());
}

}  // namespace

int64_t Len(const String& text) {
    return CountCharacters(text.bytes(), text.encoding());
}

int64_t LenB(const String& text) {
    return static_cast<int64_t>(text.byteLength());
}

String Left(const String& text, int64_t count) {
    return Mid(text, 1, count);
}

String Right(const String& text, int64_t count) {
    if (count <= 0) {
        return slice(text, 0, 0);
    }
    const int64_t length = Len(text);
    return count >= length ? text : Mid(text, length - count + 1);
}

String Mid(const String& text, int64_t start) {
    const std::size_t from =
        SkipCharacters(text.bytes(), 0, charactersBefore(start), text.encoding());
    return slice(text, from, text.byteLength());
}

String Mid(const String& text, int64_t start, int64_t length) {
    if (length <= 0) {
        return slice(text, 0, 0);
    }
    const std::size_t from =
        SkipCharacters(text.bytes(), 0, charactersBefore(start), text.encoding());
    const std::size_t to = SkipCharacters(text.bytes(), from, length, text.encoding());
    return slice(text, from, to);
}

String Trim(const String& text) {
    const std::string_view bytes = text.bytes();
    std::size_t first = bytes.size();
    std::size_t end = 0;
    for (std::size_t offset = 0; offset < bytes.size();) {
        const DecodedCharacter character = ReadCharacter(bytes, offset, text.encoding());
        if (!IsWhiteSpace(character.codePoint)) {
            first = first < offset ? first : offset;
            end = offset + character.size;
        }
        offset += character.size;
    }
    return first < end ? slice(text, first, end) : slice(text, 0, 0);
}

String Replace(const String& text, const String& oldText, const String& newText) {
    return replace(text, oldText, newText, false);
}

String ReplaceAll(const String& text, const String& oldText, const String& newText) {
    return replace(text, oldText, newText, true);
}

int64_t Asc(const String& text) {
    return ReadCharacter(text.bytes(), 0, text.encoding()).codePoint;
}

String Chr(int64_t codePoint) {
    return Encodings::UTF8->Chr(codePoint);
}

String ChrB(int64_t byteValue) {
    if (byteValue < 0 || byteValue > 0xFF) {
        return String();
    }
    return String(std::string(1, static_cast<char>(byteValue)), nullptr);
}

}  // namespace vx
