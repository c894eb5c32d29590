#include "container/vxpkRecordReader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "container/PackageProblem.h"

namespace vx {
namespace {

constexpr std::size_t kReadAheadBytes = 4096;

}  // namespace

uint64_t RecordEntry::contentsBytes() const {
    return isFolder() ? 0 : static_cast<uint64_t>(fields.length);
}

vxpkRecordReader::vxpkRecordReader(Ref<BinaryStream> stream)
    : stream_(std::move(stream)), size_(stream_->Length()) {
    // A page holds the fields of any record, and often of the next few; the
    // contents in between are passed over, so reading further ahead would
    // copy what nobody looks at.
    stream_->setReadAhead(kReadAheadBytes);
    vxpkFormat::prepare(*stream_);
    stream_->Position(0);
    const String version = readString(0);
    if (version != vxpkFormat::kVersion) {
        throw PackageProblem(0, 0, "not a package of version " + std::string(vxpkFormat::kVersion));
    }
    header_.name = readString(0);
    header_.uid = readString(0);
    header_.folderName = readString(0);
    nextOffset_ = stream_->Position();
}

void vxpkRecordReader::need(uint64_t bytes, uint64_t record, const char* field) {
    const uint64_t at = stream_->Position();
    if (bytes > size_ - at) {
        throw PackageProblem(record, at,
                             std::string("the ") + field + " needs " + std::to_string(bytes) +
                                 " bytes but the file ends after " + std::to_string(size_ - at));
    }
}

String vxpkRecordReader::readString(uint64_t record) {
    need(vxpkFormat::kStringLengthBytes, record, "string");
    need(vxpkFormat::kStringLengthBytes + vxpkFormat::announcedStringBytes(*stream_), record,
         "string");
    return vxpkFormat::readString(*stream_);
}

std::optional<RecordEntry> vxpkRecordReader::next() {
    current_.reset();
    if (nextOffset_ == size_) {
        return std::nullopt;
    }
    stream_->Position(nextOffset_);
    RecordEntry entry;
    entry.number = ++recordCount_;
    entry.offset = nextOffset_;
    entry.fields.name = readString(entry.number);
    entry.parentOffset = stream_->Position();
    entry.fields.parent = readString(entry.number);
    entry.typeOffset = stream_->Position();
    need(vxpkFormat::kTypeBytes, entry.number, "type");
    need(vxpkFormat::kTypeBytes + vxpkFormat::kLengthBytes, entry.number, "length");
    vxpkFormat::readTypeAndLength(*stream_, entry.fields);
    entry.lengthOffset = entry.typeOffset + vxpkFormat::kTypeBytes;
    entry.contentsOffset = stream_->Position();
    if (entry.fields.type != vxpkFormat::kFileType && !entry.isFolder()) {
        throw PackageProblem(
            entry.number, entry.typeOffset,
            "type " + std::to_string(entry.fields.type) + " is neither 1 (file) nor 2 (folder)");
    }
    if (!entry.isFolder() && entry.fields.length < 0) {
        throw PackageProblem(entry.number, entry.lengthOffset,
                             "negative length " + std::to_string(entry.fields.length));
    }
    if (entry.contentsBytes() > size_ - entry.contentsOffset) {
        throw PackageProblem(entry.number, entry.lengthOffset,
                             "the length " + std::to_string(entry.fields.length) +
                                 " runs past the end of the file (" +
                                 std::to_string(size_ - entry.contentsOffset) + " bytes left)");
    }
    nextOffset_ = entry.contentsOffset + entry.contentsBytes();
    current_ = entry;
    return entry;
}

void vxpkRecordReader::copyContents(BinaryStream& out) {
    stream_->Position(current_.value().contentsOffset);
    out.CopyFrom(*stream_, current_->contentsBytes());
}

void vxpkRecordReader::readContents(const std::function<void(std::string_view)>& sink) {
    constexpr uint64_t kBlockBytes = 1 << 20;
    stream_->Position(current_.value().contentsOffset);
    for (uint64_t left = current_->contentsBytes(); left > 0;) {
        const String block = stream_->Read(static_cast<int64_t>(std::min(left, kBlockBytes)));
        if (block.bytes().empty()) {
            throw PackageProblem(current_->number, stream_->Position(),
                                 "the file ended while its contents were read");
        }
        sink(block.bytes());
        left -= block.bytes().size();
    }
}

}  // namespace vx
