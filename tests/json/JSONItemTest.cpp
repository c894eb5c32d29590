#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "json/JSONItem.h"
#include "json/JSONTestSupport.h"
#include "runtime/Date.h"
#include "runtime/EncodingConversion.h"
#include "runtime/TextEncoding.h"

namespace vx {
namespace {

Ref<JSONItem> objectItem() {
    auto item = New<JSONItem>();
    item->Value("a", 1);
    return item;
}

Ref<JSONItem> arrayOf(std::initializer_list<Variant> values) {
    auto item = New<JSONItem>();
    for (const Variant& value : values) {
        item->Append(value);
    }
    return item;
}

std::vector<Variant> valuesOf(const JSONItem& item) {
    std::vector<Variant> values;
    for (int64_t i = 0; i < item.Count(); ++i) {
        values.push_back(item.Operator_Subscript(i));
    }
    return values;
}

struct GuardCase {
    const char* operation;
    std::function<void(JSONItem&)> action;
    const char* message;
};

TEST(JSONItem, indexOperationOnObject_raisesTwelveWithItsOwnWording) {
    const GuardCase cases[] = {
        {"Append", [](JSONItem& j) { j.Append(1); }, "JSONItem is not a array"},
        {"Insert", [](JSONItem& j) { j.Insert(0, 1); }, "JSONItem is not a array"},
        {"Remove", [](JSONItem& j) { j.Remove(int64_t{0}); }, "JSONItem is not a array"},
        {"Value", [](JSONItem& j) { j.Value(int64_t{0}); }, "JSONItem is not an array"},
        {"=Value", [](JSONItem& j) { j.Value(int64_t{0}, 1); }, "JSONItem is not an array"},
        {"Subscript", [](JSONItem& j) { j.Operator_Subscript(0); }, "JSONItem is not a array"},
        {"=Subscript", [](JSONItem& j) { j.Operator_Subscript(0, 1); }, "JSONItem is not a array"},
        {"=Child", [](JSONItem& j) { j.Child(int64_t{0}, New<JSONItem>()); },
         "JSONItem is not a array"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.operation);
        const auto item = objectItem();
        ExpectJSONFailure([&] { c.action(*item); }, 12, c.message);
        EXPECT_FALSE(item->IsArray());
        EXPECT_EQ(item->Count(), 1);
    }
}

TEST(JSONItem, guardedNameOperationOnArray_raisesThirteenEvenWhenEmptied) {
    const GuardCase cases[] = {
        {"Value", [](JSONItem& j) { j.Value("a"); }, "JSONItem is an array"},
        {"=Value", [](JSONItem& j) { j.Value("a", 1); }, "JSONItem is an array"},
        {"Lookup", [](JSONItem& j) { j.Lookup("a", 0); }, "JSONItem is an array"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.operation);
        const auto item = arrayOf({1});
        ExpectJSONFailure([&] { c.action(*item); }, 13, c.message);
        item->Clear();
        EXPECT_TRUE(item->IsArray());
        ExpectJSONFailure([&] { c.action(*item); }, 13, c.message);
        item->Append(2);
        item->Remove(int64_t{0});
        ExpectJSONFailure([&] { c.action(*item); }, 13, c.message);
    }
}

TEST(JSONItem, indexWriteOnEmptyItem_turnsItIntoAnArray) {
    const std::function<void(JSONItem&)> writes[] = {
        [](JSONItem& j) { j.Append(1); },
        [](JSONItem& j) { j.Insert(0, 1); },
        [](JSONItem& j) { j.Value(int64_t{0}, 1); },
        [](JSONItem& j) { j.Child(int64_t{0}, New<JSONItem>()); },
    };
    for (const auto& write : writes) {
        JSONItem item;
        EXPECT_FALSE(item.IsArray());
        write(item);
        EXPECT_TRUE(item.IsArray());
        EXPECT_EQ(item.Count(), 1);
    }
}

TEST(JSONItem, clearedObject_acceptsIndexWritesAgain) {
    const auto item = objectItem();
    item->Clear();
    item->Append("x");
    EXPECT_TRUE(item->IsArray());
    EXPECT_EQ(item->Value(int64_t{0}), Variant("x"));
}

TEST(JSONItem, unguardedNameOperationsOnArray_workOnStringKeys) {
    const auto item = arrayOf({1, 2});
    const auto child = New<JSONItem>();
    item->Child("extra", child);
    EXPECT_EQ(item->Count(), 3);
    EXPECT_EQ(item->Child("extra"), child);
    EXPECT_TRUE(item->HasName("extra"));
    EXPECT_FALSE(item->HasName(0));
    EXPECT_FALSE(item->HasName("0"));
    EXPECT_EQ(item->Name(0), String(""));
    EXPECT_EQ(item->Name(2), String("extra"));
    item->Remove("extra");
    EXPECT_EQ(item->Count(), 2);
    EXPECT_THROW(item->Remove("extra"), KeyNotFoundException);
    EXPECT_EQ(item->Names()->Count(), 0);
}

TEST(JSONItem, names_areByteExactAndCaseSensitive) {
    JSONItem item;
    item.Value("Name", 1);
    item.Value("name", 2);
    item.Value(String("caf\xE9", Encodings::ISOLatin1), 3);
    item.Value(String("caf\xC3\xA9", Encodings::UTF8), 4);
    EXPECT_EQ(item.Count(), 4);
    EXPECT_EQ(item.Value("Name"), Variant(1));
    EXPECT_EQ(item.Value(String("caf\xE9", nullptr)), Variant(3));
    const auto names = item.Names();
    ASSERT_EQ(names->Count(), 4);
    EXPECT_EQ(names->Operator_Subscript(3).bytes(), "caf\xC3\xA9");
    EXPECT_EQ(names->Operator_Subscript(3).encoding(), nullptr);
    EXPECT_EQ(item.Name(2).bytes(), "caf\xE9");
    EXPECT_TRUE(item.HasName(String("Name")));
    EXPECT_FALSE(item.HasName(String("NAME")));
}

TEST(JSONItem, readRule_givesStringsUTF8AndLeavesOtherKindsAlone) {
    JSONItem item;
    item.Value("raw", String("caf\xC3\xA9", nullptr));
    item.Value("latin", String("caf\xE9", Encodings::ISOLatin1));
    item.Value("number", 2.5);
    const String raw = VariantToString(item.Value("raw"));
    const String latin = VariantToString(item.Value("latin"));
    EXPECT_EQ(raw.encoding(), Encodings::UTF8);
    EXPECT_EQ(raw.bytes(), "caf\xC3\xA9");
    EXPECT_EQ(latin.encoding(), Encodings::UTF8);
    EXPECT_EQ(latin.bytes(), "caf\xC3\xA9");
    EXPECT_EQ(VarType(item.Value("number")), VarTypes::Double);
    const String fallback =
        VariantToString(item.Lookup("absent", String("\xE9", Encodings::ISOLatin1)));
    EXPECT_EQ(fallback.bytes(), "\xC3\xA9");
    EXPECT_EQ(item.Lookup("absent", 7), Variant(7));

    const auto array = arrayOf({String("\xE9", Encodings::ISOLatin1)});
    EXPECT_EQ(VariantToString(array->Value(int64_t{0})).bytes(), "\xC3\xA9");
    EXPECT_EQ(VariantToString(array->Operator_Subscript(0)).bytes(), "\xE9");
}

TEST(JSONItem, missingEntries_raiseTheDictionarysOrBoundsFailure) {
    const auto array = arrayOf({1, Variant()});
    EXPECT_THROW(array->Value(int64_t{5}), KeyNotFoundException);
    EXPECT_THROW(array->Operator_Subscript(5), OutOfBoundsException);
    EXPECT_THROW(array->Operator_Subscript(2, 1), OutOfBoundsException);
    EXPECT_THROW(array->Child(int64_t{9}), OutOfBoundsException);
    EXPECT_THROW(array->Child(int64_t{1}), OutOfBoundsException);
    EXPECT_THROW(array->Child(int64_t{0}), IllegalCastException);

    const auto object = objectItem();
    object->Value("date", Variant(Ref<Object>(New<Date>())));
    EXPECT_THROW(object->Value("b"), KeyNotFoundException);
    EXPECT_THROW(object->Child("b"), KeyNotFoundException);
    EXPECT_THROW(object->Remove("b"), KeyNotFoundException);
    EXPECT_THROW(object->Child("a"), IllegalCastException);
    EXPECT_THROW(object->Child("date"), IllegalCastException);
}

TEST(JSONItem, subscriptWriteOnEmptyItem_raisesAndStaysObject) {
    JSONItem item;
    EXPECT_THROW(item.Operator_Subscript(0, 1), OutOfBoundsException);
    EXPECT_FALSE(item.IsArray());
    EXPECT_EQ(item.Count(), 0);
}

TEST(JSONItem, subscriptWrite_acceptsNegativeIndexAndReplacesExisting) {
    const auto item = arrayOf({1, 2});
    item->Operator_Subscript(1, "b");
    item->Operator_Subscript(-1, "minus");
    EXPECT_EQ(item->Operator_Subscript(1), Variant("b"));
    EXPECT_EQ(item->Operator_Subscript(-1), Variant("minus"));
    EXPECT_EQ(item->Count(), 3);
}

TEST(JSONItem, removeByIndex_shiftsDownAndClampsToTheLast) {
    const struct {
        int64_t index;
        std::vector<Variant> remaining;
    } cases[] = {
        {0, {"b", "c"}},
        {1, {"a", "c"}},
        {2, {"a", "b"}},
        {99, {"a", "b"}},
    };
    for (const auto& c : cases) {
        const auto item = arrayOf({"a", "b", "c"});
        item->Remove(c.index);
        EXPECT_EQ(valuesOf(*item), c.remaining) << c.index;
    }
    const auto single = arrayOf({1});
    single->Remove(int64_t{0});
    EXPECT_TRUE(single->IsArray());
    EXPECT_THROW(single->Remove(int64_t{0}), KeyNotFoundException);
}

TEST(JSONItem, insert_shiftsUpWithoutBoundsCheck) {
    const struct {
        int64_t index;
        std::vector<Variant> result;
    } cases[] = {
        {0, {"x", "a", "b"}},
        {1, {"a", "x", "b"}},
        {2, {"a", "b", "x"}},
    };
    for (const auto& c : cases) {
        const auto item = arrayOf({"a", "b"});
        item->Insert(c.index, "x");
        EXPECT_EQ(valuesOf(*item), c.result) << c.index;
    }
    const auto gapped = arrayOf({"a"});
    gapped->Insert(5, "x");
    EXPECT_EQ(gapped->Count(), 2);
    EXPECT_EQ(gapped->Value(int64_t{5}), Variant("x"));
    EXPECT_THROW(gapped->Operator_Subscript(1), OutOfBoundsException);
}

TEST(JSONItem, valueByIndexWrite_storesAnywhereAndKeepsArraysRaw) {
    JSONItem item;
    item.Value(int64_t{3}, Variant(Ref<ArrayBase>(New<Array<int64_t>>(std::vector<int64_t>{1}))));
    EXPECT_TRUE(item.IsArray());
    EXPECT_EQ(item.Count(), 1);
    EXPECT_NE(VarType(item.Value(int64_t{3})) & VarTypes::Array, 0);
}

template <class T>
Variant arrayVariant(std::vector<T> elements) {
    return Variant(Ref<ArrayBase>(New<Array<T>>(std::move(elements))));
}

TEST(JSONItem, valueByNameWithArray_convertsElementsByKind) {
    const auto object = New<JSONItem>();
    const struct {
        const char* kind;
        Variant array;
        std::vector<int32_t> elementKinds;
    } cases[] = {
        {"Boolean", arrayVariant<bool>({true, false}), {VarTypes::Boolean, VarTypes::Boolean}},
        {"Int32", arrayVariant<int32_t>({1, -2}), {VarTypes::Int64, VarTypes::Int64}},
        {"Int64", arrayVariant<int64_t>({5}), {VarTypes::Int64}},
        {"Double", arrayVariant<double>({0.5}), {VarTypes::Double}},
        {"Single", arrayVariant<float>({0.5F}), {VarTypes::Single}},
        {"String", arrayVariant<String>({"s", ""}), {VarTypes::String, VarTypes::String}},
        {"Object",
         arrayVariant<Ref<Object>>({Ref<Object>(object), nullptr}),
         {VarTypes::Object, VarTypes::Nil}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        JSONItem item;
        item.Value("list", c.array);
        const auto child = item.Child("list");
        ASSERT_TRUE(child);
        EXPECT_TRUE(child->IsArray());
        ASSERT_EQ(child->Count(), static_cast<int64_t>(c.elementKinds.size()));
        for (int64_t i = 0; i < child->Count(); ++i) {
            EXPECT_EQ(VarType(child->Operator_Subscript(i)), c.elementKinds[i]) << i;
        }
    }
    JSONItem item;
    item.Value("objects", arrayVariant<Ref<Object>>({Ref<Object>(object)}));
    EXPECT_EQ(item.Child("objects")->Child(int64_t{0}), object);
}

TEST(JSONItem, valueByNameWithEmptyArray_storesAnEmptyObject) {
    JSONItem item;
    item.Value("list", arrayVariant<String>({}));
    EXPECT_EQ(item.Child("list")->Count(), 0);
    EXPECT_FALSE(item.Child("list")->IsArray());
}

TEST(JSONItem, valueByNameWithUnsupportedArray_raisesAndStoresNothing) {
    JSONItem item;
    const Variant arrays[] = {
        arrayVariant<Currency>({Currency()}),
        arrayVariant<Variant>({Variant(1)}),
        arrayVariant<Color>({}),
    };
    for (const Variant& array : arrays) {
        EXPECT_THROW(item.Value("bad", array), TypeMismatchException);
        EXPECT_FALSE(item.HasName("bad"));
    }
    EXPECT_EQ(item.Count(), 0);
}

TEST(JSONItem, valueByName_storesScalarsAndObjectsUnchanged) {
    JSONItem item;
    const auto date = New<Date>();
    item.Value("nil", Variant());
    item.Value("date", Variant(Ref<Object>(date)));
    item.Value("currency", Variant(Currency()));
    item.Value("nil", 3);
    EXPECT_EQ(item.Count(), 3);
    EXPECT_EQ(item.Value("nil"), Variant(3));
    EXPECT_EQ(VariantToObject(item.Value("date")), Ref<Object>(date));
    EXPECT_EQ(VarType(item.Value("currency")), VarTypes::Currency);
}

TEST(JSONItem, convertedFromDictionary_takesStringKeysAndValuesAsTheyAre) {
    const auto nested = New<Dictionary>();
    nested->Value("inner", 1);
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

    const auto numbered = New<Dictionary>();
    numbered->Value(1, "one");
    JSONItem other;
    EXPECT_THROW(other.Operator_Convert(numbered), KeyNotFoundException);
}

TEST(JSONItem, deepChain_isReleasedWithoutExhaustingTheStack) {
    auto root = New<JSONItem>();
    Ref<JSONItem> tail = root;
    for (int i = 0; i < 200000; ++i) {
        auto next = New<JSONItem>();
        tail->Append(Variant(next));
        tail = next;
    }
    std::weak_ptr<JSONItem> watch = tail.shared();
    tail = nullptr;
    root = nullptr;
    EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace vx
