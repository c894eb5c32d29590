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

// The numbers are big-endian.
void appendRecord(std::string& out, const Record& record) {
    appendString(out, record.name.bytes());
    appendString(out, record.parent.bytes());
    out.push_back(static_cast<char>(record.type));
    const auto length = static_cast<uint32_t>(record.length);
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<char>((length >> shift) & 0xFF));
    }
}

uint64_t recordBytes(const Record& record) {
    return 2 * kStringLengthBytes +
           std::min<uint64_t>(record.name.bytes().size(), kMaxStringBytes) +
           std::min<uint64_t>(record.parent.bytes().size(), kMaxStringBytes) + kTypeBytes +
           kLengthBytes;
}

void writeString(BinaryStream& stream, const String& text) {
    stream.WritePString(text);
}

void writeHeader(BinaryStream& stream, const Header& header) {
    writeString(stream, kVersion);
    writeString(stream, header.name);
    writeString(stream, header.uid);
    writeString(stream, header.folderName);
}

void writeRecord(BinaryStream& stream, const Record& record) {
    writeString(stream, record.name);
    writeString(stream, record.parent);
    stream.WriteInt8(record.type);
    stream.WriteInt32(record.length);
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
