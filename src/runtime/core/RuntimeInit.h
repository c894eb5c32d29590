#pragma once

namespace vx {

// Prepares the process for the runtime, before anything else runs: a write
// that passes the file size limit must fail as a file error that the program
// reports, not end the process by signal.
void RuntimeInit();

}  // namespace vx
