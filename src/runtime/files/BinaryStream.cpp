#include "runtime/files/BinaryStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <string>

#include "runtime/files/FileErrorCode.h"
#include "runtime/files/FolderItem.h"

namespace vx {
namespace {

// Large enough that a package of many small records is written in few calls,
// small enough to be irrelevant next to the program's other memory.
constexpr std::size_t kBufferSize = 128 * 1024;
// One kernel copy at a time moves at most this much, so a huge file is
// copied in a loop rather than in one call that cannot be interrupted.
constexpr std::size_t kKernelCopyBlock = std::size_t{64} << 20;
constexpr int kPStringLimit = 255;

// Failures of copy_file_range that only mean "not between these two files":
// the plain copy through the buffer takes over.
bool kernelCopyUnsupported(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

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
        ::close(fd_);
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

void BinaryStream::ensureBuffer() {
    if (!buffer_) {
        buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
    }
}

bool BinaryStream::writeAt(const char* data, std::size_t count, uint64_t offset) {
    while (count > 0) {
        const ssize_t written = ::pwrite(fd_, data, count, static_cast<off_t>(offset));
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return fail(errno);
        }
        data += written;
        count -= static_cast<std::size_t>(written);
        offset += static_cast<uint64_t>(written);
    }
    return true;
}

ssize_t BinaryStream::readAt(char* data, std::size_t count, uint64_t offset) {
    std::size_t got = 0;
    while (got < count) {
        const ssize_t read =
            ::pread(fd_, data + got, count - got, static_cast<off_t>(offset + got));
        if (read < 0) {
            if (errno == EINTR) {
                continue;
            }
            fail(errno);
            return -1;
        }
        if (read == 0) {
            break;
        }
        got += static_cast<std::size_t>(read);
    }
    return static_cast<ssize_t>(got);
}

// Writes back what the buffer holds and empties it. A block that failed is
// dropped rather than retried: its failure has been reported once.
bool BinaryStream::flushBuffer() {
    const bool wasDirty = dirty_;
    const std::size_t fill = bufferFill_;
    dirty_ = false;
    bufferFill_ = 0;
    return !wasDirty || writeAt(buffer_.get(), fill, bufferStart_);
}

bool BinaryStream::bufferHolds(uint64_t position) const {
    return bufferFill_ > 0 && position >= bufferStart_ && position < bufferStart_ + bufferFill_;
}

bool BinaryStream::writeBytes(const char* data, std::size_t count) {
    if (fd_ < 0 || !writable_) {
        return fail(EBADF);
    }
    while (count > 0) {
        const bool appendsToBuffer = bufferFill_ > 0 && position_ >= bufferStart_ &&
                                     position_ <= bufferStart_ + bufferFill_ &&
                                     position_ - bufferStart_ < kBufferSize;
        if (!appendsToBuffer) {
            if (!flushBuffer()) {
                return false;
            }
            if (count >= kBufferSize) {
                if (!writeAt(data, count, position_)) {
                    return false;
                }
                position_ += count;
                return true;
            }
            ensureBuffer();
            bufferStart_ = position_;
        }
        const auto offset = static_cast<std::size_t>(position_ - bufferStart_);
        const std::size_t chunk = std::min(count, kBufferSize - offset);
        std::memcpy(buffer_.get() + offset, data, chunk);
        bufferFill_ = std::max(bufferFill_, offset + chunk);
        dirty_ = true;
        position_ += chunk;
        data += chunk;
        count -= chunk;
    }
    return true;
}

std::size_t BinaryStream::readBytes(char* data, std::size_t count) {
    if (fd_ < 0) {
        fail(EBADF);
        return 0;
    }
    std::size_t got = 0;
    while (got < count) {
        if (bufferHolds(position_)) {
            const auto offset = static_cast<std::size_t>(position_ - bufferStart_);
            const std::size_t chunk = std::min(count - got, bufferFill_ - offset);
            std::memcpy(data + got, buffer_.get() + offset, chunk);
            position_ += chunk;
            got += chunk;
            continue;
        }
        if (!flushBuffer()) {
            break;
        }
        const std::size_t wanted = count - got;
        if (wanted >= kBufferSize) {
            const ssize_t read = readAt(data + got, wanted, position_);
            if (read > 0) {
                position_ += static_cast<uint64_t>(read);
                got += static_cast<std::size_t>(read);
            }
            break;
        }
        ensureBuffer();
        const ssize_t read = readAt(buffer_.get(), kBufferSize, position_);
        if (read <= 0) {
            break;
        }
        bufferStart_ = position_;
        bufferFill_ = static_cast<std::size_t>(read);
    }
    return got;
}

bool BinaryStream::fileLength(uint64_t& length) {
    struct stat info;
    if (::fstat(fd_, &info) != 0) {
        return fail(errno);
    }
    length = static_cast<uint64_t>(info.st_size);
    if (dirty_) {
        length = std::max<uint64_t>(length, bufferStart_ + bufferFill_);
    }
    return true;
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
    if (flushBuffer() && ::ftruncate(fd_, static_cast<off_t>(newLength)) != 0) {
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
    if (::close(fd_) != 0 && written) {
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

String BinaryStream::Read(int64_t count, const TextEncoding* encoding) {
    beginOperation();
    std::string bytes;
    uint64_t length = 0;
    if (count > 0 && fileLength(length) && position_ < length) {
        bytes.resize(std::min(static_cast<uint64_t>(count), length - position_));
        bytes.resize(readBytes(bytes.data(), bytes.size()));
    }
    CheckForError();
    return String(std::move(bytes), encoding);
}

String BinaryStream::ReadPString(const TextEncoding* encoding) {
    beginOperation();
    unsigned char length = 0;
    std::string bytes;
    if (readBytes(reinterpret_cast<char*>(&length), 1) == 1 && length > 0) {
        bytes.resize(length);
        bytes.resize(readBytes(bytes.data(), length));
    }
    CheckForError();
    return String(std::move(bytes), encoding);
}

void BinaryStream::Write(const String& data) {
    beginOperation();
    writeBytes(data.bytes().data(), data.byteLength());
    CheckForError();
}

void BinaryStream::WritePString(const String& text) {
    beginOperation();
    const std::size_t length = std::min<std::size_t>(text.byteLength(), kPStringLimit);
    const auto lengthByte = static_cast<char>(static_cast<unsigned char>(length));
    if (writeBytes(&lengthByte, 1)) {
        writeBytes(text.bytes().data(), length);
    }
    CheckForError();
}

template <class T>
T BinaryStream::readValue() {
    beginOperation();
    std::array<char, sizeof(T)> raw{};
    if (readBytes(raw.data(), raw.size()) != raw.size()) {
        if (lastErrorCode_ == 0) {
            lastErrorCode_ = EndOfStreamErrorCode;
        }
        raw.fill(0);
    }
    if (LittleEndian != (std::endian::native == std::endian::little)) {
        std::reverse(raw.begin(), raw.end());
    }
    CheckForError();
    return std::bit_cast<T>(raw);
}

template <class T>
void BinaryStream::writeValue(T value) {
    beginOperation();
    auto raw = std::bit_cast<std::array<char, sizeof(T)>>(value);
    if (LittleEndian != (std::endian::native == std::endian::little)) {
        std::reverse(raw.begin(), raw.end());
    }
    writeBytes(raw.data(), raw.size());
    CheckForError();
}

namespace {
constexpr double kCurrencyScale = 10000.0;
}

bool BinaryStream::ReadBoolean() {
    return readValue<uint8_t>() != 0;
}
int8_t BinaryStream::ReadInt8() {
    return readValue<int8_t>();
}
int16_t BinaryStream::ReadInt16() {
    return readValue<int16_t>();
}
int32_t BinaryStream::ReadInt32() {
    return readValue<int32_t>();
}
int64_t BinaryStream::ReadInt64() {
    return readValue<int64_t>();
}
uint8_t BinaryStream::ReadUInt8() {
    return readValue<uint8_t>();
}
uint16_t BinaryStream::ReadUInt16() {
    return readValue<uint16_t>();
}
uint32_t BinaryStream::ReadUInt32() {
    return readValue<uint32_t>();
}
uint64_t BinaryStream::ReadUInt64() {
    return readValue<uint64_t>();
}
float BinaryStream::ReadSingle() {
    return readValue<float>();
}
double BinaryStream::ReadDouble() {
    return readValue<double>();
}
double BinaryStream::ReadCurrency() {
    return static_cast<double>(readValue<int64_t>()) / kCurrencyScale;
}

void BinaryStream::WriteBoolean(bool value) {
    writeValue<uint8_t>(value ? 1 : 0);
}
void BinaryStream::WriteInt8(int8_t value) {
    writeValue(value);
}
void BinaryStream::WriteInt16(int16_t value) {
    writeValue(value);
}
void BinaryStream::WriteInt32(int32_t value) {
    writeValue(value);
}
void BinaryStream::WriteInt64(int64_t value) {
    writeValue(value);
}
void BinaryStream::WriteUInt8(uint8_t value) {
    writeValue(value);
}
void BinaryStream::WriteUInt16(uint16_t value) {
    writeValue(value);
}
void BinaryStream::WriteUInt32(uint32_t value) {
    writeValue(value);
}
void BinaryStream::WriteUInt64(uint64_t value) {
    writeValue(value);
}
void BinaryStream::WriteSingle(float value) {
    writeValue(value);
}
void BinaryStream::WriteDouble(double value) {
    writeValue(value);
}
void BinaryStream::WriteCurrency(double value) {
    writeValue<int64_t>(std::llround(value * kCurrencyScale));
}

// The kernel copies between the two files without the data passing through
// this process. Leaves remaining as it is when the kernel cannot copy between
// these files, for the buffered copy to finish.
bool BinaryStream::copyInKernel(BinaryStream& source, uint64_t& remaining) {
    if (!flushBuffer()) {
        return false;
    }
    auto in = static_cast<off_t>(source.position_);
    auto out = static_cast<off_t>(position_);
    bool copied = true;
    while (remaining > 0) {
        const auto block =
            static_cast<std::size_t>(std::min<uint64_t>(remaining, kKernelCopyBlock));
        const ssize_t moved = ::copy_file_range(source.fd_, &in, fd_, &out, block, 0);
        if (moved < 0 && errno == EINTR) {
            continue;
        }
        if (moved < 0) {
            copied = kernelCopyUnsupported(errno) || fail(errno);
            break;
        }
        if (moved == 0) {
            break;
        }
        remaining -= static_cast<uint64_t>(moved);
    }
    source.position_ = static_cast<uint64_t>(in);
    position_ = static_cast<uint64_t>(out);
    return copied;
}

// Reads the source straight into the free end of this stream's buffer, so a
// small file costs one read and no write of its own.
bool BinaryStream::copyThroughBuffer(BinaryStream& source, uint64_t& remaining) {
    while (remaining > 0) {
        const bool appendsToBuffer =
            bufferFill_ > 0 && position_ == bufferStart_ + bufferFill_ && bufferFill_ < kBufferSize;
        if (!appendsToBuffer) {
            if (!flushBuffer()) {
                return false;
            }
            ensureBuffer();
            bufferStart_ = position_;
        }
        const auto block =
            static_cast<std::size_t>(std::min<uint64_t>(remaining, kBufferSize - bufferFill_));
        const ssize_t read = source.readAt(buffer_.get() + bufferFill_, block, source.position_);
        if (read < 0) {
            lastErrorCode_ = source.lastErrorCode_;
            return false;
        }
        if (read == 0) {
            break;
        }
        bufferFill_ += static_cast<std::size_t>(read);
        dirty_ = true;
        position_ += static_cast<uint64_t>(read);
        source.position_ += static_cast<uint64_t>(read);
        remaining -= static_cast<uint64_t>(read);
    }
    return true;
}

// Takes the bytes that the source has already read ahead from its buffer, so
// that a run of short copies between small reads, as a package of many small
// files asks for, reads each block of the source file once.
bool BinaryStream::copyFromSourceBuffer(BinaryStream& source, uint64_t& remaining) {
    if (&source == this || source.dirty_ || !source.bufferHolds(source.position_)) {
        return true;
    }
    const auto offset = static_cast<std::size_t>(source.position_ - source.bufferStart_);
    const auto chunk =
        static_cast<std::size_t>(std::min<uint64_t>(remaining, source.bufferFill_ - offset));
    if (!writeBytes(source.buffer_.get() + offset, chunk)) {
        return false;
    }
    source.position_ += chunk;
    remaining -= chunk;
    return true;
}

void BinaryStream::CopyFrom(BinaryStream& source, uint64_t count) {
    beginOperation();
    bool copying = (fd_ >= 0 && writable_) || fail(EBADF);
    uint64_t remaining = count;
    if (copying) {
        copying = copyFromSourceBuffer(source, remaining);
    }
    if (remaining == 0) {
        CheckForError();
        return;
    }
    // The source's position is the truth; what its buffer holds must be on
    // disk before the copy reads the file directly.
    if (copying && !source.flushBuffer()) {
        lastErrorCode_ = source.lastErrorCode_;
        copying = false;
    }
    if (copying && remaining >= kBufferSize) {
        copying = copyInKernel(source, remaining);
    }
    if (copying) {
        copyThroughBuffer(source, remaining);
    }
    CheckForError();
}

}  // namespace vx
