#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace vx::test {

// One item record of a package, as its bytes say.
struct PackageRecord {
    std::string name;
    std::string parent;
    int8_t type = 0;
    int32_t length = 0;
    std::string contents;

    friend bool operator==(const PackageRecord&, const PackageRecord&) = default;
    friend std::ostream& operator<<(std::ostream& out, const PackageRecord& record);
};

struct DecodedPackage {
    std::string version;
    std::string name;
    std::string uid;
    std::string folderName;
    std::vector<PackageRecord> records;
};

// Reads a package strictly, independent of the code under test: a field cut
// short raises std::runtime_error instead of giving a guess.
DecodedPackage DecodePackage(std::string_view bytes);

}  // namespace vx::test
