#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "json/JSONItem.h"
#include "json/JSONTestSupport.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/values/Collection.h"
#include "runtime/values/Date.h"
#include "support/RecordingUIServices.h"

namespace vx {
namespace {

using Settings = std::function<void(JSONItem&)>;

// The text of a one-element array holding value.
std::string printed(const Variant& value, bool escapeSlashes = true) {
    JSONItem item;
    item.EscapeSlashes = escapeSlashes;
    item.Append(value);
    const std::string whole = textOf(item);
    return whole.substr(1, whole.size() - 2);
}

TEST(JSONSerializer, values_printInOneFixedAndEscapedForm) {
    const std::pair<Variant, const char*> cases[] = {
        {0.5F, "0.5"},
        {0.1 + 0.2, "0.3"},
        {"", "\"\""},
        {"a/b \"hi\"\\", R"("a\/b \"hi\"\\")"},
        {"\b\f\n\r\t", R"("\b\f\n\r\t")"},
        {String(std::string("\0\x01\x19\x1B\x1F\x7F", 6), nullptr),
         R"("\u0000\u0001\u0019\u001B\u001F\u007F")"},
        // Invisible and format characters, each range by its first and last.
        {Chr(173) + Chr(1536) + Chr(1540) + Chr(1807), R"("\u00AD\u0600\u0604\u070F")"},
        {Chr(6068) + Chr(6069) + Chr(8204) + Chr(8207), R"("\u17B4\u17B5\u200C\u200F")"},
        {Chr(8232) + Chr(8239) + Chr(8288) + Chr(8303), R"("\u2028\u202F\u2060\u206F")"},
        {Chr(65279) + Chr(65520) + Chr(65535), R"("\uFEFF\uFFF0\uFFFF")"},
        // Their neighbours pass as they are.
        {Chr(172) + Chr(174) + Chr(1541) + Chr(8203) + Chr(8208) + Chr(8304) + Chr(65519),
         "\"\xC2\xAC\xC2\xAE\xD8\x85\xE2\x80\x8B\xE2\x80\x90\xE2\x81\xB0\xEF\xBF\xAF\""},
        {Chr(0x80) + Chr(0x9F) + "\xC3\xA9", "\"\xC2\x80\xC2\x9F\xC3\xA9\""},
        {String("\xE2\xE2\x80\x8C", nullptr), "\"\xE2\\u200C\""},
        {String("caf\xE9", Encodings::ISOLatin1), "\"caf\xC3\xA9\""}};
    for (const auto& [value, expected] : cases) {
        EXPECT_EQ(printed(value), expected);
    }
    EXPECT_EQ(printed("a/b", false), R"("a/b")");
}

const Settings none = [](JSONItem&) {};

// Pretty printing with the spacing, after the other settings.
Settings pretty(int64_t spacing = 2, const Settings& before = none) {
    return [=](JSONItem& item) {
        before(item);
        item.Compact = false;
        item.IndentSpacing = spacing;
    };
}

// Gives the list under "b" settings of its own, which its parent's output must not heed.
void spoilChild(JSONItem& item) {
    const auto list = item.Child("b");
    pretty(5)(*list);
    list->EscapeSlashes = false;
}

void addContainers(JSONItem& item) {
    const auto inner = New<Collection>();
    inner->Add("x");
    const auto table = New<Dictionary>();
    table->Value("na/me", Variant(inner));
    table->Value("empty", Variant(New<Dictionary>()));
    const auto list = New<Collection>();
    list->Add(1, "first");
    list->Add(Variant(table));
    list->Add(Variant(New<Collection>()));
    item.Value("c", Variant(list));
}

TEST(JSONSerializer, document_printsByTheSettingsOfTheItemAskedOnly) {
    const std::string sample = R"({"a":1,"b":[2,{}]})";
    const std::string flat = "{\n\"a\":1,\n\"b\":[\n2,\n{}\n]\n}";
    const std::tuple<std::string, Settings, std::string> cases[] = {
        {"[null,true,false,-7,-9223372036854775808,2.0,600.0,-1e-16,1e21]", none,
         "[null,true,false,-7,-9223372036854775808,2.0,600.0,0.0,1000000000000000000000.0]"},
        {"{}", pretty(), "{}"},
        {"[]", pretty(), "[]"},
        {"[2.5,3,1e21]", [](JSONItem& j) { j.DecimalFormat = ""; }, "[2.5,3,1e+21]"},
        {"[2.5,3,1e21]", [](JSONItem& j) { j.DecimalFormat = "0.000"; },
         "[2.500,3,1000000000000000000000.000]"},
        {sample, none, sample},
        {sample, pretty(0), flat},
        {sample, pretty(std::numeric_limits<int64_t>::min()), flat},
        {sample, pretty(13),
         "{\n             \"a\":1,\n             \"b\":[\n                          2,\n"
         "                          {}\n             ]\n}"},
        {R"({"a":1,"b":[2,"x/y"]})", spoilChild, R"({"a":1,"b":[2,"x\/y"]})"},
        {R"({"a":1,"b":[2,"x/y"]})", pretty(1, spoilChild),
         "{\n \"a\":1,\n \"b\":[\n  2,\n  \"x\\/y\"\n ]\n}"},
        {R"({"a\"b/c":1,"plain":"v"})", [](JSONItem& j) { j._RenderAsJavascript = true; },
         R"({a\"b\/c:1,plain:"v"})"},
        {"[1]", [](JSONItem& j) { j.Child("named", arrayOf({true})); }, "[1,[true]]"},
        {"{}", addContainers, R"({"c":[1,{"na\/me":["x"],"empty":{}},[]]})"},
        {"{}", pretty(2, addContainers),
         "{\n  \"c\":[\n    1,\n    {\n      \"na\\/me\":[\n        \"x\"\n      ],\n"
         "      \"empty\":{}\n    },\n    []\n  ]\n}"},
    };
    for (const auto& [input, settings, expected] : cases) {
        JSONItem item{String(input, Encodings::UTF8)};
        settings(item);
        EXPECT_EQ(textOf(item), expected) << input;
        EXPECT_EQ(item.ToString().encoding(), Encodings::UTF8);
    }
}

