#include "engine/reading/PackageWalk.h"

#include <fcntl.h>

#include <cerrno>

#include "container/vxpkTreeCheck.h"
#include "engine/core/EngineFailure.h"
#include "engine/reading/PackageInput.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

uint64_t WalkRecords(vxpkRecordReader& reader, const EntryVisitor& visit) {
    vxpkTreeCheck tree;
    uint64_t records = 0;
    while (const auto entry = reader.next()) {
        visit({.path = tree.admit(*entry),
               .isFolder = entry->isFolder(),
               .number = entry->number,
               .recordOffset = entry->offset,
               .contentsOffset = entry->contentsOffset,
               .size = entry->contentsBytes()});
        records = entry->number;
    }
    return records;
}

namespace {

PackageSummary Summarize(const std::string& path, vxpkRecordReader& reader,
                         const EntryVisitor& visit) {
    PackageSummary summary{.header = reader.header(), .packageBytes = reader.packageSize()};
    summary.records = withPackage(path, [&] { return WalkRecords(reader, visit); });
    return summary;
}

}  // namespace

PackageSummary WalkPackage(const std::string& path, const EntryVisitor& visit) {
    vxpkRecordReader reader = openPackage(path);
    return Summarize(path, reader, visit);
}

PackageSummary WalkPackage(const std::string& path, int fd, const EntryVisitor& visit) {
    // The stream closes its own copy of the descriptor.
    const int copy = systemCalls.fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) {
        failSystem(path, errno);
    }
    vxpkRecordReader reader = openPackage(path, packageStream(copy));
    return Summarize(path, reader, visit);
}

}  // namespace vx::engine
