#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/core/Object.h"
#include "runtime/text/String.h"

namespace vx {

class TextEncoding;

// A resizable run of bytes, read and written as Strings at byte offsets from
// 0. An offset or length outside the block raises OutOfBoundsException; a
// block that cannot be made or grown raises OutOfMemoryException.
class MemoryBlock : public Object {
public:
    explicit MemoryBlock(int64_t size);

    int64_t Size() const { return static_cast<int64_t>(bytes_.size()); }
    // Grows with zero bytes, or shrinks; the bytes that stay are kept.
    void Size(int64_t size);

    // Makes the block a copy of the String's bytes.
    void Operator_Convert(const String& text);

    // length bytes from offset, tagged with encoding, which may be null.
    String StringValue(int64_t offset, int64_t length, const TextEncoding* encoding) const;
    // "No encoding" written as nullptr, which the writing form's String would
    // take too; not const, so that it wins over both on a block that can be written.
    String StringValue(int64_t offset, int64_t length, std::nullptr_t) {
        return StringValue(offset, length, static_cast<const TextEncoding*>(nullptr));
    }
    // Writes the String's first length bytes at offset as they are, with zeros
    // after them where the String is shorter.
    void StringValue(int64_t offset, int64_t length, const String& text);

    // The bytes in place, for readers that walk the block without copying.
    std::string_view bytes() const { return bytes_; }

    // The byte order of the typed values; the bytes themselves never depend on it.
    bool LittleEndian = true;

private:
    void checkRange(int64_t offset, int64_t length) const;

    std::string bytes_;
};

}  // namespace vx
