#include <charconv>
#include <string>

#include "runtime/core/Overloaded.h"
#include "runtime/text/Hex.h"
#include "runtime/text/NumberFormat.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/text/Val.h"
#include "runtime/values/Date.h"
#include "runtime/values/Variant.h"
#include "runtime/values/VariantNumber.h"

namespace vx {
namespace {

enum class Target {
    Boolean,
    Color,
    Currency,
    Double,
    Int32,
    Int64,
    Ptr,
    Single,
    String,
    Text,
    UInt32,
    UInt64,
};
using Targets = unsigned;

constexpr Targets bit(Target target) {
    return 1U << static_cast<unsigned>(target);
}
constexpr Targets everyTarget = (1U << 12) - 1;
constexpr Targets allBut(Targets missing) {
    return everyTarget & ~missing;
}

// The targets each kind offers. The holes are part of the system and stay: a
// Boolean or a Color gives no Currency or Ptr, a Currency no Color or Ptr, a
// floating value no Ptr, and a String, oddly, no Text.
Targets targetsOf(const Variant::Storage& storage) {
    return std::visit(Overloaded{
                          [](std::monostate) { return everyTarget; },
                          [](bool) { return allBut(bit(Target::Currency) | bit(Target::Ptr)); },
                          [](Color) { return allBut(bit(Target::Currency) | bit(Target::Ptr)); },
                          [](Currency) { return allBut(bit(Target::Color) | bit(Target::Ptr)); },
                          [](float) { return allBut(bit(Target::Ptr)); },
                          [](double) { return allBut(bit(Target::Ptr)); },
                          [](const String&) { return allBut(bit(Target::Text)); },
                          [](const Text&) {
                              return bit(Target::Double) | bit(Target::Single) |
                                     bit(Target::String) | bit(Target::Text);
                          },
                          [](Ptr) {
                              return bit(Target::Int32) | bit(Target::Int64) | bit(Target::Ptr) |
                                     bit(Target::String) | bit(Target::UInt32) |
                                     bit(Target::UInt64);
                          },
                          // Objects and arrays offer only a text, so that a message about
                          // one can always be written.
                          [](const Ref<Object>&) { return bit(Target::String); },
                          [](const Ref<ArrayBase>&) { return bit(Target::String); },
                          // The four integer kinds offer everything.
                          [](const auto&) { return everyTarget; },
                      },
                      storage);
}

void require(const Variant& value, Target target) {
    if ((targetsOf(value.storage()) & bit(target)) == 0) {
        throw TypeMismatchException();
    }
}

// Whole-number text is read exactly, so that a 64-bit key survives the trip
// through its text; anything else is read by Val.
VariantNumber numberInText(const String& text) {
    const std::string_view bytes = text.bytes();
    const char* first = bytes.data();
    const char* last = first + bytes.size();
    const std::size_t signLength = !bytes.empty() && (bytes[0] == '+' || bytes[0] == '-') ? 1 : 0;
    if (bytes.size() > signLength &&
        bytes.find_first_not_of("0123456789", signLength) == std::string_view::npos) {
        // from_chars takes a minus sign but no plus sign.
        const char* digits = first + (bytes[0] == '+' ? 1 : 0);
        int64_t whole = 0;
        if (std::from_chars(digits, last, whole).ec == std::errc()) {
            return VariantNumber::ofSigned(whole);
        }
        uint64_t large = 0;
        if (std::from_chars(digits, last, large).ec == std::errc()) {
            return VariantNumber::ofUnsigned(large);
        }
    }
    return VariantNumber::ofFloating(Val(text));
}

VariantNumber numberOf(const Variant& value) {
    if (const auto number = NumericKindValue(value)) {
        return *number;
    }
    return std::visit(
        Overloaded{
            [](std::monostate) { return VariantNumber::ofSigned(0); },
            [](bool held) { return VariantNumber::ofSigned(held ? 1 : 0); },
            [](Color held) { return VariantNumber::ofUnsigned(held.packed()); },
            [](Currency held) { return VariantNumber::ofTenThousandths(held.tenThousandths()); },
            [](const String& held) { return numberInText(held); },
            [](const Text& held) { return numberInText(held.ToString()); },
            [](Ptr held) { return VariantNumber::ofUnsigned(held.Address); },
            [](const auto&) -> VariantNumber { throw TypeMismatchException(); },
        },
        value.storage());
}

template <class Number>
String decimalText(Number number) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return String(std::string_view(digits, static_cast<std::size_t>(end - digits)),
                  Encodings::UTF8);
}

// "&h" and eight digits, alpha first, the form a colour is written in.
String hexText(const Color& color) {
    const std::string digits = "0000000" + std::string(Hex(color.packed()).bytes());
    return String("&h" + digits.substr(digits.size() - 8), Encodings::UTF8);
}

// Whole units, then up to four decimals without trailing zeros.
String currencyText(Currency amount) {
    const int64_t count = amount.tenThousandths();
    const uint64_t magnitude =
        count < 0 ? 0 - static_cast<uint64_t>(count) : static_cast<uint64_t>(count);
    std::string text = count < 0 ? "-" : "";
    text += decimalText(magnitude / Currency::Scale).bytes();
    if (uint64_t fraction = magnitude % Currency::Scale; fraction != 0) {
        std::string decimals = std::to_string(fraction + Currency::Scale).substr(1);
        decimals.erase(decimals.find_last_not_of('0') + 1);
        text += "." + decimals;
    }
    return String(std::move(text), Encodings::UTF8);
}

String textOf(const Variant& value) {
    return std::visit(Overloaded{
                          [](std::monostate) { return String(); },
                          [](bool held) { return String(held ? "True" : "False"); },
                          [](const String& held) { return held; },
                          [](const Text& held) { return held.ToString(); },
                          [](Color held) { return hexText(held); },
                          [](Currency held) { return currencyText(held); },
                          [](Ptr held) { return decimalText(held.Address); },
                          // A Date is the one object with a text of its own.
                          [](const Ref<Object>& held) {
                              const auto date = std::dynamic_pointer_cast<Date>(held.shared());
                              return date ? date->SQLDateTime() : String();
                          },
                          [](const Ref<ArrayBase>&) { return String(); },
                          [](const auto& held) { return decimalText(held); },
                      },
                      value.storage());
}

template <class Result>
Result converted(const Variant& value, Target target, Result (VariantNumber::*read)() const) {
    require(value, target);
    return (numberOf(value).*read)();
}

bool isWord(std::string_view bytes, std::string_view word) {
    if (bytes.size() != word.size()) {
        return false;
    }
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if ((bytes[i] | 0x20) != word[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool VariantToBoolean(const Variant& value) {
    require(value, Target::Boolean);
    // Text reads as True or False in any letter case, the words the String form writes.
    if (const auto* text = std::get_if<String>(&value.storage())) {
        if (isWord(text->bytes(), "true") || isWord(text->bytes(), "false")) {
            return isWord(text->bytes(), "true");
        }
    }
    return numberOf(value).toBoolean();
}

Color VariantToColor(const Variant& value) {
    return Color::fromPacked(converted(value, Target::Color, &VariantNumber::toUInt32));
}

Currency VariantToCurrency(const Variant& value) {
    return Currency::fromTenThousandths(
        converted(value, Target::Currency, &VariantNumber::toTenThousandths));
}

double VariantToDouble(const Variant& value) {
    return converted(value, Target::Double, &VariantNumber::toDouble);
}

int32_t VariantToInt32(const Variant& value) {
    return converted(value, Target::Int32, &VariantNumber::toInt32);
}

int64_t VariantToInt64(const Variant& value) {
    return converted(value, Target::Int64, &VariantNumber::toInt64);
}

Ptr VariantToPtr(const Variant& value) {
    require(value, Target::Ptr);
    // A String lends the address of its bytes, which live as long as the value does.
    if (const auto* text = std::get_if<String>(&value.storage())) {
        return Ptr{reinterpret_cast<std::uintptr_t>(text->isEmpty() ? nullptr : text->c_str())};
    }
    return Ptr{static_cast<std::uintptr_t>(numberOf(value).toUInt64())};
}

float VariantToSingle(const Variant& value) {
    return static_cast<float>(converted(value, Target::Single, &VariantNumber::toDouble));
}

String VariantToString(const Variant& value) {
    require(value, Target::String);
    return textOf(value);
}

Text VariantToText(const Variant& value) {
    require(value, Target::Text);
    return Text(textOf(value));
}

uint32_t VariantToUInt32(const Variant& value) {
    return converted(value, Target::UInt32, &VariantNumber::toUInt32);
}

uint64_t VariantToUInt64(const Variant& value) {
    return converted(value, Target::UInt64, &VariantNumber::toUInt64);
}

Ref<Object> VariantToObject(const Variant& value) {
    if (std::holds_alternative<std::monostate>(value.storage())) {
        return nullptr;
    }
    const auto* object = std::get_if<Ref<Object>>(&value.storage());
    if (object == nullptr) {
        throw TypeMismatchException();
    }
    return *object;
}

String Str(const Variant& value, const String& mask) {
    if (mask.isEmpty()) {
        return VariantToString(value);
    }
    return FormatNumber(VariantToDouble(value), mask, false);
}

}  // namespace vx
