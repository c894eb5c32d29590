#pragma once

#include <cstdint>

#include "container/vxpkFormat.h"
#include "runtime/core/Ref.h"
#include "runtime/files/BinaryStream.h"

namespace vx {

// Writes a package through the format's own functions, and refuses with
// std::length_error what the format cannot hold faithfully: a string of more
// than 255 bytes or contents of 2 GiB or more. The stream must raise on
// failure; a source that gives fewer bytes than announced raises
// std::runtime_error, since the package would lose its place.
class vxpkRecordWriter {
public:
    vxpkRecordWriter(Ref<BinaryStream> stream, const vxpkFormat::Header& header);

    void addFolder(const String& name, const String& parent);
    // The record, then count bytes of contents from the position of source.
    void addFile(const String& name, const String& parent, BinaryStream& source, uint64_t count);
    void addFile(const String& name, const String& parent, const String& contents);
    // Writes out what is buffered and closes the package.
    void finish();

private:
    void addRecord(const String& name, const String& parent, int8_t type, uint64_t length);

    Ref<BinaryStream> stream_;
};

}  // namespace vx
