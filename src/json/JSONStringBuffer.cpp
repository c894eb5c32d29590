#include "json/JSONStringBuffer.h"

#include "runtime/services/UIServices.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/text/TextEncoding.h"

namespace vx {

JSONStringBuffer::JSONStringBuffer(uint64_t capacity)
    : data(New<MemoryBlock>(static_cast<int64_t>(capacity))) {}

JSONStringBuffer::JSONStringBuffer(const String& text) : JSONStringBuffer(text.byteLength()) {
    Append(text);
}

Ref<JSONStringBuffer> JSONStringBuffer::Operator_Convert(const String& text) {
    auto buffer = New<JSONStringBuffer>(uint64_t{1024});
    buffer->Append(text);
    return buffer;
}

void JSONStringBuffer::Append(const String& text) {
    const uint64_t n = text.byteLength();
    uint64_t size = static_cast<uint64_t>(data->Size());
    // A store of 0 bytes would never grow by doubling; start it at one byte.
    if (size == 0 && n > 0) {
        size = 1;
    }
    while (size < n + binaryLength) {
        size *= 2;
        RuntimeBackgroundTask();
    }
    data->Size(static_cast<int64_t>(size));
    data->StringValue(static_cast<int64_t>(binaryLength), static_cast<int64_t>(n), text);
    binaryLength += n;
    length += static_cast<uint64_t>(vx::Len(text));
}

String JSONStringBuffer::StringValue() const {
    return data->StringValue(0, static_cast<int64_t>(binaryLength), nullptr);
}

}  // namespace vx
