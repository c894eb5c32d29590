#include <gtest/gtest.h>

#include <string>

#include "json/JSONItem.h"
#include "json/JSONTestSupport.h"
#include "runtime/Date.h"
#include "runtime/StringFunctions.h"
#include "runtime/TextEncoding.h"

namespace vx {
namespace {

std::string text(const JSONItem& item) {
    return std::string(item.ToString().bytes());
}

// The text of a one-element array holding value.
std::string printed(const Variant& value, bool escapeSlashes = true) {
    JSONItem item;
    item.EscapeSlashes = escapeSlashes;
    item.Append(value);
    const std::string whole = text(item);
    return whole.substr(1, whole.size() - 2);
}

TEST(JSONSerializer, newItem_printsEmptyBracesInEitherForm) {
    JSONItem item;
    EXPECT_EQ(text(item), "{}");
    item.Compact = false;
    EXPECT_EQ(text(item), "{}");
    item.Append(Variant());
    item.Remove(int64_t{0});
    EXPECT_EQ(text(item), "[]");
    EXPECT_EQ(item.ToString().encoding(), Encodings::UTF8);
}

TEST(JSONSerializer, scalars_printInTheirFixedForms) {
    const struct {
        Variant value;
        const char* expected;
    } cases[] = {
        {Variant(), "null"},
        {true, "true"},
        {false, "false"},
        {int32_t{-7}, "-7"},
        {int64_t{2}, "2"},
        {int64_t{-9223372036854775807 - 1}, "-9223372036854775808"},
        {2.0, "2.0"},
        {-0.5, "-0.5"},
        {600.0, "600.0"},
        {0.1 + 0.2, "0.3"},
        {1e-16, "0.0"},
        {-1e-16, "0.0"},
        {1e21, "1000000000000000000000.0"},
        {0.5F, "0.5"},
        {"", "\"\""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(printed(c.value), c.expected);
    }
}

TEST(JSONSerializer, decimalFormat_shapesFloatingValuesButNeverIntegers) {
    JSONItem item;
    item.Append(2.5);
    item.Append(int64_t{3});
    item.Append(1e21);
    item.DecimalFormat = "";
    EXPECT_EQ(text(item), "[2.5,3,1e+21]");
    item.DecimalFormat = "0.000";
    EXPECT_EQ(text(item), "[2.500,3,1000000000000000000000.000]");
}

TEST(JSONSerializer, strings_areEscapedInOneConsistentForm) {
    const struct {
        String value;
        const char* expected;
    } cases[] = {
        {"\t", R"("\t")"},
        {"a/b", R"("a\/b")"},
        {"say \"hi\"\\", R"("say \"hi\"\\")"},
        {"\b\f\n\r", R"("\b\f\n\r")"},
        {String(std::string("\0\x01\x19\x1B\x1F\x7F", 6), nullptr),
         R"("\u0000\u0001\u0019\u001B\u001F\u007F")"},
        {Chr(1536), R"("\u0600")"},
        {Chr(173) + Chr(1540) + Chr(1807), R"("\u00AD\u0604\u070F")"},
        {Chr(6068) + Chr(6069) + Chr(8204) + Chr(8207), R"("\u17B4\u17B5\u200C\u200F")"},
        {Chr(8232) + Chr(8239) + Chr(8288) + Chr(8303), R"("\u2028\u202F\u2060\u206F")"},
        {Chr(65279) + Chr(65520) + Chr(65535), R"("\uFEFF\uFFF0\uFFFF")"},
        {Chr(172) + Chr(174) + Chr(1541) + Chr(8203) + Chr(8208) + Chr(8304) + Chr(65519),
         "\"\xC2\xAC\xC2\xAE\xD8\x85\xE2\x80\x8B\xE2\x80\x90\xE2\x81\xB0\xEF\xBF\xAF\""},
        {Chr(0x80) + Chr(0x9F) + "\xC3\xA9", "\"\xC2\x80\xC2\x9F\xC3\xA9\""},
        {String("\xE2\xE2\x80\x8C", nullptr), "\"\xE2\\u200C\""},
        {String("caf\xE9", Encodings::ISOLatin1), "\"caf\xC3\xA9\""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(printed(c.value), c.expected);
    }
    EXPECT_EQ(printed("a/b", false), R"("a/b")");
}

}  // namespace
}  // namespace vx
