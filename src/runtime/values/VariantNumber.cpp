#include "runtime/values/VariantNumber.h"

#include <bit>
#include <cmath>
#include <limits>
#include <variant>

#include "runtime/core/Overloaded.h"
#include "runtime/values/Currency.h"
#include "runtime/values/Variant.h"

namespace vx {
namespace {

template <class T>
int32_t sign(const T& a, const T& b) {
    return a < b ? -1 : (a > b ? 1 : 0);
}

// Cuts the fraction off and holds the result to T's range; NaN gives 0.
template <class T>
T truncated(double value) {
    using Limits = std::numeric_limits<T>;
    const double upper = std::ldexp(1.0, Limits::digits);
    const double lower = Limits::is_signed ? -upper : 0.0;
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= upper) {
        return Limits::max();
    }
    if (value < lower) {
        return Limits::min();
    }
    return static_cast<T>(value);
}

int32_t compareSignedWithFloating(int64_t integer, double floating) {
    if (std::isnan(floating) || floating >= 0x1p63) {
        return -1;
    }
    if (floating < -0x1p63) {
        return 1;
    }
    const double whole = std::trunc(floating);
    const auto wholeInteger = static_cast<int64_t>(whole);
    return integer != wholeInteger ? sign(integer, wholeInteger) : sign(0.0, floating - whole);
}

int32_t compareUnsignedWithFloating(uint64_t integer, double floating) {
    if (std::isnan(floating) || floating >= 0x1p64) {
        return -1;
    }
    if (floating < 0) {
        return 1;
    }
    const double whole = std::trunc(floating);
    const auto wholeInteger = static_cast<uint64_t>(whole);
    return integer != wholeInteger ? sign(integer, wholeInteger) : sign(0.0, floating - whole);
}

int32_t compareFloating(double left, double right) {
    if (std::isnan(left) || std::isnan(right)) {
        return sign(std::isnan(left), std::isnan(right));
    }
    return sign(left, right);
}

// The finaliser of splitmix64: spreads every input bit over the whole word.
uint64_t mixed(uint64_t bits) {
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9ULL;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebULL;
    return bits ^ (bits >> 31);
}

}  // namespace

bool VariantNumber::toBoolean() const {
    switch (form) {
        case Form::Signed:
        case Form::TenThousandths:
            return signedValue != 0;
        case Form::Unsigned:
            return unsignedValue != 0;
        case Form::Floating:
            return floatingValue != 0;
    }
    return false;
}

int64_t VariantNumber::toInt64() const {
    switch (form) {
        case Form::Signed:
            return signedValue;
        case Form::Unsigned:
            return static_cast<int64_t>(unsignedValue);
        case Form::Floating:
            return truncated<int64_t>(floatingValue);
        case Form::TenThousandths:
            return signedValue / Currency::Scale;
    }
    return 0;
}

int32_t VariantNumber::toInt32() const {
    return form == Form::Floating ? truncated<int32_t>(floatingValue)
                                  : static_cast<int32_t>(toInt64());
}

uint64_t VariantNumber::toUInt64() const {
    switch (form) {
        case Form::Signed:
            return static_cast<uint64_t>(signedValue);
        case Form::Unsigned:
            return unsignedValue;
        case Form::Floating:
            return truncated<uint64_t>(floatingValue);
        case Form::TenThousandths:
            return static_cast<uint64_t>(signedValue / Currency::Scale);
    }
    return 0;
}

uint32_t VariantNumber::toUInt32() const {
    return form == Form::Floating ? truncated<uint32_t>(floatingValue)
                                  : static_cast<uint32_t>(toUInt64());
}

double VariantNumber::toDouble() const {
    switch (form) {
        case Form::Signed:
            return static_cast<double>(signedValue);
        case Form::Unsigned:
            return static_cast<double>(unsignedValue);
        case Form::Floating:
            return floatingValue;
        case Form::TenThousandths:
            return static_cast<double>(signedValue) / Currency::Scale;
    }
    return 0;
}

