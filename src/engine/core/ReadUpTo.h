#pragma once

#include <cstddef>
#include <string>

namespace vx::engine {

// Reads the file at path into data, which holds capacity bytes, from its
// start to its end without asking for its length or seeking, so that a pipe
// or a process substitution, which have neither, give all they hold. The
// bytes read: capacity where the file holds at least that many, so that a
// caller with room for one byte more than it accepts tells a file too large.
std::size_t ReadUpTo(const std::string& path, char* data, std::size_t capacity);

}  // namespace vx::engine
