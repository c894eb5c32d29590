#pragma once

#include <string_view>

namespace vx::engine {

// The process's standard streams as the commands use them beyond printing:
// raw bytes out, and whether a person is watching.

// Writes all of bytes to standard output in order, never at an offset, as a
// pipe or a file opened for appending takes them; a failure ends the command
// with EngineFailure naming standard output.
void WriteStandardOutput(std::string_view bytes);

// Whether standard error is a terminal, where a moving progress line belongs.
bool StandardErrorIsTerminal();

}  // namespace vx::engine