int64_t VariantNumber::toTenThousandths() const {
    constexpr int64_t most = std::numeric_limits<int64_t>::max();
    constexpr int64_t least = std::numeric_limits<int64_t>::min();
    switch (form) {
        case Form::Signed:
            if (signedValue > most / Currency::Scale) {
                return most;
            }
            return signedValue < least / Currency::Scale ? least : signedValue * Currency::Scale;
        case Form::Unsigned:
            return unsignedValue > static_cast<uint64_t>(most / Currency::Scale)
                       ? most
                       : static_cast<int64_t>(unsignedValue) * Currency::Scale;
        case Form::Floating:
            return truncated<int64_t>(std::round(floatingValue * Currency::Scale));
        case Form::TenThousandths:
            return signedValue;
    }
    return 0;
}

int32_t CompareVariantNumbers(const VariantNumber& left, const VariantNumber& right) {
    using Form = VariantNumber::Form;
    switch (left.form) {
        case Form::Signed:
        case Form::TenThousandths:
            if (right.form == Form::Floating) {
                return compareSignedWithFloating(left.signedValue, right.floatingValue);
            }
            if (right.form == Form::Unsigned) {
                return left.signedValue < 0
                           ? -1
                           : sign(static_cast<uint64_t>(left.signedValue), right.unsignedValue);
            }
            return sign(left.signedValue, right.signedValue);
        case Form::Unsigned:
            if (right.form == Form::Floating) {
                return compareUnsignedWithFloating(left.unsignedValue, right.floatingValue);
            }
            if (right.form == Form::Unsigned) {
                return sign(left.unsignedValue, right.unsignedValue);
            }
            return -CompareVariantNumbers(right, left);
        case Form::Floating:
            if (right.form == Form::Floating) {
                return compareFloating(left.floatingValue, right.floatingValue);
            }
            return -CompareVariantNumbers(right, left);
    }
    return 0;
}

uint64_t HashVariantNumber(const VariantNumber& number) {
    using Form = VariantNumber::Form;
    switch (number.form) {
        case Form::Signed:
        case Form::TenThousandths:
            return mixed(static_cast<uint64_t>(number.signedValue));
        case Form::Unsigned:
            return mixed(number.unsignedValue);
        case Form::Floating:
            break;
    }
    // A whole floating value hashes as the integer it equals, so that 1.0 and 1
    // land together; every NaN hashes alike, as they compare equal.
    const double value = number.floatingValue;
    if (std::isnan(value)) {
        return mixed(0x7ff8000000000000ULL);
    }
    if (value == std::trunc(value) && value >= -0x1p63 && value < 0x1p64) {
        return value < 0x1p63 ? mixed(static_cast<uint64_t>(static_cast<int64_t>(value)))
                              : mixed(static_cast<uint64_t>(value));
    }
    return mixed(std::bit_cast<uint64_t>(value));
}

std::optional<VariantNumber> NumericKindValue(const Variant& value) {
    return std::visit(Overloaded{
                          [](int32_t held) -> std::optional<VariantNumber> {
                              return VariantNumber::ofSigned(held);
                          },
                          [](int64_t held) -> std::optional<VariantNumber> {
                              return VariantNumber::ofSigned(held);
                          },
                          [](uint32_t held) -> std::optional<VariantNumber> {
                              return VariantNumber::ofUnsigned(held);
                          },
                          [](uint64_t held) -> std::optional<VariantNumber> {
                              return VariantNumber::ofUnsigned(held);
                          },
                          [](float held) -> std::optional<VariantNumber> {
                              return VariantNumber::ofFloating(held);
                          },
                          [](double held) -> std::optional<VariantNumber> {
                              return VariantNumber::ofFloating(held);
                          },
                          [](const auto&) -> std::optional<VariantNumber> { return std::nullopt; },
                      },
                      value.storage());
}

}  // namespace vx
