#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "json/JSONItem.h"
#include "json/JSONTestSupport.h"
#include "runtime/Collection.h"
#include "runtime/Date.h"
#include "runtime/StringFunctions.h"
#include "runtime/TextEncoding.h"
#include "support/RecordingUIServices.h"

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

// The document the package.json writer makes from the wizard's defaults.
Ref<JSONItem> packageDocument() {
    auto root = New<JSONItem>();
    auto window = New<JSONItem>();
    root->Compact = false;
    window->Compact = false;
    root->Value("name", "My App");
    root->Value("uid", "com.example.myapp");
    root->Value("version", "1.0");
    root->Value("company", "https://www.example.com/");
    root->Value("main", "index.html");
    window->Value("title", "My \"App\"");
    window->Value("width", 600.0);
    window->Value("height", 600.0);
    root->Value("window", Variant(window));
    return root;
}

TEST(JSONSerializer, prettyPackageDocument_hasTheExactShape) {
    EXPECT_EQ(text(*packageDocument()),
              "{\n"
              "  \"name\":\"My App\",\n"
              "  \"uid\":\"com.example.myapp\",\n"
              "  \"version\":\"1.0\",\n"
              "  \"company\":\"https:\\/\\/www.example.com\\/\",\n"
              "  \"main\":\"index.html\",\n"
              "  \"window\":{\n"
              "    \"title\":\"My \\\"App\\\"\",\n"
              "    \"width\":600.0,\n"
              "    \"height\":600.0\n"
              "  }\n"
              "}");
}

Ref<JSONItem> nestedSample() {
    auto root = New<JSONItem>();
    auto list = New<JSONItem>();
    list->Append(2);
    list->Append(New<JSONItem>());
    root->Value("a", 1);
    root->Value("b", Variant(list));
    return root;
}

TEST(JSONSerializer, indentSpacing_setsTheBlanksPerLevel) {
    const struct {
        int64_t spacing;
        const char* expected;
    } cases[] = {
        {2, "{\n  \"a\":1,\n  \"b\":[\n    2,\n    {}\n  ]\n}"},
        {0, "{\n\"a\":1,\n\"b\":[\n2,\n{}\n]\n}"},
        {-3, "{\n\"a\":1,\n\"b\":[\n2,\n{}\n]\n}"},
        {13,
         "{\n             \"a\":1,\n             \"b\":[\n                          2,\n"
         "                          {}\n             ]\n}"},
    };
    for (const auto& c : cases) {
        const auto root = nestedSample();
        root->Compact = false;
        root->IndentSpacing = c.spacing;
        EXPECT_EQ(text(*root), c.expected) << c.spacing;
    }
    const auto root = nestedSample();
    EXPECT_EQ(text(*root), R"({"a":1,"b":[2,{}]})");
    root->IndentSpacing = std::numeric_limits<int64_t>::min();
    EXPECT_EQ(text(*root), R"({"a":1,"b":[2,{}]})");
    root->Compact = false;
    EXPECT_EQ(text(*root), "{\n\"a\":1,\n\"b\":[\n2,\n{}\n]\n}");
}

TEST(JSONSerializer, settings_comeFromTheItemAskedOnly) {
    const auto root = nestedSample();
    const auto list = root->Child("b");
    list->Compact = false;
    list->EscapeSlashes = false;
    list->Append("x/y");
    EXPECT_EQ(text(*root), R"({"a":1,"b":[2,{},"x\/y"]})");
    EXPECT_EQ(text(*list), "[\n  2,\n  {},\n  \"x/y\"\n]");

    list->Compact = true;
    root->Compact = false;
    root->IndentSpacing = 1;
    EXPECT_EQ(text(*root), "{\n \"a\":1,\n \"b\":[\n  2,\n  {},\n  \"x\\/y\"\n ]\n}");
}

TEST(JSONSerializer, renderAsJavascript_dropsQuotesButStillEscapesNames) {
    JSONItem item;
    item._RenderAsJavascript = true;
    item.Value("a\"b/c", 1);
    item.Value("plain", "v");
    EXPECT_EQ(text(item), R"({a\"b\/c:1,plain:"v"})");
    item._RenderAsJavascript = false;
    EXPECT_EQ(text(item), R"({"a\"b\/c":1,"plain":"v"})");
}

TEST(JSONSerializer, stringKeyInArray_printsItsValueWithoutName) {
    JSONItem item;
    item.Append(1);
    auto child = New<JSONItem>();
    child->Value("k", true);
    item.Child("named", child);
    EXPECT_EQ(text(item), R"([1,{"k":true}])");
}

TEST(JSONSerializer, dictionaryValue_printsAsObjectWithClearKeys) {
    const auto inner = New<Dictionary>();
    inner->Value("n", Variant());
    const auto table = New<Dictionary>();
    table->Value("na/me", "v");
    table->Value("inner", Variant(inner));
    table->Value("empty", Variant(New<Dictionary>()));
    JSONItem item;
    item.Value("d", Variant(table));
    item.Compact = false;
    EXPECT_EQ(text(item),
              "{\n  \"d\":{\n    \"na\\/me\":\"v\",\n    \"inner\":{\n      \"n\":null\n    },\n"
              "    \"empty\":{}\n  }\n}");

    table->Value(1, 2);
    EXPECT_THROW(item.ToString(), KeyNotFoundException);
}

