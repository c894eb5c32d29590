#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "runtime/StringFunctions.h"
#include "runtime/TextEncoding.h"

namespace vx {
namespace {

// "aé€😀": characters of one, two, three and four bytes in UTF-8.
const std::string kMixed = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
// The same text in UTF-16, the last character as a surrogate pair.
const std::string kMixedUTF16 = std::string("\x00\x61\x00\xE9\x20\xAC\xD8\x3D\xDE\x00", 10);

TEST(StringFunctions, slicing_countsCharactersFromOneAndKeepsTheTag) {
    const String abc("abc");
    const String mixed(kMixed, Encodings::UTF8);
    const String mixedUTF16(kMixedUTF16, Encodings::UTF16);
    const struct {
        const char* name;
        String result;
        std::string expected;
        const TextEncoding* encoding = Encodings::UTF8;
    } cases[] = {
        {"mid to end", Mid(abc, 2), "bc"},
        {"mid last", Mid(abc, 3, 1), "c"},
        {"mid beyond end", Mid(abc, 4, 1), ""},
        {"mid zero length", Mid(abc, 2, 0), ""},
        {"mid negative length", Mid(abc, 2, -3), ""},
        {"mid start zero on empty", Mid(String(""), 0, 1), ""},
        {"mid start zero taken as one", Mid(abc, 0, 2), "ab"},
        {"mid negative start to end", Mid(abc, -5), "abc"},
        {"mid huge length", Mid(abc, 2, INT64_MAX), "bc"},
        {"mid huge start", Mid(abc, INT64_MAX, 1), ""},
        {"mid lowest start", Mid(abc, INT64_MIN, 1), "a"},
        {"left shorter", Left(abc, 2), "ab"},
        {"left longer", Left(abc, 7), "abc"},
        {"left negative", Left(abc, -1), ""},
        {"right shorter", Right(abc, 2), "bc"},
        {"right longer", Right(abc, 4), "abc"},
        {"right zero", Right(abc, 0), ""},
        {"utf8 mid multibyte", Mid(mixed, 2, 2), "\xC3\xA9\xE2\x82\xAC"},
        {"utf8 left multibyte", Left(mixed, 2), "a\xC3\xA9"},
        {"utf8 right four bytes", Right(mixed, 1), "\xF0\x9F\x98\x80"},
        {"ascii tag counts bytes", Mid(String(kMixed, Encodings::ASCII), 2, 2), "\xC3\xA9",
         Encodings::ASCII},
        {"nil tag counts bytes", Right(String(kMixed, nullptr), 2), "\x98\x80", nullptr},
        {"utf16 surrogate pair is one", Right(mixedUTF16, 1), std::string("\xD8\x3D\xDE\x00", 4),
         Encodings::UTF16},
        {"utf16 mid", Mid(mixedUTF16, 2, 1), std::string("\x00\xE9", 2), Encodings::UTF16},
        {"invalid utf8 byte is one character", Mid(String("a\xFFz"), 2, 1), "\xFF"},
        {"truncated utf8 sequence", Right(String("\xE2\x82z"), 2), "\x82z"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.result.bytes(), c.expected) << c.name;
        EXPECT_EQ(c.result.encoding(), c.encoding) << c.name;
    }
}

TEST(StringFunctions, lenAndLenB_differByTag) {
    const struct {
        std::string bytes;
        const TextEncoding* encoding;
        int64_t len;
    } cases[] = {
        {"\xC3\xA9", Encodings::UTF8, 1},
        {kMixed, Encodings::UTF8, 4},
        {kMixed, Encodings::ASCII, 10},
        {kMixed, Encodings::ISOLatin1, 10},
        {kMixed, nullptr, 10},
        {kMixedUTF16, Encodings::UTF16, 4},
        {std::string("\x00\x61\x00", 3), Encodings::UTF16, 2},      // odd trailing byte
        {std::string("\xDC\x00\x00\x61", 4), Encodings::UTF16, 2},  // unpaired low surrogate
        {"\xED\xA0\xBD", Encodings::UTF8, 1},      // a lone surrogate as Chr writes it
        {"\xC0\xAF", Encodings::UTF8, 2},          // overlong form: two stray bytes
        {"\xF4\x90\x80\x80", Encodings::UTF8, 4},  // past the last code point
        {"", Encodings::UTF8, 0},
    };
    for (const auto& c : cases) {
        const String text(c.bytes, c.encoding);
        EXPECT_EQ(Len(text), c.len) << text.bytes();
        EXPECT_EQ(LenB(text), static_cast<int64_t>(c.bytes.size()));
    }
}

TEST(StringFunctions, wholeResults_shareTheBytes) {
    const String text("a:b:c");
    EXPECT_EQ(Mid(text, 1).bytes().data(), text.bytes().data());
    EXPECT_EQ(Left(text, 99).bytes().data(), text.bytes().data());
    EXPECT_EQ(Right(text, 5).bytes().data(), text.bytes().data());
    EXPECT_EQ(Trim(text).bytes().data(), text.bytes().data());
    EXPECT_EQ(ReplaceAll(text, "/", ":").bytes().data(), text.bytes().data());
    EXPECT_EQ(Replace(text, "", "x").bytes().data(), text.bytes().data());
}

TEST(StringFunctions, replace_firstOrEveryOccurrence) {
    const struct {
        const char* text;
        const char* oldText;
        const char* newText;
        const char* first;
        const char* all;
    } cases[] = {
        {"a::b::c", "::", "", "ab::c", "abc"},
        {"a:b", ":", "/", "a/b", "a/b"},
        {"abc", ":", "/", "abc", "abc"},
        {"\\\\", "\\", "\\\\", "\\\\\\", "\\\\\\\\"},  // no rescan of what was put in
        {"aaa", "aa", "b", "ba", "ba"},                // no overlaps
        {"Abc", "a", "x", "Abc", "Abc"},               // letter case counts
        {"", "a", "b", "", ""},
        {"abc", "", "x", "abc", "abc"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Replace(c.text, c.oldText, c.newText), String(c.first)) << c.text;
        EXPECT_EQ(ReplaceAll(c.text, c.oldText, c.newText), String(c.all)) << c.text;
    }
    const String raw(std::string_view("x\xFFx"), Encodings::ASCII);
    EXPECT_EQ(ReplaceAll(raw, "x", "yy").encoding(), Encodings::ASCII);
    EXPECT_EQ(ReplaceAll(raw, "x", "yy").bytes(), "yy\xFFyy");
}

TEST(StringFunctions, trim_removesWhiteSpaceAtBothEnds) {
    const struct {
        std::string bytes;
        const TextEncoding* encoding;
        std::string expected;
    } cases[] = {
        {"  index.html\t\r\n", Encodings::UTF8, "index.html"},
        {"\x0B\x0C a b \x0B", Encodings::UTF8, "a b"},
        {" \t\r\n", Encodings::UTF8, ""},
        {"", Encodings::UTF8, ""},
        {"\xC2\xA0x", Encodings::UTF8, "\xC2\xA0x"},  // no-break space is kept
        {std::string("\x00 \x00x\x00 ", 6), Encodings::UTF16, std::string("\x00x", 2)},
        {std::string("\x20\x00", 2), Encodings::UTF16, std::string("\x20\x00", 2)},  // U+2000
    };
    for (const auto& c : cases) {
        const String result = Trim(String(c.bytes, c.encoding));
        EXPECT_EQ(result.bytes(), c.expected);
        EXPECT_EQ(result.encoding(), c.encoding);
    }
}

TEST(StringFunctions, ascChrAndChrB_roundTrip) {
    for (const int64_t code :
         {0, 1, 32, 127, 128, 233, 0x7FF, 0x800, 0xD800, 0xFFFF, 0x10000, 0x10FFFF}) {
        const String character = Chr(code);
        EXPECT_EQ(character.encoding(), Encodings::UTF8);
        EXPECT_EQ(Len(character), 1) << code;
        EXPECT_EQ(Asc(character), code);
    }
    EXPECT_EQ(Chr(233).bytes(), "\xC3\xA9");
    EXPECT_EQ(Chr(0x1F600).bytes(), "\xF0\x9F\x98\x80");
    EXPECT_TRUE(Chr(0x110000).isEmpty());
    EXPECT_TRUE(Chr(-1).isEmpty());

    EXPECT_EQ(ChrB(32), String(" "));
    EXPECT_EQ(ChrB(32).encoding(), nullptr);
    EXPECT_EQ(ChrB(255).bytes(), "\xFF");
    EXPECT_EQ(ChrB(0).byteLength(), 1u);
    EXPECT_TRUE(ChrB(256).isEmpty());

    EXPECT_EQ(Asc(String()), 0);
    EXPECT_EQ(Asc(String(kMixed, Encodings::ASCII)), 'a');
    EXPECT_EQ(Asc(String(std::string_view("\xC3\xA9"), Encodings::ASCII)), 0xC3);
    EXPECT_EQ(Asc(String(kMixedUTF16.substr(6), Encodings::UTF16)), 0x1F600);
}

}  // namespace
}  // namespace vx
