#include "engine/signing/MinisignSignature.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/signing/MinisignSecretKey.h"
#include "runtime/text/Lines.h"

namespace vx::engine {
namespace {

constexpr std::string_view kPrehashed = "ED";
constexpr std::string_view kLegacy = "Ed";
constexpr std::size_t kEncodedBytes = 2 + kKeyIdBytes + kSignatureBytes;
static_assert(kSignatureBytes == crypto_sign_BYTES);

// The signature and the trusted comment, which the global signature covers.
std::vector<unsigned char> CommentMessage(const MinisignSignature& signature) {
    std::vector<unsigned char> message(signature.signature.begin(), signature.signature.end());
    message.insert(message.end(), signature.trustedComment.begin(), signature.trustedComment.end());
    return message;
}

void DecodeSignatureLine(std::string_view line, MinisignSignature& signature,
                         const std::string& source) {
    std::array<unsigned char, kEncodedBytes> bytes{};
    DecodeBase64(line, bytes, source, "the signature");
    const std::string_view algorithm(reinterpret_cast<const char*>(bytes.data()), 2);
    if (algorithm != kPrehashed && algorithm != kLegacy) {
        failUnacceptable(source, "unknown signature algorithm (neither \"ED\" nor \"Ed\")");
    }
    signature.prehashed = algorithm == kPrehashed;
    std::copy_n(bytes.begin() + 2, kKeyIdBytes, signature.keyId.begin());
    std::copy_n(bytes.begin() + 2 + kKeyIdBytes, kSignatureBytes, signature.signature.begin());
}

}  // namespace

std::string TrustedCommentProblem(std::string_view text) {
    if (text.find_first_of("\r\n") != std::string_view::npos) {
        return "the trusted comment holds a line break";
    }
    if (kTrustedPrefix.size() + text.size() + 1 >= kTrustedLineMax) {
        return "the trusted comment is longer than " +
               std::to_string(kTrustedLineMax - kTrustedPrefix.size() - 2) + " bytes";
    }
    return "";
}

MinisignSignature MinisignSignature::FromFileText(std::string_view text,
                                                  const std::string& source) {
    const auto lines = SplitLines(text);
    if (lines.size() != 4) {
        failUnacceptable(source, "not a minisign signature: it must be four lines");
    }
    MinisignSignature signature;
    signature.untrustedComment =
        AfterPrefix(lines[0], kUntrustedPrefix, source, "the signature's first line");
    DecodeSignatureLine(lines[1], signature, source);
    signature.trustedComment =
        AfterPrefix(lines[2], kTrustedPrefix, source, "the signature's third line");
    if (const std::string problem = TrustedCommentProblem(signature.trustedComment);
        !problem.empty()) {
        failUnacceptable(source, problem);
    }
    DecodeBase64(lines[3], signature.globalSignature, source, "the global signature");
    return signature;
}

MinisignSignature MinisignSignature::Sign(const MinisignSecretKey& key,
                                          std::span<const unsigned char> digest,
                                          const std::string& trustedComment) {
    MinisignSignature signature;
    signature.keyId = key.keyId();
    signature.untrustedComment = "signature from vxpk secret key";
    signature.trustedComment = trustedComment;
    crypto_sign_detached(signature.signature.data(), nullptr, digest.data(), digest.size(),
                         key.key().data());
    const std::vector<unsigned char> message = CommentMessage(signature);
    crypto_sign_detached(signature.globalSignature.data(), nullptr, message.data(), message.size(),
                         key.key().data());
    return signature;
}

std::string MinisignSignature::FileText() const {
    std::array<unsigned char, kEncodedBytes> bytes{};
    const std::string_view algorithm = prehashed ? kPrehashed : kLegacy;
    auto end = std::copy(algorithm.begin(), algorithm.end(), bytes.begin());
    std::copy(signature.begin(), signature.end(), std::copy(keyId.begin(), keyId.end(), end));
    return std::string(kUntrustedPrefix) + untrustedComment + "\n" + Base64Of(bytes) + "\n" +
           std::string(kTrustedPrefix) + trustedComment + "\n" + Base64Of(globalSignature) + "\n";
}

bool MinisignSignature::SignsMessage(const MinisignPublicKey& key,
                                     std::span<const unsigned char> message) const {
    return crypto_sign_verify_detached(signature.data(), message.data(), message.size(),
                                       key.key.data()) == 0;
}

bool MinisignSignature::SignsComment(const MinisignPublicKey& key) const {
    const std::vector<unsigned char> message = CommentMessage(*this);
    return crypto_sign_verify_detached(globalSignature.data(), message.data(), message.size(),
                                       key.key.data()) == 0;
}

}  // namespace vx::engine
