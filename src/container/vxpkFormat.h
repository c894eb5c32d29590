#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/files/BinaryStream.h"
#include "runtime/text/String.h"

// The package format, told once: a header of four strings, then item records
// one after the other until the end of the file. Every field has one of three
// forms: a string (one length byte taken as unsigned, then that many bytes),
// an int8, and a big-endian int32. The App's packer and reader and the
// command line's strict reader and writer all go through these functions.
namespace vx::vxpkFormat {

// The first field of every package, and its magic.
inline constexpr const char* kVersion = "V001";
inline constexpr int8_t kFileType = 1;
inline constexpr int8_t kFolderType = 2;
// Joins the components of a record's parent path.
inline constexpr const char* kSeparator = ":";
// The most bytes a string field holds, its length byte not counted.
inline constexpr uint64_t kMaxStringBytes = 255;
// Sizes on disk of the length byte of a string and of the two numbers.
inline constexpr uint64_t kStringLengthBytes = 1;
inline constexpr uint64_t kTypeBytes = 1;
inline constexpr uint64_t kLengthBytes = 4;
// A file's contents must fit the signed length field.
inline constexpr uint64_t kMaxContentsBytes = (uint64_t{1} << 31) - 1;

// The three strings behind the version.
struct Header {
    String name;
    String uid;
    String folderName;
};

// The fields of one item record, in the order they stand; a file's contents
// follow them.
struct Record {
    String name;
    String parent;
    int8_t type = kFileType;
    int32_t length = 0;
};

// Sets the byte order of the numbers; every package stream needs it right
// after opening, before any field.
void prepare(BinaryStream& stream);

// The bytes of the fields, appended to out: the one place where the format's
// encoding stands. A string longer than 255 bytes is cut to its first 255, as
// WritePString cuts it.
void appendString(std::string& out, std::string_view text);
void appendHeader(std::string& out, const Header& header);
void appendRecord(std::string& out, const Record& record);
// The type and the length, which stand behind the two strings of a record.
void appendTypeAndLength(std::string& out, int8_t type, int32_t length);
// The bytes of a record's fields, without contents.
uint64_t recordBytes(const Record& record);

// The same bytes written to a stream, for the App's packer, which logs an
// item between its names and its type.
void writeString(BinaryStream& stream, const String& text);
// The version, then the three strings of the header.
void writeHeader(BinaryStream& stream, const Header& header);
void writeTypeAndLength(BinaryStream& stream, int8_t type, int32_t length);

// Each read takes what the stream gives: at the end of the file a string comes
// back short and a number as the stream's failure says.
String readString(BinaryStream& stream);
// The three strings behind the version, which the caller reads and checks
// first with readString.
Header readHeader(BinaryStream& stream);
Record readRecord(BinaryStream& stream);
// The type and the length, which stand behind the two strings of a record.
void readTypeAndLength(BinaryStream& stream, Record& record);
// The byte count that the string field at the position announces, read
// without moving; 0 at the end of the file.
uint64_t announcedStringBytes(BinaryStream& stream);

}  // namespace vx::vxpkFormat
