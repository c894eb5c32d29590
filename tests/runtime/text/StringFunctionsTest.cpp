#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>

#include "runtime/text/StringFunctions.h"
#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

// "aé€😀": characters of one, two, three and four bytes in UTF-8.
const std::string kMixed = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
// The same text in UTF-16, the last character as a surrogate pair.
const std::string kMixedUTF16 = std::string("\x00\x61\x00\xE9\x20\xAC\xD8\x3D\xDE\x00", 10);

TEST(StringFunctions, slicing_countsCharactersFromOneAndKeepsTheTag) {
    const String abc("abc");
    const std::pair<String, std::string_view> ascii[] = {
        {Mid(abc, 2), "bc"},          {Mid(abc, 3, 1), "c"},         {Mid(abc, 4, 1), ""},
        {Mid(abc, 2, 0), ""},         {Mid(abc, 2, -3), ""},         {Mid("", 0, 1), ""},
        {Mid(abc, 0, 2), "ab"},       {Mid(abc, -5), "abc"},         {Mid(abc, 2, INT64_MAX), "bc"},
        {Mid(abc, INT64_MAX, 1), ""}, {Mid(abc, INT64_MIN, 1), "a"}, {Left(abc, 2), "ab"},
        {Left(abc, 7), "abc"},        {Left(abc, -1), ""},           {Right(abc, 2), "bc"},
        {Right(abc, 4), "abc"},       {Right(abc, 0), ""},
    };
    for (const auto& [result, expected] : ascii) {
        EXPECT_EQ(result.bytes(), expected);
        EXPECT_EQ(result.encoding(), Encodings::UTF8);
    }
    const String mixed(kMixed, Encodings::UTF8);
    const String mixedUTF16(kMixedUTF16, Encodings::UTF16);
    const std::tuple<String, std::string, const TextEncoding*> tagged[] = {
        {Mid(mixed, 2, 2), "\xC3\xA9\xE2\x82\xAC", Encodings::UTF8},
        {Left(mixed, 2), "a\xC3\xA9", Encodings::UTF8},
        {Right(mixed, 1), "\xF0\x9F\x98\x80", Encodings::UTF8},
        // Tags of one byte per character count bytes.
        {Mid(String(kMixed, Encodings::ASCII), 2, 2), "\xC3\xA9", Encodings::ASCII},
        {Right(String(kMixed, nullptr), 2), "\x98\x80", nullptr},
        // A surrogate pair is one character.
        {Right(mixedUTF16, 1), std::string("\xD8\x3D\xDE\x00", 4), Encodings::UTF16},
        {Mid(mixedUTF16, 2, 1), std::string("\x00\xE9", 2), Encodings::UTF16},
        // Bytes that are not UTF-8 count one character each.
        {Mid(String("a\xFFz"), 2, 1), "\xFF", Encodings::UTF8},
        {Right(String("\xE2\x82z"), 2), "\x82z", Encodings::UTF8},
    };
    for (const auto& [result, expected, encoding] : tagged) {
        EXPECT_EQ(result.bytes(), expected);
        EXPECT_EQ(result.encoding(), encoding);
    }
}

TEST(StringFunctions, lenAndLenB_differByTag) {
    const std::tuple<std::string, const TextEncoding*, int64_t> cases[] = {
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
    for (const auto& [bytes, encoding, len] : cases) {
        const String text(bytes, encoding);
        EXPECT_EQ(Len(text), len) << text.bytes();
        EXPECT_EQ(LenB(text), static_cast<int64_t>(bytes.size()));
    }
}

TEST(StringFunctions, wholeResults_shareTheBytes) {
    const String text("a:b:c");
    for (const String& same : {Mid(text, 1), Left(text, 99), Right(text, 5), Trim(text),
                               ReplaceAll(text, "/", ":"), Replace(text, "", "x")}) {
        EXPECT_EQ(same.bytes().data(), text.bytes().data());
    }
}

// Two literals are Strings here; bytes decide, with no letter case folded and
// no part for the tag.
TEST(StringFunctions, runtimeStringCompare_ordersByBytes) {
    EXPECT_LT(RuntimeStringCompare("a", "b"), 0);
    EXPECT_GT(RuntimeStringCompare("b", "a"), 0);
    EXPECT_GT(RuntimeStringCompare("a", "A"), 0);
    EXPECT_LT(RuntimeStringCompare("ab", "abc"), 0);
    EXPECT_EQ(RuntimeStringCompare(String(), ""), 0);
    EXPECT_EQ(RuntimeStringCompare(String("V001", nullptr), "V001"), 0);
}

TEST(StringFunctions, replace_firstOrEveryOccurrence) {
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
        {"a::b::c", "::", "", "ab::c", "abc"},
        {"a:b", ":", "/", "a/b", "a/b"},
        {"abc", ":", "/", "abc", "abc"},
        {"\\\\", "\\", "\\\\", "\\\\\\", "\\\\\\\\"},  // no rescan of what was put in
        {"aaa", "aa", "b", "ba", "ba"},                // no overlaps
        {"Abc", "a", "x", "Abc", "Abc"},               // letter case counts
        {"", "a", "b", "", ""},
        {"abc", "", "x", "abc", "abc"},
    };
    for (const auto& [text, oldText, newText, first, all] : cases) {
        EXPECT_EQ(Replace(text, oldText, newText), String(first)) << text;
        EXPECT_EQ(ReplaceAll(text, oldText, newText), String(all)) << text;
    }
    const String raw(std::string_view("x\xFFx"), Encodings::ASCII);
    EXPECT_EQ(ReplaceAll(raw, "x", "yy").encoding(), Encodings::ASCII);
    EXPECT_EQ(ReplaceAll(raw, "x", "yy").bytes(), "yy\xFFyy");
}

TEST(StringFunctions, trim_removesWhiteSpaceAtBothEnds) {
    const std::tuple<std::string, const TextEncoding*, std::string> cases[] = {
        {"  index.html\t\r\n", Encodings::UTF8, "index.html"},
        {"\x0B\x0C a b \x0B", Encodings::UTF8, "a b"},
        {" \t\r\n", Encodings::UTF8, ""},
        {"", Encodings::UTF8, ""},
        {"\xC2\xA0x", Encodings::UTF8, "\xC2\xA0x"},  // no-break space is kept
        {std::string("\x00 \x00x\x00 ", 6), Encodings::UTF16, std::string("\x00x", 2)},
        {std::string("\x20\x00", 2), Encodings::UTF16, std::string("\x20\x00", 2)},  // U+2000
    };
    for (const auto& [bytes, encoding, expected] : cases) {
        const String result = Trim(String(bytes, encoding));
        EXPECT_EQ(result.bytes(), expected);
        EXPECT_EQ(result.encoding(), encoding);
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
