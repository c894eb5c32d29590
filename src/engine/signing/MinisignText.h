#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

// The pieces that minisign's key and signature files share: their lines,
// their comment prefixes, base64 and the way minisign prints a key id.
namespace vx::engine {

inline constexpr std::size_t kKeyIdBytes = 8;
inline constexpr std::size_t kPublicKeyBytes = 32;
inline constexpr std::size_t kSecretKeyBytes = 64;
inline constexpr std::size_t kSignatureBytes = 64;
inline constexpr std::string_view kUntrustedPrefix = "untrusted comment: ";
inline constexpr std::string_view kTrustedPrefix = "trusted comment: ";
// minisign reads the trusted comment's line into a buffer of this size, the
// prefix and the line end included, and refuses what is longer.
inline constexpr std::size_t kTrustedLineMax = 8192;

using KeyId = std::array<unsigned char, kKeyIdBytes>;
using SignatureBytes = std::array<unsigned char, kSignatureBytes>;

// line without prefix; a line that lacks it is refused as what, in source.
std::string_view AfterPrefix(std::string_view line, std::string_view prefix,
                             const std::string& source, const std::string& what);

// Decodes base64 that must give exactly out.size() bytes, or refuses it as
// what, in source.
void DecodeBase64(std::string_view text, std::span<unsigned char> out, const std::string& source,
                  const std::string& what);
// The padded base64 of bytes, written into out, which must have room for
// Base64Length(bytes.size()) characters and a NUL after them; gives the
// number of characters.
std::size_t EncodeBase64(std::span<const unsigned char> bytes, std::span<char> out);
std::size_t Base64Length(std::size_t bytes);
std::string Base64Of(std::span<const unsigned char> bytes);

// As minisign prints it: the id read as a little-endian 64-bit number, in 16
// upper-case hex digits.
std::string KeyIdText(const KeyId& id);

}  // namespace vx::engine
