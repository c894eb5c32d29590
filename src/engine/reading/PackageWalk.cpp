#include "engine/reading/PackageWalk.h"

#include "container/vxpkTreeCheck.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/reading/PackageInput.h"

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

PackageSummary WalkPackage(const std::string& path, const EntryVisitor& visit) {
    const OwnedDescriptor file(openPackageFile(path));
    return WalkOpenPackage(path, file.fd(), visit);
}

PackageSummary WalkOpenPackage(const std::string& path, int fd, const EntryVisitor& visit) {
    const Ref<BinaryStream> stream = secondStreamOf(fd, path);
    return withPackage(path, [&] {
        vxpkRecordReader reader(stream);
        PackageSummary summary{.header = reader.header(), .packageBytes = reader.packageSize()};
        summary.records = WalkRecords(reader, visit);
        return summary;
    });
}

}  // namespace vx::engine
