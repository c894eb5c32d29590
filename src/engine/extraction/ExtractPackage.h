#pragma once

#include <string>

#include "engine/core/WorkProgress.h"

namespace vx::engine {

// Extracts package into destination record by record, each admitted by the
// tree rules before anything of it is made; the first refusal or failure
// ends it with EngineFailure and leaves nothing behind.
void ExtractPackage(const std::string& package, const std::string& destination,
                    WorkProgress& progress);

}  // namespace vx::engine
