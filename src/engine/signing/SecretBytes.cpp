#include "engine/signing/SecretBytes.h"

#include <sodium.h>

namespace vx::engine {

SecretBytes::SecretBytes(std::size_t size)
    : data_(new unsigned char[size == 0 ? 1 : size]()), size_(size), capacity_(size) {
    // A failed lock (a low RLIMIT_MEMLOCK) still leaves a buffer that is
    // wiped; libsodium's own allocator makes the same choice.
    sodium_mlock(data_, capacity_);
}

SecretBytes::~SecretBytes() {
    if (data_ != nullptr) {
        sodium_memzero(data_, capacity_);
        sodium_munlock(data_, capacity_);
        delete[] data_;
    }
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : data_(other.data_), size_(other.size_), capacity_(other.capacity_) {
    other.data_ = nullptr;
    other.size_ = 0;
    other.capacity_ = 0;
}

void SecretBytes::shrink(std::size_t size) {
    if (size < size_) {
        sodium_memzero(data_ + size, size_ - size);
        size_ = size;
    }
}

bool SameSecret(const SecretBytes& a, const SecretBytes& b) {
    return a.size() == b.size() && sodium_memcmp(a.data(), b.data(), a.size()) == 0;
}

}  // namespace vx::engine
