#pragma once

#include "container/vxpkFormat.h"
#include "json/JSONItem.h"
#include "runtime/core/Ref.h"

// The --json output of the commands, written with the App's own JSON engine.
namespace vx::cli {

// An object that writes "/" as it stands: paths read better that way.
Ref<JSONItem> NewJsonObject();
// An array, which stays one when nothing is appended: an empty item would
// print as an object.
Ref<JSONItem> NewJsonArray();
// The header's fields, the version first.
Ref<JSONItem> HeaderJson(const vxpkFormat::Header& header);
// A count or a size as a JSON number.
Variant JsonCount(uint64_t count);
// The document and a line end on standard output.
void PrintJson(const Ref<JSONItem>& document);

}  // namespace vx::cli
