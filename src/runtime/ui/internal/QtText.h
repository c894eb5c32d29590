#pragma once

#include <QString>

#include "runtime/text/String.h"

namespace vx {

// Text between the system and the toolkit. A String is read by its tag (no tag
// counts as UTF-8); what comes back is tagged UTF-8.
QString ToQString(const String& text);
String FromQString(const QString& text);

}  // namespace vx
