#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "container/vxpkFormat.h"
#include "runtime/core/Ref.h"
#include "runtime/files/BinaryStream.h"

namespace vx {

// One item record as the strict reader found it, with the byte offset of
// every field.
struct RecordEntry {
    // Counted from 1 in package order.
    uint64_t number = 0;
    vxpkFormat::Record fields;
    // Where the record starts, which is where its name field stands.
    uint64_t offset = 0;
    uint64_t parentOffset = 0;
    uint64_t typeOffset = 0;
    uint64_t lengthOffset = 0;
    uint64_t contentsOffset = 0;

    bool isFolder() const { return fields.type == vxpkFormat::kFolderType; }
    // The bytes behind the fields: a file's length, none for a folder.
    uint64_t contentsBytes() const;
};

// Walks a package one record at a time and trusts nothing in it: every length
// is checked against what is left of the file before it is used, a type other
// than file or folder and a negative length are refused, and a file's
// contents are passed over by seeking unless the caller copies them. A
// problem raises PackageProblem; a failed read raises the stream's
// IOException.
class vxpkRecordReader {
public:
    // Reads and checks the header; the stream must raise on failure.
    explicit vxpkRecordReader(Ref<BinaryStream> stream);

    const vxpkFormat::Header& header() const { return header_; }
    uint64_t packageSize() const { return size_; }

    // The next record, its contents not read yet; nothing at the end of the
    // file. Passes over the contents of the record before.
    std::optional<RecordEntry> next();
    // Copies the contents of the record that next gave last to out.
    void copyContents(BinaryStream& out);
    // Gives the contents of that record to sink in blocks of bounded size.
    void readContents(const std::function<void(std::string_view)>& sink);

private:
    String readString(uint64_t record);
    void need(uint64_t bytes, uint64_t record, const char* field);

    Ref<BinaryStream> stream_;
    uint64_t size_;
    vxpkFormat::Header header_;
    uint64_t recordCount_ = 0;
    // Where the record after the last one given begins.
    uint64_t nextOffset_ = 0;
    std::optional<RecordEntry> current_;
};

}  // namespace vx
