#pragma once

#include <string>
#include <string_view>

namespace vx::engine {

// The page a folder answers with, and the main file of a package whose
// package.json names none.
inline constexpr std::string_view kIndexPage = "index.html";

// The file the host loads first: the "main" member of the package's own
// package.json text, or "index.html" when there is no such text, it is not
// JSON, or its main is not a non-empty string. A leading "./" or "/" is
// dropped, as the host reads main relative to the package's root.
std::string MainFileFrom(std::string_view packageJson);

}  // namespace vx::engine
