#pragma once

#include <QString>

#include "runtime/text/String.h"

namespace vx {

// The desktop's own file dialogs, modal over the active window. Each gives the
// chosen path, or an empty one when the user cancelled.
QString ChooseFolderPath();
// The filter names registered file types; the default name is offered as it
// stands, and a name typed without extension gets that of the filter's type.
QString ChooseSavePath(const String& filter, const String& defaultName);
QString ChooseOpenPath(const String& promptText, const String& title, const String& filter);

}  // namespace vx
