#pragma once

#include <sys/types.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

namespace vx {

class FolderItem;
class TextEncoding;

// A positioned byte stream over an open file. Every operation records its
// failure in LastErrorCode (0 when it went well); with UseIOExceptions true the
// data operations and the getters and setters of Length and Position then
// raise IOException with that number, and so does Close when the data it still
// had to write could not be written.
//
// Writes are gathered in a buffer and reach the file in large blocks, so a
// package made of many small fields costs few system calls; a failure of such
// a deferred write surfaces from the operation that writes the block out.
class BinaryStream : public Object {
public:
    // Makes the file (replacing one that is there when overwrite is true) and
    // opens it for reading and writing. Nil raises NilObjectException; an
    // existing file with overwrite false raises IOException 104; any other
    // failure IOException with the item's LastErrorCode. The stream raises.
    static Ref<BinaryStream> Create(const Ref<FolderItem>& file, bool overwrite);
    // Opens an existing file; failures as for Create. The stream raises.
    static Ref<BinaryStream> Open(const Ref<FolderItem>& file, bool readWrite);

    // Takes ownership of an open descriptor; FolderItem makes streams this way.
    BinaryStream(int fd, bool writable);
    ~BinaryStream() override;
    BinaryStream(const BinaryStream&) = delete;
    BinaryStream& operator=(const BinaryStream&) = delete;

    // Byte order of the multi-byte values; the machine's own order at first.
    bool LittleEndian = std::endian::native == std::endian::little;
    bool UseIOExceptions = false;

    int64_t LastErrorCode() const { return lastErrorCode_; }
    bool ReadError() const { return lastErrorCode_ != 0; }
    bool WriteError() const { return lastErrorCode_ != 0; }

    uint64_t Length();
    // Cuts the file to the new size or extends it with zero bytes.
    void Length(uint64_t newLength);
    uint64_t Position();
    void Position(uint64_t newPosition);
    // True once the position has reached the end. Named with a trailing
    // underscore because the C library defines EOF as a macro.
    bool EOF_();

    // Writes out what the buffer holds, then closes; later operations fail.
    void Close();
    void Flush();

    // Up to count bytes from the position (fewer at the end, none for a count
    // below 1), tagged with the encoding; the bytes are not converted.
    String Read(int64_t count, const TextEncoding* encoding = nullptr);
    // One length byte, taken as unsigned, then that many bytes. At the end of
    // the stream it gives what there is, without a failure.
    String ReadPString(const TextEncoding* encoding = nullptr);
    void Write(const String& data);
    // One length byte and the bytes; a longer string is cut to its first 255.
    void WritePString(const String& text);

    // The typed family: each reads or writes the value's bytes in the order
    // LittleEndian says. A read that meets the end before its last byte fails
    // with EndOfStreamErrorCode and gives 0.
    bool ReadBoolean();
    int8_t ReadInt8();
    int16_t ReadInt16();
    int32_t ReadInt32();
    int64_t ReadInt64();
    uint8_t ReadUInt8();
    uint16_t ReadUInt16();
    uint32_t ReadUInt32();
    uint64_t ReadUInt64();
    float ReadSingle();
    double ReadDouble();
    // A currency value travels as a 64-bit count of ten-thousandths.
    double ReadCurrency();
    void WriteBoolean(bool value);
    void WriteInt8(int8_t value);
    void WriteInt16(int16_t value);
    void WriteInt32(int32_t value);
    void WriteInt64(int64_t value);
    void WriteUInt8(uint8_t value);
    void WriteUInt16(uint16_t value);
    void WriteUInt32(uint32_t value);
    void WriteUInt64(uint64_t value);
    void WriteSingle(float value);
    void WriteDouble(double value);
    void WriteCurrency(double value);

    // Copies count bytes from the source's position to this stream's position
    // and advances both, in bounded blocks or inside the kernel, so that memory
    // stays flat however much is copied. Stops early at the source's end.
    // Failures of either side are this stream's. When this stream fails, what
    // reached the file stays there; when the source fails, what the copy wrote
    // is taken back: the file is cut where the copy began and the position
    // returns there, so a file that could not be read leaves none of its bytes.
    void CopyFrom(BinaryStream& source, uint64_t count);

    // How many bytes a read that misses the buffer fetches, between 1 and
    // the buffer's size, which is the default. A reader that jumps over most
    // of a file asks for little, so that what it passes over is never copied.
    void setReadAhead(std::size_t bytes);

private:
    // Large enough that a package of many small records is written in few
    // calls, small enough to be irrelevant next to the program's other memory.
    static constexpr std::size_t kBufferSize = 128 * 1024;

    template <class T>
    T readValue();
    template <class T>
    void writeValue(T value);

    void beginOperation() { lastErrorCode_ = 0; }
    void CheckForError() const;
    bool fail(int errnoValue);
    void ensureBuffer();
    bool bufferHolds(uint64_t position) const;
    bool flushBuffer();
    bool writeAt(const char* data, std::size_t count, uint64_t offset);
    // Reads until count bytes or the end; -1 after a failure.
    ssize_t readAt(char* data, std::size_t count, uint64_t offset);
    bool writeBytes(const char* data, std::size_t count);
    std::size_t readBytes(char* data, std::size_t count);
    bool fileLength(uint64_t& length);
    // Which side of a copy failed, as that decides whether its bytes stay.
    enum class CopyFailure { None, Destination, Source };
    CopyFailure copyInKernel(BinaryStream& source, uint64_t& remaining);
    CopyFailure copyThroughBuffer(BinaryStream& source, uint64_t& remaining);
    CopyFailure copyFromSourceBuffer(BinaryStream& source, uint64_t& remaining);
    void takeBackCopy(uint64_t start);

    int fd_;
    bool writable_;
    int64_t lastErrorCode_ = 0;
    uint64_t position_ = 0;
    // The buffer mirrors the file bytes [bufferStart_, bufferStart_ + bufferFill_).
    // When dirty they are newer than the file's and must be written back.
    std::unique_ptr<char[]> buffer_;
    uint64_t bufferStart_ = 0;
    std::size_t bufferFill_ = 0;
    bool dirty_ = false;
    std::size_t readAhead_ = kBufferSize;
};

}  // namespace vx
