#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "container/vxpkFormat.h"
#include "container/vxpkRecordReader.h"

namespace vx::engine {

// One record of a sound package as the commands see it: where it stands in
// the tree and where its bytes are in the file.
struct PackageEntry {
    // Below the package's root, "/" between plain components.
    std::string path;
    bool isFolder = false;
    // Counted from 1 in package order.
    uint64_t number = 0;
    // Where the record starts in the package.
    uint64_t recordOffset = 0;
    // Where a file's contents start, and how many bytes they are (0 for a
    // folder).
    uint64_t contentsOffset = 0;
    uint64_t size = 0;
};

using EntryVisitor = std::function<void(const PackageEntry&)>;

// Every record of reader, in package order, each admitted by the tree rules
// before visit sees it, reading no contents; the number of records. A
// problem raises PackageProblem, a failed read the stream's IOException.
uint64_t WalkRecords(vxpkRecordReader& reader, const EntryVisitor& visit);

// The header and size of a package that WalkPackage went through.
struct PackageSummary {
    vxpkFormat::Header header;
    uint64_t packageBytes = 0;
    uint64_t records = 0;
};

// Opens the package at path and walks it as WalkRecords does, in one pass; a
// package that is not sound ends it with EngineFailure, unacceptable, a failed
// read with a system one.
PackageSummary WalkPackage(const std::string& path, const EntryVisitor& visit);
// The same for the package open at fd, named path in failures, walked
// through a second descriptor of it, so that the caller reads contents from
// the very file that was walked.
PackageSummary WalkOpenPackage(const std::string& path, int fd, const EntryVisitor& visit);

}  // namespace vx::engine
