#pragma once

#include <vector>

#include "runtime/text/String.h"
#include "runtime/ui/UnhandledException.h"

class QWidget;

namespace vx::test {

// Records what reaches the report of uncaught failures while it lives, and
// puts the previous report back afterwards. Outside such a recorder any
// uncaught failure fails the running test.
class ReportRecorder {
public:
    struct Entry {
        String className;
        String message;
    };

    ReportRecorder();
    ~ReportRecorder();
    ReportRecorder(const ReportRecorder&) = delete;
    ReportRecorder& operator=(const ReportRecorder&) = delete;

    std::vector<Entry> reports;

private:
    UnhandledExceptionReport previous_;
};

// Shows the window, waits until it is the active one, so that the keyboard
// focus can be asked for. False when the platform would not activate it.
bool ShowActive(QWidget* window);

}  // namespace vx::test
