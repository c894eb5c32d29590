#include "container/vxpkFormat.h"

namespace vx::vxpkFormat {

void prepare(BinaryStream& stream) {
    stream.LittleEndian = false;
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
