#pragma once

namespace vx {

// Loads the system's font configuration for the toolkit, once per process,
// before the toolkit's first text needs it. The library's own start-up also
// parses every configuration template on the system, which only tools that
// list them ever read; that is about a third of its start-up, and the start
// of the font library stands between the program and its first window. Where
// the configuration cannot be read this way, nothing is loaded and the
// toolkit loads it as usual. Built only where the font library is present.
void _LoadFontConfiguration();

}  // namespace vx
