#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <tuple>
#include <utility>

#include "runtime/text/TextEncoding.h"
#include "runtime/values/Array.h"
#include "runtime/values/Date.h"
#include "runtime/values/Dictionary.h"
#include "runtime/values/Variant.h"

namespace vx {
namespace {

using Reader = std::function<Variant(const Variant&)>;
template <class T>
Reader reader(T (*convert)(const Variant&)) {
    return [convert](const Variant& v) { return Variant(convert(v)); };
}

// One reader per target, in the column order of the table below.
const std::pair<const char*, Reader> readers[] = {
    {"Boolean", reader(VariantToBoolean)},   {"Color", reader(VariantToColor)},
    {"Currency", reader(VariantToCurrency)}, {"Double", reader(VariantToDouble)},
    {"Int32", reader(VariantToInt32)},       {"Int64", reader(VariantToInt64)},
    {"Ptr", reader(VariantToPtr)},           {"Single", reader(VariantToSingle)},
    {"String", reader(VariantToString)},     {"Text", reader(VariantToText)},
    {"UInt32", reader(VariantToUInt32)},     {"UInt64", reader(VariantToUInt64)},
};
using Expected = std::array<std::optional<Variant>, 12>;

const std::optional<Variant> mismatch = std::nullopt;

Currency units(int64_t tenThousandths) {
    return Currency::fromTenThousandths(tenThousandths);
}
Ptr address(uint64_t value) {
    return Ptr{static_cast<std::uintptr_t>(value)};
}
// Kinds that convert only to String.
Expected onlyString(const char* text) {
    Expected expected;
    expected[8] = String(text);
    return expected;
}

TEST(VariantConversion, everyKindToEveryTarget_followsTheTableWithItsGaps) {
    const String digits = "42";
    const uint64_t big = (uint64_t{1} << 63) + 5;
    const int64_t two40 = int64_t{1} << 40;
    const std::pair<Variant, Expected> rows[] = {
        {true,
         {true, Color::fromPacked(1), mismatch, 1.0, 1, int64_t{1}, mismatch, 1.0f, "True",
          Text("True"), 1U, uint64_t{1}}},
        {Color{0x10, 0x20, 0x30, 0},
         {true, Color{0x10, 0x20, 0x30, 0}, mismatch, 1056816.0, 1056816, int64_t{1056816},
          mismatch, 1056816.0f, "&h00102030", Text("&h00102030"), 1056816U, uint64_t{1056816}}},
        {units(125000),
         {true, mismatch, units(125000), 12.5, 12, int64_t{12}, mismatch, 12.5f, "12.5",
          Text("12.5"), 12U, uint64_t{12}}},
        {2.75,
         {true, Color::fromPacked(2), units(27500), 2.75, 2, int64_t{2}, mismatch, 2.75f, "2.75",
          Text("2.75"), 2U, uint64_t{2}}},
        {1.5f,
         {true, Color::fromPacked(1), units(15000), 1.5, 1, int64_t{1}, mismatch, 1.5f, "1.5",
          Text("1.5"), 1U, uint64_t{1}}},
        {-7,
         {true, Color::fromPacked(0xFFFFFFF9), units(-70000), -7.0, -7, int64_t{-7},
          address(static_cast<uint64_t>(-7)), -7.0f, "-7", Text("-7"), 4294967289U,
          uint64_t{18446744073709551609ULL}}},
        {two40,
         {true, Color::fromPacked(0), units(two40 * 10000), 1099511627776.0, 0, two40,
          address(uint64_t{1} << 40), 1099511627776.0f, "1099511627776", Text("1099511627776"), 0U,
          uint64_t{1} << 40}},
        {4000000000U,
         {true, Color::fromPacked(4000000000U), units(40000000000000), 4e9, -294967296,
          int64_t{4000000000}, address(4000000000U), 4e9f, "4000000000", Text("4000000000"),
          4000000000U, uint64_t{4000000000}}},
        {big,
         {true, Color::fromPacked(5), units(std::numeric_limits<int64_t>::max()), 0x1p63, 5,
          static_cast<int64_t>(big), address(big), 0x1p63f, "9223372036854775813",
          Text("9223372036854775813"), 5U, big}},
        {digits,
         {true, Color::fromPacked(42), units(420000), 42.0, 42, int64_t{42},
          address(reinterpret_cast<std::uintptr_t>(digits.c_str())), 42.0f, "42", mismatch, 42U,
          uint64_t{42}}},
        {Text("3.5"),
         {mismatch, mismatch, mismatch, 3.5, mismatch, mismatch, mismatch, 3.5f, "3.5", Text("3.5"),
          mismatch, mismatch}},
        {address(0x1000),
         {mismatch, mismatch, mismatch, mismatch, 4096, int64_t{4096}, address(0x1000), mismatch,
          "4096", mismatch, 4096U, uint64_t{4096}}},
        {Variant(),
         {false, Color{}, Currency{}, 0.0, 0, int64_t{0}, Ptr{}, 0.0f, "", Text(), 0U,
          uint64_t{0}}},
        {New<Date>(2024, 2, 29, 13, 5, 9, 0.0), onlyString("2024-02-29 13:05:09")},
        {New<Dictionary>(), onlyString("")},
        {CreateArray<int64_t>(2), onlyString("")},
    };
    for (const auto& [source, expected] : rows) {
        for (std::size_t column = 0; column < std::size(readers); ++column) {
            const auto& [target, read] = readers[column];
            SCOPED_TRACE("VarType " + std::to_string(VarType(source)) + " to " + target);
            if (expected[column]) {
                EXPECT_EQ(VariantCompare(read(source), *expected[column]), 0);
            } else {
                EXPECT_THROW(read(source), TypeMismatchException);
            }
        }
    }
}

TEST(VariantConversion, textToNumber_readsWholeNumbersExactlyAndTheRestAsDouble) {
    const std::tuple<const char*, double, int64_t, uint64_t, bool> cases[] = {
        {"9223372036854775807", 0x1p63, std::numeric_limits<int64_t>::max(), 9223372036854775807ULL,
         true},
        {"-9223372036854775808", -0x1p63, std::numeric_limits<int64_t>::min(), 0x8000000000000000,
         true},
        {"18446744073709551615", 0x1p64, -1, std::numeric_limits<uint64_t>::max(), true},
        {"+7", 7, 7, 7, true},
        {"-1.5e3", -1500, -1500, 0, true},
        {"0", 0, 0, 0, false},
        {"abc", 0, 0, 0, false},
        {"+-5", 0, 0, 0, false},
        {"&h10", 16, 16, 16, true},
        {" 12.5xyz", 12.5, 12, 12, true},
        {"TRUE", 0, 0, 0, true},
        {"false", 0, 0, 0, false},
    };
    for (const auto& [text, asDouble, asInt64, asUInt64, asBoolean] : cases) {
        SCOPED_TRACE(text);
        const Variant value = String(text);
        EXPECT_EQ(VariantToInt64(value), asInt64);
        EXPECT_EQ(VariantToUInt64(value), asUInt64);
        EXPECT_EQ(VariantToBoolean(value), asBoolean);
        EXPECT_EQ(VariantToDouble(value), asDouble);
    }
}

TEST(VariantConversion, floatingBeyondTheTargetRange_isHeldToTheRange) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(VariantToInt64(1e300), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(VariantToInt64(-1e300), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(VariantToInt32(3e9), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(VariantToInt32(-3e9f), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(VariantToUInt64(-2.75), 0U);
    EXPECT_EQ(VariantToUInt64(1e30), std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(VariantToInt64(nan), 0);
    EXPECT_EQ(VariantToInt32(-2.99), -2);
    EXPECT_EQ(VariantToCurrency(1e300).tenThousandths(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(VariantToCurrency(-1e300).tenThousandths(), std::numeric_limits<int64_t>::min());
}

TEST(VariantConversion, currency_roundsToTenThousandthsAndPrintsWithoutTrailingZeros) {
    const std::tuple<Variant, int64_t, const char*> cases[] = {
        {0.0001, 1, "0.0001"},
        {-0.0001, -1, "-0.0001"},
        {1.23456, 12346, "1.2346"},
        {int64_t{-3}, -30000, "-3"},
        {String("2.5"), 25000, "2.5"},
        {Variant(units(std::numeric_limits<int64_t>::min())), std::numeric_limits<int64_t>::min(),
         "-922337203685477.5808"},
    };
    for (const auto& [source, tenThousandths, text] : cases) {
        SCOPED_TRACE(text);
        const Currency amount = VariantToCurrency(source);
        EXPECT_EQ(amount.tenThousandths(), tenThousandths);
        EXPECT_EQ(VariantToString(amount), String(text));
    }
}

TEST(VariantConversion, strWithMask_formatsTheDoubleAndWithoutMaskGivesTheText) {
    const String json = "-0.0##############";
    const std::tuple<Variant, String, const char*> cases[] = {
        {2.0, json, "2.0"},
        {-0.5, json, "-0.5"},
        {0.5f, json, "0.5"},
        {int64_t{7}, json, "7.0"},
        {true, json, "1.0"},
        {"1.25", json, "1.25"},
        {2.0, "", "2"},
        {0.1f, "", "0.1"},
        {1e21, "", "1e+21"},
        {int64_t{-12}, "", "-12"},
        {"as it is", "", "as it is"},
    };
    for (const auto& [value, mask, text] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Str(value, mask), String(text));
    }
    EXPECT_THROW(Str(Ptr{}, json), TypeMismatchException);
    EXPECT_THROW(Str(New<Date>(), json), TypeMismatchException);
}

TEST(VariantConversion, toStringAndToObject_passTheHeldValueThrough) {
    const String raw(std::string_view("\xE9"), Encodings::ISOLatin1);
    EXPECT_EQ(VariantToString(raw).encoding(), Encodings::ISOLatin1);
    const auto table = New<Dictionary>();
    EXPECT_EQ(VariantToObject(table).get(), table.get());
    EXPECT_EQ(VariantToObject(Variant()), nullptr);
    EXPECT_THROW(VariantToObject(int64_t{0}), TypeMismatchException);
    EXPECT_THROW(VariantToObject(CreateArray<Variant>(0)), TypeMismatchException);
}

}  // namespace
}  // namespace vx
