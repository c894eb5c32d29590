#include "runtime/files/BinaryStream.h"

#include <cerrno>

#include "runtime/files/FileErrorCode.h"
#include "runtime/files/FolderItem.h"
#include "runtime/files/SystemCalls.h"

namespace vx {
namespace {

Ref<BinaryStream> raisingStream(Ref<BinaryStream> stream, const FolderItem& file) {
    if (!stream) {
        throw MakeException<IOException>(file.LastErrorCode());
    }
    stream->UseIOExceptions = true;
    return stream;
}

}  // namespace

Ref<BinaryStream> BinaryStream::Create(const Ref<FolderItem>& file, bool overwrite) {
    if (!file) {
        throw NilObjectException();
    }
    if (!overwrite && file->Exists()) {
        throw MakeException<IOException>(FileInUseErrorCode);
    }
    return raisingStream(file->CreateBinaryFile(""), *file);
}

Ref<BinaryStream> BinaryStream::Open(const Ref<FolderItem>& file, bool readWrite) {
    if (!file) {
        throw NilObjectException();
    }
    return raisingStream(file->OpenAsBinaryFile(readWrite), *file);
}

BinaryStream::BinaryStream(int fd, bool writable) : fd_(fd), writable_(writable) {}

BinaryStream::~BinaryStream() {
    if (fd_ >= 0) {
        // Nobody is left to hear of a failure here; Close is where it is told.
        flushBuffer();
        systemCalls.close(fd_);
    }
}

void BinaryStream::CheckForError() const {
    if (UseIOExceptions && lastErrorCode_ != 0) {
        throw MakeException<IOException>(lastErrorCode_);
    }
}

bool BinaryStream::fail(int errnoValue) {
    lastErrorCode_ = FileErrorCode(errnoValue);
    return false;
}

uint64_t BinaryStream::Length() {
    beginOperation();
    uint64_t length = 0;
    fileLength(length);
    CheckForError();
    return length;
}

void BinaryStream::Length(uint64_t newLength) {
    beginOperation();
    if (flushBuffer() && systemCalls.ftruncate(fd_, static_cast<off_t>(newLength)) != 0) {
        fail(errno);
    }
    CheckForError();
}

uint64_t BinaryStream::Position() {
    beginOperation();
    CheckForError();
    return position_;
}

void BinaryStream::Position(uint64_t newPosition) {
    beginOperation();
    position_ = newPosition;
    CheckForError();
}

bool BinaryStream::EOF_() {
    beginOperation();
    if (bufferHolds(position_)) {
        return false;
    }
    uint64_t length = 0;
    const bool atEnd = !fileLength(length) || position_ >= length;
    CheckForError();
    return atEnd;
}

void BinaryStream::Flush() {
    beginOperation();
    flushBuffer();
    CheckForError();
}

void BinaryStream::Close() {
    if (fd_ < 0) {
        return;
    }
    bool written = flushBuffer();
    if (systemCalls.close(fd_) != 0 && written) {
        written = fail(errno);
    }
    fd_ = -1;
    buffer_.reset();
    // Data written earlier may only reach the file here, so a failure to
    // write it must be told here too, or a cut-off file would pass as whole.
    if (!written) {
        CheckForError();
    }
}

}  // namespace vx
