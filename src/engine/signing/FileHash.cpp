#include "engine/signing/FileHash.h"

#include <sodium.h>

#include <cstdint>
#include <span>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/reading/PackageInput.h"
#include "engine/signing/Sodium.h"
#include "runtime/files/FullCalls.h"

namespace vx::engine {
namespace {

// As minisign reads: large enough that the system call costs little next to
// the hash, small enough that the block is still in the processor's cache
// when the hash reads it.
constexpr std::size_t kBlockBytes = std::size_t{64} << 10;

// Gives every block of the file open at fd, from its start, to consume in
// order; a failed read is a system error naming path.
template <class Consume>
void ReadBlocks(int fd, const std::string& path, Consume&& consume) {
    std::vector<char> block(kBlockBytes);
    uint64_t offset = 0;
    while (true) {
        const FullResult got = readFullyAt(fd, block.data(), block.size(), offset);
        if (got.error != 0) {
            failSystem(path, got.error);
        }
        if (got.bytes == 0) {
            return;
        }
        StopIfInterrupted();
        consume(std::span<const unsigned char>(reinterpret_cast<const unsigned char*>(block.data()),
                                               static_cast<std::size_t>(got.bytes)));
        offset += got.bytes;
    }
}

template <class Consume>
void ReadBlocks(const std::string& path, Consume&& consume) {
    const OwnedDescriptor file(openPackageFile(path));
    ReadBlocks(file.fd(), path, consume);
}

}  // namespace

Blake2b512 Blake2b512OfFile(const std::string& path) {
    const OwnedDescriptor file(openPackageFile(path));
    return Blake2b512OfFile(file.fd(), path);
}

Blake2b512 Blake2b512OfFile(int fd, const std::string& path) {
    StartSodium();
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, crypto_generichash_BYTES_MAX);
    ReadBlocks(fd, path, [&](std::span<const unsigned char> bytes) {
        crypto_generichash_update(&state, bytes.data(), bytes.size());
    });
    Blake2b512 digest{};
    crypto_generichash_final(&state, digest.data(), digest.size());
    return digest;
}

Sha256 Sha256OfFile(const std::string& path) {
    StartSodium();
    crypto_hash_sha256_state state;
    crypto_hash_sha256_init(&state);
    ReadBlocks(path, [&](std::span<const unsigned char> bytes) {
        crypto_hash_sha256_update(&state, bytes.data(), bytes.size());
    });
    Sha256 digest{};
    crypto_hash_sha256_final(&state, digest.data());
    return digest;
}

std::vector<unsigned char> WholeFile(const std::string& path, uint64_t limit) {
    std::vector<unsigned char> bytes;
    ReadBlocks(path, [&](std::span<const unsigned char> block) {
        if (bytes.size() + block.size() > limit) {
            failUnacceptable(path, "larger than " + std::to_string(limit) +
                                       " bytes, too large for a legacy signature");
        }
        bytes.insert(bytes.end(), block.begin(), block.end());
    });
    return bytes;
}

std::string HexOf(const Sha256& digest) {
    // Room for the NUL that libsodium writes after the digits.
    std::string text(digest.size() * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
    text.pop_back();
    return text;
}

}  // namespace vx::engine
