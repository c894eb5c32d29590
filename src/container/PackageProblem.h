#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vx {

// What makes a package unacceptable to the strict tools, and where: the
// record (0 for the header, records count from 1) and the byte offset of the
// field at fault.
class PackageProblem : public std::runtime_error {
public:
    PackageProblem(uint64_t atRecord, uint64_t atOffset, const std::string& reason);

    // "record 3 at byte 57: " or "header at byte 5: ", then the reason.
    std::string where() const;

    uint64_t record;
    uint64_t offset;
};

}  // namespace vx
