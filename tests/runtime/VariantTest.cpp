#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "runtime/Array.h"
#include "runtime/Date.h"
#include "runtime/Dictionary.h"
#include "runtime/TextEncoding.h"
#include "runtime/Variant.h"

namespace vx {
namespace {

TEST(Variant, makingFunctions_giveTheKindNumbers) {
    const std::tuple<const char*, Variant, int32_t> cases[] = {
        {"Int32", Int32ToVariant(0), 2},
        {"Int64", Int64ToVariant(0), 3},
        {"Single", SingleToVariant(0), 4},
        {"Double", DoubleToVariant(0), 5},
        {"Currency", CurrencyToVariant(Currency()), VarTypes::Currency},
        {"Date", New<Date>(), VarTypes::Date},
        {"String", StringToVariant("x"), 8},
        {"Dictionary", New<Dictionary>(), 9},
        {"Boolean", BooleanToVariant(false), 11},
        {"Color", ColorToVariant(Color()), VarTypes::Color},
        {"Text", TextToVariant(Text()), VarTypes::Text},
        {"UInt32", UInt32ToVariant(0), VarTypes::UInt32},
        {"UInt64", UInt64ToVariant(0), VarTypes::UInt64},
        {"Ptr", PtrToVariant(Ptr()), VarTypes::Ptr},
        {"array of String", CreateArray<String>(1), 4096 | 8},
        {"array of Variant", CreateArray<Variant>(1), 4096 | VarTypes::Variant},
        {"array of Dictionary", CreateArray<Ref<Dictionary>>(0), 4096 | 9},
    };
    for (const auto& [kind, value, varType] : cases) {
        EXPECT_EQ(VarType(value), varType) << kind;
    }
}

TEST(Variant, zeroEmptyAndFalse_areNotNil) {
    const Variant nil;
    for (const Variant& value : {Variant(0), Variant(int64_t{0}), Variant(0.0), Variant(""),
                                 Variant(false), Variant(Text())}) {
        EXPECT_NE(VariantCompare(value, nil), 0) << VarType(value);
        EXPECT_NE(VariantCompare(nil, value), 0) << VarType(value);
    }
    EXPECT_EQ(VariantCompare(Variant(nullptr), nil), 0);
    EXPECT_EQ(VariantCompare(Variant(Ref<Dictionary>()), nil), 0);
    EXPECT_EQ(VariantCompare(Variant(Ref<Array<int64_t>>()), nil), 0);
}

// Keys that must find one another in a Dictionary, and keys that must not.
TEST(Variant, compareAndHash_agreeAcrossKinds) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto table = New<Dictionary>();
    const auto list = CreateArray<int64_t>(0);
    const std::tuple<const char*, Variant, Variant, bool> cases[] = {
        {"Int32 1, Int64 1", 1, int64_t{1}, true},
        {"Int64 1, Double 1.0", int64_t{1}, 1.0, true},
        {"Single 1, UInt64 1", 1.0f, uint64_t{1}, true},
        {"UInt32 7, Int32 7", 7U, 7, true},
        {"Double -0, Int64 0", -0.0, int64_t{0}, true},
        {"UInt64 2^63, Double 2^63", uint64_t{1} << 63, 0x1p63, true},
        {"NaN, NaN", nan, nan, true},
        {"Strings under two tags", String(std::string_view("a"), Encodings::ASCII),
         String(std::string_view("a"), Encodings::UTF8), true},
        {"nil, nil", Variant(), Variant(), true},
        {"one object", table, table, true},
        {"one array", list, list, true},
        {"Int64 1, String 1", int64_t{1}, "1", false},
        {"String a, String A", "a", "A", false},
        {"Double 0.5, Int64 0", 0.5, int64_t{0}, false},
        {"Int64 max, Double 2^63", std::numeric_limits<int64_t>::max(), 0x1p63, false},
        {"Int64 2^53+1, Double 2^53", (int64_t{1} << 53) + 1, 0x1p53, false},
        {"Int64 -1, UInt64 max", int64_t{-1}, std::numeric_limits<uint64_t>::max(), false},
        {"Int64 -1, Double -1.5", int64_t{-1}, -1.5, false},
        {"NaN, infinity", nan, std::numeric_limits<double>::infinity(), false},
        {"Boolean True, Int64 1", true, int64_t{1}, false},
        {"Currency 1, Int64 1", Currency::fromTenThousandths(10000), int64_t{1}, false},
        {"Text a, String a", Text("a"), "a", false},
        {"two tables", table, New<Dictionary>(), false},
        {"two arrays", list, CreateArray<int64_t>(0), false},
    };
    for (const auto& [what, left, right, equal] : cases) {
        SCOPED_TRACE(what);
        const int32_t forward = VariantCompare(left, right);
        const int32_t backward = VariantCompare(right, left);
        EXPECT_EQ(forward == 0, equal);
        EXPECT_EQ(forward, -backward);
        if (equal) {
            EXPECT_EQ(left.Operator_Hash(), right.Operator_Hash());
        }
    }
}

TEST(Variant, compare_ordersNumbersByValueAcrossKinds) {
    const Variant ascending[] = {
        -1e300, std::numeric_limits<int64_t>::min(), -1.5, -1, 0.0f, 0.25, 1U, uint64_t{1} << 63,
        1e300};
    for (std::size_t i = 0; i + 1 < std::size(ascending); ++i) {
        EXPECT_LT(VariantCompare(ascending[i], ascending[i + 1]), 0) << i;
    }
}

template <class T>
Variant arrayOf(std::initializer_list<T> elements) {
    return New<Array<T>>(elements);
}

TEST(Variant, arrayAssignment_readsEachElementKindThroughItsCode) {
    // the array, the code that asks for its element kind, that kind's VarType
    const std::tuple<Variant, int32_t, int32_t> cases[] = {
        {arrayOf({true}), 16, 11},      {arrayOf({int64_t{5}}), 11, 3},
        {arrayOf({0.5}), 2, 5},         {arrayOf({0.5f}), 1, 4},
        {arrayOf({String("s")}), 3, 8}, {arrayOf({New<Dictionary>()}), 4, 9},
    };
    for (const auto& [source, code, elementVarType] : cases) {
        SCOPED_TRACE(code);
        const Ref<ArrayBase> array = VariantArrayAssignmentWithTypeCheck(code, source);
        EXPECT_EQ(VariantCompare(Variant(array), source), 0) << "the held array itself";
        EXPECT_EQ(VarType(array->ElementAt(0)), elementVarType);
        for (const auto& other : cases) {
            if (std::get<1>(other) != code) {
                EXPECT_THROW(VariantArrayAssignmentWithTypeCheck(std::get<1>(other), source),
                             TypeMismatchException);
            }
        }
    }
    EXPECT_THROW(VariantArrayAssignmentWithTypeCheck(99, arrayOf({true})), TypeMismatchException);
    EXPECT_THROW(VariantArrayAssignmentWithTypeCheck(3, "not an array"), TypeMismatchException);
}

TEST(Variant, arrayOf32BitIntegers_isReadAs64BitValues) {
    const Variant narrow = arrayOf<int32_t>({-1, 7, 2147483647});
    ASSERT_EQ(VariantGetArrayElementType(narrow), 2);
    EXPECT_THROW(VariantGetArrayElementType("a"), TypeMismatchException);
    const Ref<ArrayBase> wide = VariantArrayAssignmentWithTypeCheck(11, narrow);
    ASSERT_EQ(wide->Ubound(), 2);
    EXPECT_EQ(wide->ElementVarType(), 3);
    const int64_t expected[] = {-1, 7, 2147483647};
    for (int64_t i = 0; i <= wide->Ubound(); ++i) {
        EXPECT_EQ(VarType(wide->ElementAt(i)), 3);
        EXPECT_EQ(VariantToInt64(wide->ElementAt(i)), expected[i]);
    }
    EXPECT_EQ(VarType(VariantArrayAssignmentWithTypeCheck(0, narrow)->ElementAt(0)), 2);
}

TEST(Array, indexOutside_raisesOutOfBounds) {
    auto numbers = CreateArray<int64_t>(1);
    EXPECT_EQ(numbers->Ubound(), 1);
    numbers->Insert(2, 9);
    numbers->Insert(0, 8);
    numbers->Remove(1);
    EXPECT_EQ(std::vector<int64_t>(numbers->begin(), numbers->end()),
              (std::vector<int64_t>{8, 0, 9}));
    EXPECT_THROW((void)numbers->Operator_Subscript(3), OutOfBoundsException);
    EXPECT_THROW((void)numbers->Operator_Subscript(-1), OutOfBoundsException);
    EXPECT_THROW(numbers->Insert(5, 1), OutOfBoundsException);
    EXPECT_THROW(numbers->Remove(3), OutOfBoundsException);
    EXPECT_THROW(numbers->ElementAt(3), OutOfBoundsException);
    EXPECT_EQ(CreateArray<String>(-1)->Ubound(), -1);
}

}  // namespace
}  // namespace vx
