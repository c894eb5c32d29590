#include "engine/comparison/ContentsCompare.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "engine/core/EngineFailure.h"
#include "engine/reading/PackageBytes.h"

namespace vx::engine {
namespace {

// Few calls for a large file, yet small beside what the command may use:
// both buffers together stay far below the memory of the records' index.
constexpr std::size_t kBlockBytes = std::size_t{256} << 10;

}  // namespace

ContentsCompare::ContentsCompare(Package before, Package after)
    : before_(std::move(before)), after_(std::move(after)) {
    beforeBlock_.reserve(kBlockBytes);
    afterBlock_.reserve(kBlockBytes);
}

bool ContentsCompare::same(uint64_t beforeOffset, uint64_t afterOffset, uint64_t length) {
    for (uint64_t done = 0; done < length;) {
        const auto count = static_cast<std::size_t>(std::min<uint64_t>(length - done, kBlockBytes));
        readBlock(before_, beforeBlock_, count, beforeOffset + done);
        readBlock(after_, afterBlock_, count, afterOffset + done);
        if (beforeBlock_ != afterBlock_) {
            return false;
        }
        done += count;
    }
    return true;
}

void ContentsCompare::readBlock(const Package& package, std::string& into, std::size_t count,
                                uint64_t offset) const {
    // The walk found the package whole; one that is shorter now changed since.
    if (!ReadPackageBytes(package.fd, offset, count, into)) {
        failSystem(package.path, errno);
    }
}

}  // namespace vx::engine
