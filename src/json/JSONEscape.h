#pragma once

#include <string>
#include <string_view>

namespace vx {

// Appends UTF-8 text in the escaped form of the JSON output, without quotes,
// in one scan: backslash, quote and the usual control characters by their
// short escapes, other control characters and the invisible and format
// characters by \u with four upper-case digits, and "/" as "\/" when asked.
// Every other byte, valid UTF-8 or not, is copied as it is.
void AppendEscapedJSON(std::string_view utf8, bool escapeSlashes, std::string& out);

}  // namespace vx
