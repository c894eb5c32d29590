#pragma once

// Reports, on standard output, the monotonic clock in nanoseconds at the
// moment the first window of the process is exposed on the screen, and ends
// the process there. Installed before the toolkit's application object
// exists, so both programs under comparison are watched the same way.
void InstallFirstWindowProbe();
