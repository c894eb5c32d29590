#pragma once

#include <string>

namespace vx::cli {

// Extracts package into destination record by record, each admitted by the
// tree rules before anything of it is made; the first refusal or failure
// ends it with CliFailure and leaves nothing behind.
void ExtractPackage(const std::string& package, const std::string& destination, bool quiet);

}  // namespace vx::cli
