#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A package encoder for tests, written apart from the code under test, so
// that a package's bytes can be compared with what the format requires and
// broken packages can be made on purpose.
namespace vx::test {

// One item record of a package. Its length and contents are written as
// given, even when they disagree, so that tests can make broken packages.
struct PackageRecord {
    std::string name;
    std::string parent;
    int8_t type = 0;
    int32_t length = 0;
    std::string contents;
};

inline std::string EncodeString(const std::string& text) {
    return static_cast<char>(text.size()) + text;
}

inline std::string EncodeRecord(const PackageRecord& record) {
    const auto bits = static_cast<uint32_t>(record.length);
    return EncodeString(record.name) + EncodeString(record.parent) +
           static_cast<char>(record.type) + static_cast<char>(bits >> 24) +
           static_cast<char>(bits >> 16) + static_cast<char>(bits >> 8) + static_cast<char>(bits) +
           record.contents;
}

// The four header strings, the version first.
inline std::string EncodeHeader(const std::string& version, const std::string& name,
                                const std::string& uid, const std::string& folderName) {
    return EncodeString(version) + EncodeString(name) + EncodeString(uid) +
           EncodeString(folderName);
}

// The header of "V001" and the given strings, then the records.
inline std::string EncodePackage(const std::vector<PackageRecord>& records,
                                 const std::string& name = "Demo", const std::string& uid = "demo1",
                                 const std::string& folderName = "site") {
    std::string bytes = EncodeHeader("V001", name, uid, folderName);
    for (const auto& record : records) {
        bytes += EncodeRecord(record);
    }
    return bytes;
}

// Records whose fields agree: a file's length is that of its contents.
inline PackageRecord FileRecord(const std::string& name, const std::string& contents,
                                const std::string& parent = "") {
    return {name, parent, 1, static_cast<int32_t>(contents.size()), contents};
}
inline PackageRecord FolderRecord(const std::string& name, const std::string& parent = "") {
    return {name, parent, 2, 0, ""};
}

}  // namespace vx::test
