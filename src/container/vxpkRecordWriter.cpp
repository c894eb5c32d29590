#include "container/vxpkRecordWriter.h"

#include <stdexcept>
#include <utility>

namespace vx {
namespace {

void checkString(const String& text) {
    if (text.bytes().size() > vxpkFormat::kMaxStringBytes) {
        throw std::length_error("a string of more than 255 bytes");
    }
}

}  // namespace

vxpkRecordWriter::vxpkRecordWriter(Ref<BinaryStream> stream, const vxpkFormat::Header& header)
    : stream_(std::move(stream)) {
    checkString(header.name);
    checkString(header.uid);
    checkString(header.folderName);
    vxpkFormat::prepare(*stream_);
    vxpkFormat::writeHeader(*stream_, header);
}

void vxpkRecordWriter::addRecord(const String& name, const String& parent, int8_t type,
                                 uint64_t length) {
    checkString(name);
    checkString(parent);
    if (length > vxpkFormat::kMaxContentsBytes) {
        throw std::length_error("contents of 2 GiB or more");
    }
    vxpkFormat::writeRecord(
        *stream_,
        {.name = name, .parent = parent, .type = type, .length = static_cast<int32_t>(length)});
}

void vxpkRecordWriter::addFolder(const String& name, const String& parent) {
    addRecord(name, parent, vxpkFormat::kFolderType, 0);
}

void vxpkRecordWriter::addFile(const String& name, const String& parent, BinaryStream& source,
                               uint64_t count) {
    addRecord(name, parent, vxpkFormat::kFileType, count);
    const uint64_t start = stream_->Position();
    stream_->CopyFrom(source, count);
    if (stream_->Position() - start != count) {
        throw std::runtime_error("the file gave fewer bytes than its size");
    }
}

void vxpkRecordWriter::addFile(const String& name, const String& parent, const String& contents) {
    addRecord(name, parent, vxpkFormat::kFileType, contents.bytes().size());
    stream_->Write(contents);
}

void vxpkRecordWriter::finish() {
    stream_->Close();
}

}  // namespace vx
