#pragma once

#include <cstdint>
#include <optional>

namespace vx {

class Variant;

// A number taken out of a Variant in a form that loses nothing of it, so that
// values of different kinds can be compared, hashed and converted exactly.
struct VariantNumber {
    enum class Form { Signed, Unsigned, Floating, TenThousandths };

    static VariantNumber ofSigned(int64_t value) { return {Form::Signed, value, 0, 0}; }
    static VariantNumber ofUnsigned(uint64_t value) { return {Form::Unsigned, 0, value, 0}; }
    static VariantNumber ofFloating(double value) { return {Form::Floating, 0, 0, value}; }
    // A Currency's count of ten-thousandths.
    static VariantNumber ofTenThousandths(int64_t count) {
        return {Form::TenThousandths, count, 0, 0};
    }

    // Integers narrow by wrapping, as machine integers do; fractions are cut
    // off toward zero, and a floating value beyond the target's range is held
    // to that range, with NaN as 0.
    bool toBoolean() const;
    int64_t toInt64() const;
    int32_t toInt32() const;
    uint64_t toUInt64() const;
    uint32_t toUInt32() const;
    double toDouble() const;
    // Rounded to the nearest ten-thousandth and held to the Currency range.
    int64_t toTenThousandths() const;

    Form form;
    int64_t signedValue;
    uint64_t unsignedValue;
    double floatingValue;
};

// Exact order of two numbers of the integer and floating forms: -1, 0 or 1.
// NaN equals NaN and sorts above every other number, so that it can be a key.
int32_t CompareVariantNumbers(const VariantNumber& left, const VariantNumber& right);

// A hash that agrees with CompareVariantNumbers: Int64 1, UInt64 1 and 1.0 hash alike.
uint64_t HashVariantNumber(const VariantNumber& number);

// The number held by a value of one of the integer and floating kinds; no
// value for any other kind.
std::optional<VariantNumber> NumericKindValue(const Variant& value);

}  // namespace vx
