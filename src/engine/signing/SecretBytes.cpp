#include "engine/signing/SecretBytes.h"

#include <sodium.h>

#include <new>

#include "engine/signing/Sodium.h"

namespace vx::engine {

namespace {

// Pages of their own, locked where the system allows it, between guard pages
// that catch an overrun: a lock on a buffer that shares its page with others
// would be undone when any of them is unlocked.
unsigned char* Allocate(std::size_t size) {
    StartSodium();
    auto* data = static_cast<unsigned char*>(sodium_malloc(size == 0 ? 1 : size));
    if (data == nullptr) {
        throw std::bad_alloc();
    }
    sodium_memzero(data, size);
    return data;
}

}  // namespace

SecretBytes::SecretBytes(std::size_t size) : data_(Allocate(size)), size_(size) {}

SecretBytes::~SecretBytes() {
    // sodium_free wipes and unlocks the pages before it gives them back.
    sodium_free(data_);
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept : data_(other.data_), size_(other.size_) {
    other.data_ = nullptr;
    other.size_ = 0;
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
