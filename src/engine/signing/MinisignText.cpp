#include "engine/signing/MinisignText.h"

#include <sodium.h>

#include <cstdio>

#include "engine/core/EngineFailure.h"

namespace vx::engine {

std::string_view AfterPrefix(std::string_view line, std::string_view prefix,
                             const std::string& source, const std::string& what) {
    if (!line.starts_with(prefix)) {
        failUnacceptable(source, what + " does not start with \"" + std::string(prefix) + "\"");
    }
    return line.substr(prefix.size());
}

void DecodeBase64(std::string_view text, std::span<unsigned char> out, const std::string& source,
                  const std::string& what) {
    std::size_t decoded = 0;
    if (sodium_base642bin(out.data(), out.size(), text.data(), text.size(), nullptr, &decoded,
                          nullptr, sodium_base64_VARIANT_ORIGINAL) != 0 ||
        decoded != out.size()) {
        failUnacceptable(source,
                         what + " is not base64 of " + std::to_string(out.size()) + " bytes");
    }
}

std::size_t Base64Length(std::size_t bytes) {
    return sodium_base64_ENCODED_LEN(bytes, sodium_base64_VARIANT_ORIGINAL) - 1;
}

std::size_t EncodeBase64(std::span<const unsigned char> bytes, std::span<char> out) {
    sodium_bin2base64(out.data(), out.size(), bytes.data(), bytes.size(),
                      sodium_base64_VARIANT_ORIGINAL);
    return Base64Length(bytes.size());
}

std::string Base64Of(std::span<const unsigned char> bytes) {
    // Room for the NUL that libsodium writes after the characters.
    std::string text(Base64Length(bytes.size()) + 1, '\0');
    text.resize(EncodeBase64(bytes, text));
    return text;
}

std::string KeyIdText(const KeyId& id) {
    std::string text;
    char digits[3];
    for (auto byte = id.rbegin(); byte != id.rend(); ++byte) {
        std::snprintf(digits, sizeof digits, "%02X", *byte);
        text += digits;
    }
    return text;
}

}  // namespace vx::engine
