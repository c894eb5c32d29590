#pragma once

#include <cstdint>
#include <string_view>

#include "runtime/text/String.h"

namespace vx {

// A text encoding, a value object that the system compares by identity: two
// tags are equal when they are the same encoding.
class TextEncoding {
public:
    // How the encoding maps bytes to code points; the conversions switch on it.
    enum class Scheme { UTF8, ASCII, Latin1, UTF16 };

    constexpr TextEncoding(Scheme scheme, int64_t base, int64_t variant, int64_t format,
                           std::string_view internetName)
        : scheme_(scheme),
          base_(base),
          variant_(variant),
          format_(format),
          internetName_(internetName) {}

    Scheme scheme() const { return scheme_; }
    int64_t base() const { return base_; }
    int64_t variant() const { return variant_; }
    int64_t format() const { return format_; }
    int64_t code() const { return base_ | (variant_ << 16) | (format_ << 26); }
    String internetName() const { return String(internetName_, nullptr); }

    // The one character in this encoding; empty when the encoding cannot hold it.
    String Chr(int64_t codePoint) const;
    bool Equals(const TextEncoding* other) const { return other == this; }
    // 0 when equal, 1 when not: encodings have no order.
    int64_t Operator_Compare(const TextEncoding* other) const { return Equals(other) ? 0 : 1; }

private:
    Scheme scheme_;
    int64_t base_;
    int64_t variant_;
    int64_t format_;
    std::string_view internetName_;
};

namespace Encodings {
namespace detail {
inline constexpr TextEncoding utf8{TextEncoding::Scheme::UTF8, 0x0100, 0, 2, "UTF-8"};
inline constexpr TextEncoding ascii{TextEncoding::Scheme::ASCII, 0x0600, 0, 0, "US-ASCII"};
inline constexpr TextEncoding latin1{TextEncoding::Scheme::Latin1, 0x0201, 0, 0, "ISO-8859-1"};
inline constexpr TextEncoding utf16{TextEncoding::Scheme::UTF16, 0x0100, 0, 0, "UTF-16"};
}  // namespace detail

inline constexpr const TextEncoding* UTF8 = &detail::utf8;
inline constexpr const TextEncoding* ASCII = &detail::ascii;
inline constexpr const TextEncoding* ISOLatin1 = &detail::latin1;
// Big-endian, without a byte order mark.
inline constexpr const TextEncoding* UTF16 = &detail::utf16;
}  // namespace Encodings

}  // namespace vx
