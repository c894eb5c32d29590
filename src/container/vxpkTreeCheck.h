#pragma once

#include <string>
#include <unordered_map>

#include "container/vxpkRecordReader.h"

namespace vx {

// The rules that make a package's records a tree that can be re-created
// below a destination folder and nowhere else: every name and every component
// of a parent is a plain name (not empty, not "." or "..", no "/" and no NUL),
// a folder's name holds no ":", each parent is a folder recorded before the
// items in it, and no path is recorded twice.
class vxpkTreeCheck {
public:
    // The record's path below the package's root, with "/" between the
    // components; raises PackageProblem when the record breaks a rule.
    std::string admit(const RecordEntry& entry);

private:
    // Every path recorded so far, and whether it is a folder.
    std::unordered_map<std::string, bool> recorded_;
};

// The record's path with "/" between the components, as it stands, unchecked.
std::string RecordPath(const vxpkFormat::Record& record);

}  // namespace vx
