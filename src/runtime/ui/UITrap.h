#pragma once

namespace vx {

// The guard at the head of the operations of windows, controls, menus and
// dialogs: off the main thread, once an application object exists, it raises
// ThreadAccessingUIException.
void _UITrap();

}  // namespace vx
