#include "container/PackageProblem.h"

namespace vx {

PackageProblem::PackageProblem(uint64_t atRecord, uint64_t atOffset, const std::string& reason)
    : std::runtime_error(reason), record(atRecord), offset(atOffset) {}

std::string PackageProblem::where() const {
    const std::string part = record == 0 ? "header" : "record " + std::to_string(record);
    return part + " at byte " + std::to_string(offset) + ": " + what();
}

}  // namespace vx
