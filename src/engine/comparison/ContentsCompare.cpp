#include "engine/comparison/ContentsCompare.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "engine/core/EngineFailure.h"
#include "runtime/files/FileErrorCode.h"
#include "runtime/files/FullCalls.h"

namespace vx::engine {
namespace {

// Few calls for a large file, yet small beside what the command may use:
// both buffers together stay far below the memory of the records' index.
constexpr std::size_t kBlockBytes = std::size_t{256} << 10;

}  // namespace

ContentsCompare::ContentsCompare(Package before, Package after)
    : before_(std::move(before)), after_(std::move(after)), buffers_(2 * kBlockBytes) {}

bool ContentsCompare::same(uint64_t beforeOffset, uint64_t afterOffset, uint64_t length) {
    char* const beforeBlock = buffers_.data();
    char* const afterBlock = buffers_.data() + kBlockBytes;
    for (uint64_t done = 0; done < length;) {
        const auto count = static_cast<std::size_t>(std::min<uint64_t>(length - done, kBlockBytes));
        readBlock(before_, beforeBlock, count, beforeOffset + done);
        readBlock(after_, afterBlock, count, afterOffset + done);
        if (std::memcmp(beforeBlock, afterBlock, count) != 0) {
            return false;
        }
        done += count;
    }
    return true;
}

void ContentsCompare::readBlock(const Package& package, char* into, std::size_t count,
                                uint64_t offset) const {
    const FullResult read = readFullyAt(package.fd, into, count, offset);
    if (read.error != 0) {
        failSystem(package.path, read.error);
    }
    // The walk found the package whole; one that is shorter now changed since.
    if (read.bytes < count) {
        throw EngineFailure(FailureKind::kSystem,
                            package.path + ": " + describeFileError(EndOfStreamErrorCode));
    }
}

}  // namespace vx::engine
