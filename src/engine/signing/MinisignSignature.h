#pragma once

#include <span>
#include <string>
#include <string_view>

#include "engine/signing/MinisignPublicKey.h"
#include "engine/signing/MinisignText.h"

namespace vx::engine {

class MinisignSecretKey;

// A detached signature in minisign's file: the signature of the file (over
// its BLAKE2b-512 when prehashed, "ED"; over its bytes in the legacy "Ed"),
// the trusted comment, and the global signature over both.
struct MinisignSignature {
    bool prehashed = true;
    KeyId keyId{};
    SignatureBytes signature{};
    std::string untrustedComment;
    std::string trustedComment;
    SignatureBytes globalSignature{};

    // Refuses, naming source, what is not such a file.
    static MinisignSignature FromFileText(std::string_view text, const std::string& source);
    // A prehashed signature of the file whose BLAKE2b-512 is digest.
    static MinisignSignature Sign(const MinisignSecretKey& key,
                                  std::span<const unsigned char> digest,
                                  const std::string& trustedComment);

    std::string FileText() const;
    // Whether key made signature over message (the digest, or the bytes of a
    // legacy signature), and the global signature over the trusted comment.
    bool SignsMessage(const MinisignPublicKey& key, std::span<const unsigned char> message) const;
    bool SignsComment(const MinisignPublicKey& key) const;
};

// Whether text can stand as a trusted comment: one line that minisign reads
// whole; otherwise the reason.
std::string TrustedCommentProblem(std::string_view text);

}  // namespace vx::engine
