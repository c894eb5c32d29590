#pragma once

namespace vx {

// Loads the system's font configuration for the toolkit, once per process,
// before the toolkit's first text needs it. The library's own start-up also
// parses every configuration template on the system, which only tools that
// list them ever read; that is a good third of the time to the first window
// with text. Where the configuration cannot be read this way, nothing is
// loaded and the toolkit loads it as usual.
void _LoadFontConfiguration();

}  // namespace vx
