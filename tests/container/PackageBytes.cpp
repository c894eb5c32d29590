#include "PackageBytes.h"

#include <stdexcept>

namespace vx::test {
namespace {

std::string pstring(std::string_view text) {
    if (text.size() > 255) {
        throw std::invalid_argument("a package string holds at most 255 bytes");
    }
    return static_cast<char>(static_cast<unsigned char>(text.size())) + std::string(text);
}

std::string int32(int32_t value) {
    const auto bits = static_cast<uint32_t>(value);
    return {static_cast<char>(bits >> 24), static_cast<char>(bits >> 16),
            static_cast<char>(bits >> 8), static_cast<char>(bits)};
}

}  // namespace

std::string EncodeHeader(std::string_view version, std::string_view name, std::string_view uid,
                         std::string_view folderName) {
    return pstring(version) + pstring(name) + pstring(uid) + pstring(folderName);
}

std::string EncodeRecord(const PackageRecord& record) {
    return pstring(record.name) + pstring(record.parent) + static_cast<char>(record.type) +
           int32(record.length) + record.contents;
}

std::string EncodePackage(const std::vector<PackageRecord>& records) {
    std::string bytes = EncodeHeader("V001", "Demo", "demo1", "site");
    for (const auto& record : records) {
        bytes += EncodeRecord(record);
    }
    return bytes;
}

}  // namespace vx::test
