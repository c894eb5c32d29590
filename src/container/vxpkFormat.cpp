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
    record.type = stream.ReadInt8();
    record.length = stream.ReadInt32();
    return record;
}

}  // namespace vx::vxpkFormat
