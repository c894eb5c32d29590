#include "container/vxpkFormat.h"

#include <algorithm>

namespace vx::vxpkFormat {

void prepare(BinaryStream& stream) {
    stream.LittleEndian = false;
}

void appendString(std::string& out, std::string_view text) {
    const std::size_t count = std::min<std::size_t>(text.size(), kMaxStringBytes);
    out.push_back(static_cast<char>(count));
    out.append(text.substr(0, count));
}

void appendHeader(std::string& out, const Header& header) {
    appendString(out, kVersion);
    appendString(out, header.name.bytes());
    appendString(out, header.uid.bytes());
    appendString(out, header.folderName.bytes());
}

void appendRecord(std::string& out, const Record& record) {
    appendString(out, record.name.bytes());
    appendString(out, record.parent.bytes());
    appendTypeAndLength(out, record.type, record.length);
}

// The length is big-endian.
void appendTypeAndLength(std::string& out, int8_t type, int32_t length) {
    out.push_back(static_cast<char>(type));
    const auto bits = static_cast<uint32_t>(length);
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<char>((bits >> shift) & 0xFF));
    }
}

uint64_t recordBytes(const Record& record) {
    return 2 * kStringLengthBytes +
           std::min<uint64_t>(record.name.bytes().size(), kMaxStringBytes) +
           std::min<uint64_t>(record.parent.bytes().size(), kMaxStringBytes) + kTypeBytes +
           kLengthBytes;
}

namespace {

// Writes what an append function gives, as one run of bytes.
template <class Append>
void writeAppended(BinaryStream& stream, Append append) {
    std::string bytes;
    append(bytes);
    stream.Write(String(std::move(bytes), nullptr));
}

}  // namespace

void writeString(BinaryStream& stream, const String& text) {
    writeAppended(stream, [&](std::string& out) { appendString(out, text.bytes()); });
}

void writeHeader(BinaryStream& stream, const Header& header) {
    writeAppended(stream, [&](std::string& out) { appendHeader(out, header); });
}

void writeTypeAndLength(BinaryStream& stream, int8_t type, int32_t length) {
    writeAppended(stream, [&](std::string& out) { appendTypeAndLength(out, type, length); });
}

String readString(BinaryStream& stream) {
    return stream.ReadPString(nullptr);
}

Header readHeader(BinaryStream& stream) {
    Header header;
    header.name = readString(stream);
    header.uid = readString(stream);
    header.folderName = readString(stream);
    return header;
}

Record readRecord(BinaryStream& stream) {
    Record record;
    record.name = readString(stream);
    record.parent = readString(stream);
    readTypeAndLength(stream, record);
    return record;
}

void readTypeAndLength(BinaryStream& stream, Record& record) {
    record.type = stream.ReadInt8();
    record.length = stream.ReadInt32();
}

uint64_t announcedStringBytes(BinaryStream& stream) {
    const uint64_t start = stream.Position();
    const String lengthByte = stream.Read(static_cast<int64_t>(kStringLengthBytes));
    stream.Position(start);
    return lengthByte.bytes().empty() ? 0 : static_cast<unsigned char>(lengthByte.bytes()[0]);
}

}  // namespace vx::vxpkFormat
