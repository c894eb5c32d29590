#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <tuple>

#include "runtime/text/EncodingConversion.h"
#include "runtime/text/StringFunctions.h"

namespace vx {
namespace {

std::string bytesOf(const char* text, std::size_t size) {
    return std::string(text, size);
}

TEST(ConvertEncoding, betweenEncodings_reEncodesEachCharacter) {
    const TextEncoding* utf8 = Encodings::UTF8;
    const TextEncoding* utf16 = Encodings::UTF16;
    const TextEncoding* latin1 = Encodings::ISOLatin1;
    const TextEncoding* ascii = Encodings::ASCII;
    const std::tuple<const char*, std::string, const TextEncoding*, const TextEncoding*,
                     std::string>
        cases[] = {
            {"utf8 to latin1", "caf\xC3\xA9", utf8, latin1, "caf\xE9"},
            {"utf8 to utf16", "a\xC3\xA9", utf8, utf16, bytesOf("\x00\x61\x00\xE9", 4)},
            {"utf8 to ascii", "caf\xC3\xA9", utf8, ascii, "caf?"},
            {"euro to latin1", "\xE2\x82\xAC", utf8, latin1, "?"},
            {"utf8 pair", "\xF0\x9F\x98\x80", utf8, utf16, bytesOf("\xD8\x3D\xDE\x00", 4)},
            {"utf16 pair", bytesOf("\xD8\x3D\xDE\x00", 4), utf16, utf8, "\xF0\x9F\x98\x80"},
            {"latin1 to utf8", "caf\xE9", latin1, utf8, "caf\xC3\xA9"},
            {"ascii high byte as latin1", "\xE9\x80", ascii, utf8, "\xC3\xA9\xC2\x80"},
            {"bad utf8 byte as latin1", "a\xFFz", utf8, utf16, bytesOf("\x00\x61\x00\xFF\x00z", 6)},
            {"odd utf16 byte as latin1", bytesOf("\x00\x61\x41", 3), utf16, utf8, "aA"},
            {"lone surrogate kept", bytesOf("\xD8\x00", 2), utf16, utf8, "\xED\xA0\x80"},
            {"lone surrogate back", "\xED\xA0\x80", utf8, utf16, bytesOf("\xD8\x00", 2)},
            {"nil read as utf8", "\xC3\xA9", nullptr, latin1, "\xE9"},
            {"ascii text to utf16", "ok", ascii, utf16, bytesOf("\x00o\x00k", 4)},
            {"to nil keeps bytes", "\xC3\xA9", utf8, nullptr, "\xC3\xA9"},
            {"empty", "", utf8, utf16, ""},
        };
    for (const auto& [name, bytes, from, to, expected] : cases) {
        const String converted = ConvertEncoding(String(bytes, from), to);
        EXPECT_EQ(converted.bytes(), expected) << name;
        EXPECT_EQ(Encoding(converted), to) << name;
    }
}

TEST(ConvertEncoding, everyLatin1Byte_survivesARoundTrip) {
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    for (const TextEncoding* via : {Encodings::UTF8, Encodings::UTF16}) {
        for (const TextEncoding* from : {Encodings::ISOLatin1, Encodings::ASCII}) {
            const String there = ConvertEncoding(String(all, from), via);
            EXPECT_EQ(Len(there), 256);
            EXPECT_EQ(ConvertEncoding(there, Encodings::ISOLatin1).bytes(), all);
        }
    }
}

TEST(ConvertEncoding, nothingToChange_sharesTheBytes) {
    const String text(std::string_view("plain text"), Encodings::ASCII);
    for (const TextEncoding* target : {Encodings::ASCII, Encodings::UTF8, Encodings::ISOLatin1}) {
        const String converted = ConvertEncoding(text, target);
        EXPECT_EQ(converted.bytes().data(), text.bytes().data());
        EXPECT_EQ(Encoding(converted), target);
    }
    EXPECT_NE(ConvertEncoding(text, Encodings::UTF16).bytes().data(), text.bytes().data());
}

TEST(DefineEncoding, newTag_keepsEveryByte) {
    const String text("\xC3\xA9t\xC3\xA9");
    const String raw = DefineEncoding(text, Encodings::ASCII);
    EXPECT_EQ(LenB(raw), LenB(text));
    EXPECT_EQ(raw.bytes().data(), text.bytes().data());
    EXPECT_EQ(Len(raw), 5);
    EXPECT_EQ(Len(text), 3);
    EXPECT_EQ(Encoding(DefineEncoding(raw, nullptr)), nullptr);
    EXPECT_TRUE(Encoding(text)->Equals(Encodings::UTF8));
    EXPECT_EQ(Encoding(text)->Operator_Compare(Encodings::ASCII), 1);
}

TEST(TextEncoding, chr_writesTheCharacterInThatEncoding) {
    const std::tuple<const TextEncoding*, int64_t, std::string> cases[] = {
        {Encodings::UTF8, 233, "\xC3\xA9"},
        {Encodings::UTF8, 0xDC00, "\xED\xB0\x80"},
        {Encodings::UTF8, 0x110000, ""},
        {Encodings::ASCII, 65, "A"},
        {Encodings::ASCII, 233, ""},
        {Encodings::ISOLatin1, 233, "\xE9"},
        {Encodings::ISOLatin1, 0x20AC, ""},
        {Encodings::UTF16, 0x20AC, "\x20\xAC"},
        {Encodings::UTF16, 0x1F600, bytesOf("\xD8\x3D\xDE\x00", 4)},
        {Encodings::UTF16, -1, ""},
    };
    for (const auto& [encoding, codePoint, expected] : cases) {
        const String character = encoding->Chr(codePoint);
        EXPECT_EQ(character.bytes(), expected) << codePoint;
        EXPECT_EQ(Encoding(character), encoding);
    }
}

}  // namespace
}  // namespace vx
