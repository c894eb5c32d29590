#pragma once

#include <string>

namespace vx::engine {

// Whether two paths name one file: the same file where both are there (links
// and other spellings of a path included), or one name in the same folder
// where they are not there yet, as "./k.pub" and "k.pub". Writing one of them
// would replace the other.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace vx::engine
