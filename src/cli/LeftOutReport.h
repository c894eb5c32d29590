#pragma once

#include <string>
#include <vector>

namespace vx::cli {

// The line pack prints about what the format left out, "" when it left out
// nothing: how many entries, and which. Those named with "_" are what a user
// misses (a framework's _next/ or _headers), so the first few of them are
// named; those named with "." (.git, .DS_Store) are expected to stay out and
// only counted. verbose names every one. leftOut is PackPlan::leftOut.
std::string leftOutReport(const std::vector<std::string>& leftOut, bool verbose);

}  // namespace vx::cli
