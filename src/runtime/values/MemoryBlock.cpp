#include "runtime/values/MemoryBlock.h"

#include <algorithm>

#include "runtime/core/AllocationGuard.h"

namespace vx {
MemoryBlock::MemoryBlock(int64_t size) {
    Size(size);
}

void MemoryBlock::Size(int64_t size) {
    if (size < 0) {
        throw OutOfBoundsException();
    }
    GuardAllocation([&] { bytes_.resize(static_cast<std::size_t>(size)); });
}

void MemoryBlock::Operator_Convert(const String& text) {
    GuardAllocation([&] { bytes_.assign(text.bytes()); });
}

String MemoryBlock::StringValue(int64_t offset, int64_t length,
                                const TextEncoding* encoding) const {
    checkRange(offset, length);
    return String(std::string_view(bytes_).substr(static_cast<std::size_t>(offset),
                                                  static_cast<std::size_t>(length)),
                  encoding);
}

void MemoryBlock::StringValue(int64_t offset, int64_t length, const String& text) {
    checkRange(offset, length);
    const auto target = bytes_.begin() + offset;
    const auto copied = std::min<std::size_t>(text.byteLength(), static_cast<std::size_t>(length));
    std::copy_n(text.bytes().begin(), copied, target);
    std::fill(target + static_cast<std::ptrdiff_t>(copied), target + length, '\0');
}

void MemoryBlock::checkRange(int64_t offset, int64_t length) const {
    if (offset < 0 || length < 0 || offset > Size() || length > Size() - offset) {
        throw OutOfBoundsException();
    }
}

}  // namespace vx
