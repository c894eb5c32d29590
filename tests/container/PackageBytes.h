#pragma once

#include <string>
#include <string_view>

#include "DecodedPackage.h"

namespace vx::test {

// Writes package bytes by hand, independent of the code under test, so that a
// test can build packages that no packer would make: a record's length and its
// contents are written as given, even when they disagree.
std::string EncodeHeader(std::string_view version, std::string_view name, std::string_view uid,
                         std::string_view folderName);
std::string EncodeRecord(const PackageRecord& record);
// A header of "V001", "Demo", "demo1" and "site", then the records.
std::string EncodePackage(const std::vector<PackageRecord>& records);

}  // namespace vx::test
