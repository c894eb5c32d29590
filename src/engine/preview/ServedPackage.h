#pragma once

#include <string>

#include "engine/core/OwnedDescriptor.h"
#include "engine/preview/PathIndex.h"

namespace vx::engine {

// A package opened for serving: checked as verify checks it and indexed in
// the same single pass over its records, reading no contents but those of
// its package.json, and held open so that every answer is read from this
// one descriptor by offset. A package that is not sound raises EngineFailure,
// unacceptable; one that cannot be read, a system one.
class ServedPackage {
public:
    explicit ServedPackage(const std::string& path);

    int fd() const { return file_.fd(); }
    const PathIndex& index() const { return index_; }

private:
    void readMainFile(const std::string& path);

    OwnedDescriptor file_;
    PathIndex index_;
};

}  // namespace vx::engine
