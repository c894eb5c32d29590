#pragma once

#include <string>

namespace vx {

// Opens target, a path or a URL, with the desktop's default application
// through xdg-open, the one launcher that both the App Builder and vxpk
// use. It does not wait for the application: xdg-open runs detached, in a
// session of its own, with no signal blocked or ignored and its output
// discarded, so a browser that stays open
// neither holds the caller up nor writes into its output. False, with errno
// set, when xdg-open could not be started at all.
bool OpenWithDesktop(const std::string& target);

}  // namespace vx