TEST(JSONSerializer, valueWithoutJSONForm_raisesWithItsTextOrCycleFourteen) {
    const auto selfCycle = New<JSONItem>();
    selfCycle->Child("self", selfCycle);
    const auto table = New<Dictionary>();
    const auto backCycle = arrayOf({Variant(table)});
    table->Value("back", Variant(backCycle));
    const std::tuple<Ref<JSONItem>, int64_t, const char*> cases[] = {
        {arrayOf({Variant(New<Date>(2024, 1, 2, 3, 4, 5, 0.0))}), 11,
         "Unrecognized Object: 2024-01-02 03:04:05"},
        {arrayOf({Variant(Currency())}), 11, "Unrecognized Object: 0"},
        {arrayOf({Variant(uint64_t{7})}), 11, "Unrecognized Object: 7"},
        {arrayOf({Variant(Color())}), 11, "Unrecognized Object: &h00000000"},
        {arrayOf({Variant(New<Pair>(1, 2))}), 11, "Unrecognized Object"},
        {arrayOf({Variant(Ref<ArrayBase>(New<Array<int64_t>>(std::vector<int64_t>{1})))}), 11,
         "Unrecognized Object"},
        {selfCycle, 14, "Circular Reference Detected"},
        {backCycle, 14, "Circular Reference Detected"},
    };
    for (const auto& [item, number, message] : cases) {
        ExpectJSONFailure([&] { item->ToString(); }, number, message);
        item->Clear();
    }
    table->Value(1, 2);
    EXPECT_THROW(arrayOf({Variant(table)})->ToString(), KeyNotFoundException);
}

TEST(JSONSerializer, itemGrowingDuringOutput_isPrintedWithItsNewCount) {
    test::RecordingUIServices services;
    const test::InstalledUIServices installed(services);
    const auto item = arrayOf({1, 2});
    services.onBackgroundTask = [&] {
        if (item->Count() == 2) {
            item->Append(3);
        }
    };
    EXPECT_EQ(textOf(*item), "[1,2,3]");
    EXPECT_EQ(services.backgroundTasks, 3);
}

// How deep the printer may go is the parser's test; here is what lies beyond,
// and the indent at depth.
TEST(JSONSerializer, deepDocument_raisesBeyondTheLimitAndIndentsByDepth) {
    for (const bool arrays : {true, false}) {
        const auto tooDeep = chain(JSONItem::MaxDepth + 1, arrays);
        ExpectJSONFailure([&] { tooDeep->ToString(); }, 14, "Circular Reference Detected");
    }
    const auto root = chain(5000, true);
    root->Compact = false;
    const std::string text = textOf(*root);
    const std::size_t innermost = text.find('{');
    ASSERT_GT(innermost, 10000U);
    EXPECT_EQ(text.substr(innermost - 10000, 10000), "[\n" + std::string(9998, ' '));
    EXPECT_EQ(text.substr(innermost, 10000), "{}\n" + std::string(9996, ' ') + "]");
    EXPECT_EQ(text.substr(text.size() - 6), "\n  ]\n]");
}

}  // namespace
}  // namespace vx