TEST(JSONSerializer, itemGrowingDuringOutput_isPrintedWithItsNewCount) {
    test::RecordingUIServices services;
    const test::InstalledUIServices installed(services);
    JSONItem item;
    item.Append(1);
    item.Append(2);
    services.onBackgroundTask = [&] {
        if (item.Count() == 2) {
            item.Append(3);
        }
    };
    EXPECT_EQ(text(item), "[1,2,3]");
    EXPECT_EQ(services.backgroundTasks, 3);
}

TEST(JSONSerializer, collectionValue_printsAsArrayWithoutItsKeys) {
    const auto inner = New<Collection>();
    const auto table = New<Dictionary>();
    table->Value("k", Variant(inner));
    const auto list = New<Collection>();
    list->Add(1, "first");
    list->Add(Variant(table));
    list->Add(Variant(New<Collection>()));
    inner->Add("x");
    JSONItem item;
    item.Value("c", Variant(list));
    EXPECT_EQ(text(item), R"({"c":[1,{"k":["x"]},[]]})");
    item.Compact = false;
    EXPECT_EQ(text(item),
              "{\n  \"c\":[\n    1,\n    {\n      \"k\":[\n        \"x\"\n      ]\n    },\n"
              "    []\n  ]\n}");
}

TEST(JSONSerializer, valueWithoutJSONForm_raisesElevenWithItsText) {
    const auto date = New<Date>(2024, 1, 2, 3, 4, 5, 0.0);
    const struct {
        const char* kind;
        Variant value;
        const char* message;
    } cases[] = {
        {"Date", Variant(date), "Unrecognized Object: 2024-01-02 03:04:05"},
        {"Currency", Variant(Currency()), "Unrecognized Object: 0"},
        {"UInt64", Variant(uint64_t{7}), "Unrecognized Object: 7"},
        {"Color", Variant(Color()), "Unrecognized Object: &h00000000"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        JSONItem item;
        item.Value("bad", c.value);
        ExpectJSONFailure([&] { item.ToString(); }, 11, c.message);
    }
}

TEST(JSONSerializer, objectOrArrayWithoutText_isUnrecognizedWithoutInfo) {
    const Variant values[] = {
        Variant(New<Pair>(1, 2)),
        Variant(Ref<ArrayBase>(New<Array<int64_t>>(std::vector<int64_t>{1}))),
    };
    for (const Variant& value : values) {
        JSONItem item;
        item.Append(value);
        ExpectJSONFailure([&] { item.ToString(); }, 11, "Unrecognized Object");
    }
}

TEST(JSONSerializer, cycle_raisesFourteenWithoutPositionText) {
    const auto item = New<JSONItem>();
    item->Child("self", item);
    ExpectJSONFailure([&] { item->ToString(); }, 14, "Circular Reference Detected");
    item->Clear();

    const auto table = New<Dictionary>();
    const auto holder = New<JSONItem>();
    holder->Append(Variant(table));
    table->Value("back", Variant(holder));
    ExpectJSONFailure([&] { holder->ToString(); }, 14, "Circular Reference Detected");
    table->Clear();
}

// A chain of depth items, each an array holding the next, or an object
// holding it under "k".
Ref<JSONItem> chain(int64_t depth, bool arrays) {
    auto root = New<JSONItem>();
    Ref<JSONItem> tail = root;
    for (int64_t i = 1; i < depth; ++i) {
        auto next = New<JSONItem>();
        if (arrays) {
            tail->Append(Variant(next));
        } else {
            tail->Child("k", next);
        }
        tail = next;
    }
    return root;
}

TEST(JSONSerializer, deepDocument_printsUpToTheLimitAndRaisesBeyond) {
    for (const bool arrays : {true, false}) {
        SCOPED_TRACE(arrays ? "arrays" : "objects");
        const std::string open = arrays ? "[" : "{\"k\":";
        const std::string close = arrays ? "]" : "}";
        for (const int64_t depth : {int64_t{5000}, JSONItem::MaxDepth}) {
            std::string expected;
            for (int64_t i = 1; i < depth; ++i) {
                expected += open;
            }
            expected += "{}";
            for (int64_t i = 1; i < depth; ++i) {
                expected += close;
            }
            // Compared as a whole, but not printed whole when they differ.
            EXPECT_TRUE(text(*chain(depth, arrays)) == expected) << depth;
        }
        const auto tooDeep = chain(JSONItem::MaxDepth + 1, arrays);
        ExpectJSONFailure([&] { tooDeep->ToString(); }, 14, "Circular Reference Detected");
    }
}

TEST(JSONSerializer, deepDocumentPretty_indentsEveryLevel) {
    const auto root = chain(5000, true);
    root->Compact = false;
    const std::string printedText = text(*root);
    const std::size_t innermost = printedText.find('{');
    ASSERT_GT(innermost, 10000U);
    EXPECT_EQ(printedText.substr(innermost - 10000, 10000), "[\n" + std::string(9998, ' '));
    EXPECT_EQ(printedText.substr(innermost, 10000), "{}\n" + std::string(9996, ' ') + "]");
    EXPECT_EQ(printedText.substr(printedText.size() - 6), "\n  ]\n]");
}
}  // namespace
}  // namespace vx
