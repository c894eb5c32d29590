#pragma once

#include <string>

#include "container/vxpkFormat.h"
#include "engine/core/WorkProgress.h"
#include "engine/packing/PackPlan.h"

namespace vx::engine {

// Writes the package of plan into the new, empty file out. Where every record
// and every file's contents land follows from the plan alone, so the package
// is cut into pieces that two threads fill at once, each reading its files
// relative to their folders and writing its piece at its own offset: runs of
// small items gathered in memory and written out, large files copied in
// parts of a few MiB. The threads take turns at writing, as the file takes
// one writer at a time; gathering the small items overlaps. The bytes are those of a writer that
// goes through the plan in order. The first failure in package order ends it
// with EngineFailure naming the item; source is the folder the plan was made of.
void WritePackage(int out, const std::string& source, const std::string& package,
                  const PackPlan& plan, const vxpkFormat::Header& header, WorkProgress& progress);

}  // namespace vx::engine
