// The stream's reads and writes of strings and typed values, in the byte
// order LittleEndian says.

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FileErrorCode.h"

namespace vx {
namespace {

constexpr int kPStringLimit = 255;
constexpr double kCurrencyScale = 10000.0;

}  // namespace

String BinaryStream::Read(int64_t count, const TextEncoding* encoding) {
    beginOperation();
    std::size_t wanted = 0;
    uint64_t length = 0;
    // Bytes the buffer holds are in the file, so they need no asking for its
    // length; a reader of many short fields asks the system only for blocks.
    if (count > 0 && bufferHolds(position_) &&
        static_cast<uint64_t>(count) <= bufferStart_ + bufferFill_ - position_) {
        wanted = static_cast<std::size_t>(count);
    } else if (count > 0 && fileLength(length) && position_ < length) {
        wanted =
            static_cast<std::size_t>(std::min(static_cast<uint64_t>(count), length - position_));
    }
    std::string bytes(wanted, '\0');
    if (wanted > 0) {
        bytes.resize(readBytes(bytes.data(), wanted));
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

}  // namespace vx
