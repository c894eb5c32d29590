#pragma once

#include <stdexcept>
#include <string>

namespace vx::cli {

// Ends a command with one line of diagnosis and an exit status the command
// chose itself, for a command whose statuses follow another tool's rather
// than vxpk's table.
class CommandFailure : public std::runtime_error {
public:
    CommandFailure(int status, const std::string& message)
        : std::runtime_error(message), exitStatus(status) {}
    int exitStatus;
};

}  // namespace vx::cli
