#pragma once

#include <string_view>
#include <vector>

namespace vx {

// The lines of a text file, each without its "\n" and a "\r" before it, so
// that a file saved on Windows reads the same; a last line may lack its "\n".
// The views point into text.
std::vector<std::string_view> SplitLines(std::string_view text);

}  // namespace vx
