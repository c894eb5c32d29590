#pragma once

#include <functional>

#include "runtime/core/RuntimeException.h"
#include "runtime/text/String.h"

namespace vx {

// The toolkit's report of a failure that nobody caught. The default shows the
// words of UnhandledExceptionText in a message box (and on standard error);
// tests and embedders may put another report in its place.
using UnhandledExceptionReport = std::function<void(const RuntimeException&)>;

// Installs a report and gives back the one it replaces; an empty function
// restores the default.
UnhandledExceptionReport SetUnhandledExceptionReport(UnhandledExceptionReport report);

// Hands the failure to the report in place.
void RuntimeUnhandledException(const RuntimeException& failure);

// The words of the default report: the failure's class and its Message.
String UnhandledExceptionText(const RuntimeException& failure);

}  // namespace vx
