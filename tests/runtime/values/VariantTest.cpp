#include <gtest/gtest.h>

#include <limits>
#include <string_view>
#include <tuple>
#include <utility>

#include "runtime/text/TextEncoding.h"
#include "runtime/values/Array.h"
#include "runtime/values/Date.h"
#include "runtime/values/Dictionary.h"
#include "runtime/values/Variant.h"

namespace vx {
namespace {

TEST(Variant, makingFunctions_giveTheKindNumbers) {
    const std::pair<Variant, int32_t> cases[] = {
        {Int32ToVariant(0), 2},
        {Int64ToVariant(0), 3},
        {SingleToVariant(0), 4},
        {DoubleToVariant(0), 5},
        {StringToVariant("x"), 8},
        {New<Dictionary>(), 9},
        {BooleanToVariant(false), 11},
        {New<Date>(), VarTypes::Date},
        {CurrencyToVariant(Currency()), VarTypes::Currency},
        {ColorToVariant(Color()), VarTypes::Color},
        {TextToVariant(Text()), VarTypes::Text},
        {UInt32ToVariant(0), VarTypes::UInt32},
        {UInt64ToVariant(0), VarTypes::UInt64},
        {PtrToVariant(Ptr()), VarTypes::Ptr},
        {CreateArray<String>(1), 4096 | 8},
        {CreateArray<Variant>(1), 4096 | VarTypes::Variant},
        {CreateArray<Ref<Dictionary>>(0), 4096 | 9},
    };
    for (const auto& [value, varType] : cases) {
        EXPECT_EQ(VarType(value), varType);
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
    const std::tuple<Variant, Variant, bool> cases[] = {
        {1, int64_t{1}, true},
        {int64_t{1}, 1.0, true},
        {1.0f, uint64_t{1}, true},
        {7U, 7, true},
        {-0.0, int64_t{0}, true},
        {uint64_t{1} << 63, 0x1p63, true},
        {nan, nan, true},
        {String(std::string_view("a"), Encodings::ASCII),
         String(std::string_view("a"), Encodings::UTF8), true},
        {Variant(), Variant(), true},
        {table, table, true},
        {list, list, true},
        {int64_t{1}, "1", false},
        {"a", "A", false},
        {0.5, int64_t{0}, false},
        {std::numeric_limits<int64_t>::max(), 0x1p63, false},
        {(int64_t{1} << 53) + 1, 0x1p53, false},
        {int64_t{-1}, std::numeric_limits<uint64_t>::max(), false},
        {int64_t{-1}, -1.5, false},
        {nan, std::numeric_limits<double>::infinity(), false},
        {true, int64_t{1}, false},
        {Currency::fromTenThousandths(10000), int64_t{1}, false},
        {Text("a"), "a", false},
        {table, New<Dictionary>(), false},
        {list, CreateArray<int64_t>(0), false},
    };
    for (const auto& [left, right, equal] : cases) {
        SCOPED_TRACE(std::to_string(VarType(left)) + " against " + std::to_string(VarType(right)));
        const int32_t forward = VariantCompare(left, right);
        EXPECT_EQ(forward == 0, equal);
        EXPECT_EQ(forward, -VariantCompare(right, left));
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
