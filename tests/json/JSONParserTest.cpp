#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "json/JSONItem.h"
#include "json/JSONTestSupport.h"
#include "runtime/core/RuntimeException.h"

namespace vx {
namespace {

// The text as a String of raw bytes, as a file's contents would arrive.
String bytesOf(const std::string& text) {
    return String(text, nullptr);
}

// The one element of a parsed one-element array, as stored.
Variant onlyElement(const std::string& text) {
    JSONItem item(bytesOf(text));
    EXPECT_EQ(item.Count(), 1) << text;
    return item.InternalValue(int64_t{0});
}

TEST(JSONParser, malformedText_raisesItsNumberAndPosition) {
    const std::tuple<std::string, int64_t, const char*> cases[] = {
        {"", 1, "Parse Error: Expecting '{' or '['"},
        {"\f{}", 1, "Parse Error: Expecting '{' or '['"},
        {"\xEF\xBB\xBF{}", 1, "Parse Error: Expecting '{' or '['"},
        {" \t\r\n\"a\"", 1, "Parse Error: Expecting '{' or '[' at position 4"},
        {"[1,2", 2, "A parsing error occurred at position 4"},
        {"[1 2]", 2, "A parsing error occurred at position 4"},
        {"[1}", 2, "A parsing error occurred at position 3"},
        {"[", 2, "A parsing error occurred at position 1"},
        {"[truex]", 2, "A parsing error occurred at position 6"},
        {"[nullx]", 2, "A parsing error occurred at position 6"},
        {"[01]", 2, "A parsing error occurred at position 3"},
        {"[0E1]", 2, "A parsing error occurred at position 3"},
        {"[1e", 2, "A parsing error occurred at position 3"},
        {"[\"\\u00\"]", 2, "A parsing error occurred at position 8"},
        {"[-]", 3, "Illegal Number Format at position 3"},
        {"[-a]", 3, "Illegal Number Format at position 3"},
        {"[-", 3, "Illegal Number Format at position 2"},
        {"[1.]", 3, "Illegal Number Format at position 4"},
        {"[1.e5]", 3, "Illegal Number Format at position 4"},
        {"{\"a\" 1}", 5, "Missing : at position 6"},
        {"{\"a\"", 5, "Missing : at position 4"},
        {"{\"a\":1 \"b\":2}", 6, "Missing , or } at position 8"},
        {"{\"a\":1]", 6, "Missing , or } at position 7"},
        {"{\"a\":\"b", 6, "Missing , or } at position 7"},
        {"{\"a\":", 6, "Missing , or } at position 5"},
        {"{\"a\":1,}", 7, "Missing \" at position 8"},
        {"{a:1}", 7, "Missing \" at position 2"},
        {"{", 7, "Missing \" at position 1"},
        {"[\"\\u0\"]", 8, "Illegal Unicode Character Format at position 7"},
        {"[\"\\x\"]", 9, "Illegal Character at position 4"},
        {"[\"\\", 9, "Illegal Character at position 3"},
        {"[1,]", 10, "Illegal Value at position 3"},
        {"[,1]", 10, "Illegal Value at position 1"},
        {"[+1]", 10, "Illegal Value at position 1"},
        {"[tru]", 10, "Illegal Value at position 1"},
        {"[TRUE]", 10, "Illegal Value at position 1"},
        {"[falsy]", 10, "Illegal Value at position 6"},
        {"[fals", 10, "Illegal Value at position 5"},
        {"{\"a\":'b'}", 10, "Illegal Value at position 5"},
    };
    for (const auto& [text, number, message] : cases) {
        SCOPED_TRACE(text);
        ExpectJSONFailure([&] { New<JSONItem>()->Load(bytesOf(text)); }, number, message);
    }
}

TEST(JSONParser, lenientText_isAccepted) {
    // Made from blank text, an item stays empty unparsed; Load would still parse it.
    const std::tuple<std::string, int64_t, bool> cases[] = {
        {"{}", 0, false},   {"[]", 0, true},    {" \t\r\n[ ]", 0, true},
        {"{} x", 0, false}, {"[1]]]", 1, true}, {"{\"a\":1,\"a\":2}", 1, false},
        {"[1e+]", 1, true}, {"", 0, false},     {"\t\r\n ", 0, false},
        {"\f", 0, false}};
    for (const auto& [text, count, isArray] : cases) {
        const JSONItem item(bytesOf(text));
        EXPECT_EQ(item.Count(), count) << text;
        EXPECT_EQ(item.IsArray(), isArray) << text;
    }
}

// Strings come back as the bytes they stand for, with no tag, and compared
// byte for byte.
TEST(JSONParser, scalars_takeTheirKindAndValueFromTheirForm) {
    const std::tuple<std::string, int32_t, Variant> cases[] = {
        {"[0]", VarTypes::Int32, 0},
        {"[-0]", VarTypes::Int32, 0},
        {"[2147483647]", VarTypes::Int32, 2147483647},
        {"[-2147483648]", VarTypes::Int32, int64_t{-2147483648}},
        {"[2147483648]", VarTypes::Int64, int64_t{2147483648}},
        {"[-2147483649]", VarTypes::Int64, int64_t{-2147483649}},
        {"[1.0]", VarTypes::Double, 1.0},
        {"[1e0]", VarTypes::Double, 1.0},
        {"[0e3]", VarTypes::Double, 0.0},
        {"[1E5]", VarTypes::Double, 1e5},
        {"[-2.5e-3]", VarTypes::Double, -2.5e-3},
        {"[1e]", VarTypes::Double, 1.0},
        {"[1e400]", VarTypes::Double, std::numeric_limits<double>::infinity()},
        // Large integers pass through a Double: 2 to the 53rd plus one has none of its own.
        {"[9007199254740993]", VarTypes::Int64, int64_t{9007199254740992}},
        // Eighteen and nineteen digits: both sides of the exact shortcut.
        {"[123456789012345678]", VarTypes::Int64, int64_t{123456789012345680}},
        {"[-123456789012345678]", VarTypes::Int64, int64_t{-123456789012345680}},
        {"[1234567890123456789]", VarTypes::Int64, int64_t{1234567890123456768}},
        {"[-9223372036854775808]", VarTypes::Int64, int64_t{INT64_MIN}},
        {"[99999999999999999999999]", VarTypes::Int64, int64_t{INT64_MAX}},
        {"[-99999999999999999999999]", VarTypes::Int64, int64_t{INT64_MIN}},
        {R"(["plain"])", VarTypes::String, "plain"},
        {R"([""])", VarTypes::String, ""},
        {R"(["\"\\\/\b\f\n\r\t"])", VarTypes::String, "\"\\/\b\f\n\r\t"},
        {R"(["a\u0042c"])", VarTypes::String, "aBc"},
        {R"(["\u00e9\u00E9"])", VarTypes::String, "\xC3\xA9\xC3\xA9"},
        {R"(["\u20AC"])", VarTypes::String, "\xE2\x82\xAC"},
        {R"(["\u00G1"])", VarTypes::String, bytesOf(std::string(1, '\0'))},
        // Each half of a surrogate pair becomes a character of its own.
        {R"(["\uD83D\uDE00"])", VarTypes::String, "\xED\xA0\xBD\xED\xB8\x80"},
        {"[\"caf\xC3\xA9\"]", VarTypes::String, "caf\xC3\xA9"},
        {"[\"\xFF\x01\t\"]", VarTypes::String, "\xFF\x01\t"}};
    for (const auto& [text, kind, expected] : cases) {
        const Variant value = onlyElement(text);
        const String printed = VariantToString(value);
        EXPECT_EQ(VarType(value), kind) << text;
        EXPECT_TRUE(value == expected) << text << " read as " << printed.bytes();
        if (kind == VarTypes::String) {
            EXPECT_EQ(printed.bytes(), VariantToString(expected).bytes()) << text;
            EXPECT_EQ(printed.encoding(), nullptr) << text;
        }
    }
}

