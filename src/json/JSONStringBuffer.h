#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"
#include "runtime/values/MemoryBlock.h"

namespace vx {

// Builds a long text from many pieces: each piece's bytes are copied once into
// a store that doubles when it is full, and joined only when the text is read.
class JSONStringBuffer : public Object {
public:
    // A store of that many bytes. A capacity of 0 is allowed; it grows to the
    // first piece that is appended.
    explicit JSONStringBuffer(uint64_t capacity);
    // A store exactly as large as the text, holding it.
    explicit JSONStringBuffer(const String& text);

    // Copies the bytes as they are, whatever the text's encoding. Without a
    // store (data nil) this and StringValue raise NilObjectException.
    void Append(const String& text);
    // Characters appended so far, counted piece by piece under each piece's tag.
    uint64_t Len() const { return length; }
    // The bytes so far, without an encoding tag; the buffer stays usable.
    String StringValue() const;

    String Operator_Convert() const { return StringValue(); }
    // Conversion from a String: a new buffer with the usual 1024-byte store,
    // holding the text.
    static Ref<JSONStringBuffer> Operator_Convert(const String& text);

    // Bytes used so far: the write offset in data.
    uint64_t binaryLength = 0;
    // The store; its size is the capacity, never less than binaryLength.
    Ref<MemoryBlock> data;
    // Characters used so far.
    uint64_t length = 0;
};

}  // namespace vx
