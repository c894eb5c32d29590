#pragma once

namespace vx {

// Lets a menu's shortcut reach its item whichever control has the focus. A
// text field claims some keys for itself (Ctrl+E moves to the end of the line
// on this desktop) and the toolkit asks it first; from here on the menu comes
// first, and the Edit items act on the focused field themselves. Called once,
// when the toolkit comes up.
void _GiveMenuShortcutsPriority();

}  // namespace vx
