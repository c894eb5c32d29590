#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace vx::engine {

// A buffer for key material and passwords: kept out of swap where the system
// allows it, wiped when it goes, never copied.
class SecretBytes {
public:
    explicit SecretBytes(std::size_t size);
    ~SecretBytes();
    SecretBytes(SecretBytes&& other) noexcept;
    SecretBytes& operator=(SecretBytes&&) = delete;
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;

    unsigned char* data() { return data_; }
    const unsigned char* data() const { return data_; }
    std::size_t size() const { return size_; }
    std::span<unsigned char> bytes() { return {data_, size_}; }
    std::span<const unsigned char> bytes() const { return {data_, size_}; }
    std::string_view text() const { return {reinterpret_cast<const char*>(data_), size_}; }
    // Keeps the first size bytes and wipes the rest.
    void shrink(std::size_t size);

private:
    unsigned char* data_;
    std::size_t size_;
};

// Constant-time equality of two secrets; different sizes are unequal.
bool SameSecret(const SecretBytes& a, const SecretBytes& b);

}  // namespace vx::engine
