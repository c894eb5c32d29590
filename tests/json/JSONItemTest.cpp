#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "json/JSONItem.h"
#include "json/JSONTestSupport.h"
#include "runtime/text/EncodingConversion.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/values/Date.h"

namespace vx {
namespace {

using Action = std::function<void(JSONItem&)>;

std::vector<Variant> valuesOf(const JSONItem& item) {
    std::vector<Variant> values;
    for (int64_t i = 0; i < item.Count(); ++i) {
        values.push_back(item.Operator_Subscript(i));
    }
    return values;
}

template <class T>
Variant arrayVariant(std::vector<T> elements) {
    return Variant(Ref<ArrayBase>(New<Array<T>>(std::move(elements))));
}

TEST(JSONItem, misuseOfTheOtherKind_raisesWithItsOwnWordingAndChangesNothing) {
    const char* const notA = "JSONItem is not a array";
    const char* const notAn = "JSONItem is not an array";
    const char* const isAn = "JSONItem is an array";
    const std::tuple<const char*, bool, Action, int64_t, const char*> cases[] = {
        {"Append", false, [](JSONItem& j) { j.Append(1); }, 12, notA},
        {"Insert", false, [](JSONItem& j) { j.Insert(0, 1); }, 12, notA},
        {"Remove", false, [](JSONItem& j) { j.Remove(int64_t{0}); }, 12, notA},
        {"Value", false, [](JSONItem& j) { j.Value(int64_t{0}); }, 12, notAn},
        {"=Value", false, [](JSONItem& j) { j.Value(int64_t{0}, 1); }, 12, notAn},
        {"[]", false, [](JSONItem& j) { j.Operator_Subscript(0); }, 12, notA},
        {"=[]", false, [](JSONItem& j) { j.Operator_Subscript(0, 1); }, 12, notA},
        {"=Child", false, [](JSONItem& j) { j.Child(int64_t{0}, New<JSONItem>()); }, 12, notA},
        {"Value", true, [](JSONItem& j) { j.Value("a"); }, 13, isAn},
        {"=Value", true, [](JSONItem& j) { j.Value("a", 1); }, 13, isAn},
        {"Lookup", true, [](JSONItem& j) { j.Lookup("a", 0); }, 13, isAn},
    };
    for (const auto& [operation, onArray, action, number, message] : cases) {
        SCOPED_TRACE(operation);
        JSONItem item;
        onArray ? item.Append(1) : item.Value("a", 1);
        ExpectJSONFailure([&] { action(item); }, number, message);
        EXPECT_EQ(item.IsArray(), onArray);
        EXPECT_EQ(item.Count(), 1);
    }
}

TEST(JSONItem, arrayFlag_isSetByTheFirstIndexWriteAndNeverCleared) {
    const Action writes[] = {
        [](JSONItem& j) { j.Append(1); },
        [](JSONItem& j) { j.Insert(0, 1); },
        [](JSONItem& j) { j.Value(int64_t{0}, 1); },
        [](JSONItem& j) { j.Child(int64_t{0}, New<JSONItem>()); },
    };
    for (const auto& write : writes) {
        JSONItem item;
        item.Value("a", 1);
        item.Clear();
        EXPECT_FALSE(item.IsArray());
        write(item);
        EXPECT_TRUE(item.IsArray());
        item.Remove(int64_t{0});
        ExpectJSONFailure([&] { item.Value("a", 1); }, 13, "JSONItem is an array");
        item.Clear();
        ExpectJSONFailure([&] { item.Value("a"); }, 13, "JSONItem is an array");
    }
}

TEST(JSONItem, unguardedNameOperationsOnArray_workOnStringKeys) {
    const auto item = arrayOf({1, 2});
    const auto child = New<JSONItem>();
    item->Child("extra", child);
    EXPECT_EQ(item->Child("extra"), child);
    EXPECT_FALSE(item->HasName(0));
    EXPECT_FALSE(item->HasName("0"));
    EXPECT_EQ(item->Name(0), String(""));
    EXPECT_EQ(item->Name(2), String("extra"));
    item->Remove("extra");
    EXPECT_EQ(item->Count(), 2);
    EXPECT_EQ(item->Names()->Count(), 0);
}

TEST(JSONItem, names_areByteExactCaseSensitiveAndReadUTF8) {
    JSONItem item;
    item.Value("Name", 1);
    item.Value("name", 2);
    item.Value(String("caf\xE9", Encodings::ISOLatin1), String("caf\xE9", Encodings::ISOLatin1));
    item.Value(String("caf\xC3\xA9", Encodings::UTF8), String("caf\xC3\xA9", nullptr));
    EXPECT_EQ(item.Count(), 4);
    EXPECT_FALSE(item.HasName(String("NAME")));
    EXPECT_EQ(item.Names()->Operator_Subscript(3).bytes(), "caf\xC3\xA9");
    EXPECT_EQ(item.Names()->Operator_Subscript(3).encoding(), nullptr);
    EXPECT_EQ(item.Name(2).bytes(), "caf\xE9");
    // Strings read back as UTF-8 whatever their tag; the raw subscript leaves them be.
    for (const String& name : {String("caf\xE9", nullptr), String("caf\xC3\xA9")}) {
        const String value = VariantToString(item.Value(name));
        EXPECT_EQ(value.encoding(), Encodings::UTF8);
        EXPECT_EQ(value.bytes(), "caf\xC3\xA9");
    }
    const String fallback =
        VariantToString(item.Lookup("absent", String("\xE9", Encodings::ISOLatin1)));
    EXPECT_EQ(fallback.bytes(), "\xC3\xA9");
    const auto array = arrayOf({String("\xE9", Encodings::ISOLatin1), 2.5});
    EXPECT_EQ(VariantToString(array->Value(int64_t{0})).bytes(), "\xC3\xA9");
    EXPECT_EQ(VariantToString(array->Operator_Subscript(0)).bytes(), "\xE9");
    EXPECT_EQ(VarType(array->Value(int64_t{1})), VarTypes::Double);
}

TEST(JSONItem, missingEntries_raiseTheDictionarysOrBoundsFailure) {
    const auto array = arrayOf({1, Variant()});
    EXPECT_THROW(array->Value(int64_t{5}), KeyNotFoundException);
    EXPECT_THROW(array->Operator_Subscript(5), OutOfBoundsException);
    EXPECT_THROW(array->Operator_Subscript(2, 1), OutOfBoundsException);
    EXPECT_THROW(array->Child(int64_t{9}), OutOfBoundsException);
    EXPECT_THROW(array->Child(int64_t{1}), OutOfBoundsException);
    EXPECT_THROW(array->Child(int64_t{0}), IllegalCastException);
    EXPECT_THROW(array->Remove("b"), KeyNotFoundException);

    JSONItem object;
    EXPECT_THROW(object.Operator_Subscript(0, 1), OutOfBoundsException);
    EXPECT_FALSE(object.IsArray());
    object.Value("a", 1);
    object.Value("date", Variant(Ref<Object>(New<Date>())));
    EXPECT_THROW(object.Value("b"), KeyNotFoundException);
    EXPECT_THROW(object.Child("b"), KeyNotFoundException);
    EXPECT_THROW(object.Child("a"), IllegalCastException);
    EXPECT_THROW(object.Child("date"), IllegalCastException);
}

TEST(JSONItem, indexWrites_shiftAndPlaceAsArraysOfKeysDo) {
    const std::tuple<const char*, Action, std::vector<Variant>> cases[] = {
        {"Remove 0", [](JSONItem& j) { j.Remove(int64_t{0}); }, {"b", "c"}},
        {"Remove 1", [](JSONItem& j) { j.Remove(int64_t{1}); }, {"a", "c"}},
        {"Remove 99 clamps", [](JSONItem& j) { j.Remove(int64_t{99}); }, {"a", "b"}},
        {"Insert 0", [](JSONItem& j) { j.Insert(0, "x"); }, {"x", "a", "b", "c"}},
        {"Insert 1", [](JSONItem& j) { j.Insert(1, "x"); }, {"a", "x", "b", "c"}},
        {"Insert 3", [](JSONItem& j) { j.Insert(3, "x"); }, {"a", "b", "c", "x"}},
        {"=[] replaces", [](JSONItem& j) { j.Operator_Subscript(1, "x"); }, {"a", "x", "c"}},
    };
    for (const auto& [operation, action, result] : cases) {
        const auto item = arrayOf({"a", "b", "c"});
        action(*item);
        EXPECT_EQ(valuesOf(*item), result) << operation;
    }
    // Places need not be contiguous: a gap is a key, not a hole to fill.
    const auto gapped = arrayOf({"a"});
    gapped->Insert(5, "x");
    EXPECT_EQ(gapped->Count(), 2);
    EXPECT_THROW(gapped->Operator_Subscript(1), OutOfBoundsException);
    gapped->Operator_Subscript(-1, "minus");
    gapped->Value(int64_t{7}, arrayVariant<int64_t>({1}));
    EXPECT_EQ(gapped->Value(int64_t{5}), Variant("x"));
    EXPECT_EQ(gapped->Operator_Subscript(-1), Variant("minus"));
    EXPECT_NE(VarType(gapped->Value(int64_t{7})) & VarTypes::Array, 0);
}

TEST(JSONItem, valueByNameWithArray_convertsElementsByKind) {
    const auto object = New<JSONItem>();
    const std::tuple<Variant, int32_t, int64_t> cases[] = {
        {arrayVariant<bool>({true, false}), VarTypes::Boolean, 2},
        {arrayVariant<int32_t>({1, -2}), VarTypes::Int64, 2},
        {arrayVariant<double>({0.5}), VarTypes::Double, 1},
        {arrayVariant<float>({0.5F}), VarTypes::Single, 1},
        {arrayVariant<String>({"s", ""}), VarTypes::String, 2},
        {arrayVariant<Ref<Object>>({Ref<Object>(object)}), VarTypes::Object, 1},
        {arrayVariant<Ref<Object>>({nullptr}), VarTypes::Nil, 1},
        {arrayVariant<String>({}), VarTypes::Nil, 0},
    };
    for (const auto& [array, elementKind, count] : cases) {
        SCOPED_TRACE(elementKind);
        JSONItem item;
        item.Value("list", array);
        const auto child = item.Child("list");
        ASSERT_TRUE(child);
        EXPECT_EQ(child->Count(), count);
        EXPECT_EQ(child->IsArray(), count > 0);
        for (const Variant& element : valuesOf(*child)) {
            EXPECT_EQ(VarType(element), elementKind);
        }
    }
    JSONItem item;
    item.Value("objects", arrayVariant<Ref<Object>>({Ref<Object>(object)}));
    EXPECT_EQ(item.Child("objects")->Child(int64_t{0}), object);
    for (const Variant& array : {arrayVariant<Currency>({Currency()}),
                                 arrayVariant<Variant>({Variant(1)}), arrayVariant<Color>({})}) {
        EXPECT_THROW(item.Value("bad", array), TypeMismatchException);
        EXPECT_FALSE(item.HasName("bad"));
    }
}

TEST(JSONItem, convertedFromDictionary_takesStringKeysAndValuesAsTheyAre) {
    const auto nested = New<Dictionary>();
    const auto source = New<Dictionary>();
    source->Value("b", 2);
    source->Value("a", Variant(nested));
    JSONItem item;
    item.Operator_Convert(source);
    ASSERT_EQ(item.Count(), 2);
    EXPECT_EQ(item.Name(0), String("b"));
    EXPECT_EQ(item.Value("b"), Variant(2));
    EXPECT_EQ(VariantToObject(item.Value("a")), Ref<Object>(nested));
    EXPECT_FALSE(item.IsArray());
    nested->Value(1, "one");
    EXPECT_THROW(JSONItem().Operator_Convert(nested), KeyNotFoundException);
}

TEST(JSONItem, deepChain_isReleasedWithoutExhaustingTheStack) {
    auto root = chain(200000, true);
    Ref<JSONItem> tail = root;
    while (tail->Count() > 0) {
        tail = tail->Child(int64_t{0});
    }
    const std::weak_ptr<JSONItem> watch = tail.shared();
    tail = root = nullptr;
    EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace vx