TEST(JSONParser, parsedText_printsInTheOneFormAndComesBackUnchanged) {
    const std::pair<std::string, std::string> cases[] = {
        {" { \"a\" : [ 1 , 2.5 , true , false , null , \"x/y\" ] } ",
         R"({"a":[1,2.5,true,false,null,"x\/y"]})"},
        {R"({"b":{},"a":[],"c":[{}]})", R"({"b":{},"a":[],"c":[{}]})"},
        {R"({"a":1,"a":2})", R"({"a":2})"},
        {"[\"\\u0001\xC3\xA9\\t\\\"\"]", "[\"\\u0001\xC3\xA9\\t\\\"\"]"},
        {"{\"\xC3\xA9\":\"\\u00e9\"}", "{\"\xC3\xA9\":\"\xC3\xA9\"}"},
    };
    for (const auto& [text, expected] : cases) {
        const String printed = JSONItem(bytesOf(text)).ToString();
        EXPECT_EQ(std::string(printed.bytes()), expected);
        EXPECT_EQ(JSONItem(printed).ToString(), printed);
    }
}

TEST(JSONParser, load_keepsTheLoadersFlagAndSettings) {
    auto array = New<JSONItem>();
    array->Append(1);
    array->Compact = false;
    array->Load("{}");
    EXPECT_TRUE(array->IsArray());
    EXPECT_EQ(array->Count(), 0);
    EXPECT_FALSE(array->Compact);

    auto object = New<JSONItem>();
    object->Value("kept", 1);
    ExpectJSONFailure([&] { object->Load("[1,"); }, 2, "A parsing error occurred at position 3");
    // The flag was set before the failure; the values are those of before.
    EXPECT_TRUE(object->IsArray());
    EXPECT_EQ(object->Count(), 1);
    EXPECT_TRUE(object->HasName("kept"));
}

TEST(JSONParser, deepNesting_parsesUpToTheGuardAndRefusesBeyond) {
    const int guard = static_cast<int>(JSONItem::MaxDepth);
    for (const auto& [open, close] : {std::pair{"[", "]"}, std::pair{"{\"a\":", "}"}}) {
        SCOPED_TRACE(open);
        const std::string deepest = nested(guard - 1, open, "[1]", close);
        // The printer's limit is the parser's: what one takes, the other gives back.
        EXPECT_EQ(textOf(JSONItem(bytesOf(deepest))), deepest);
        EXPECT_THROW(JSONItem(bytesOf(nested(guard, open, "[1]", close))), StackOverflowException);
        EXPECT_THROW(JSONItem(bytesOf(nested(guard, open, "[]", close))), StackOverflowException);
    }
}

}  // namespace
}  // namespace vx
