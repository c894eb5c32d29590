#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vx::test {

// What one run of vxpk gave back.
struct VxpkResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Where the standard error of a run goes.
enum class ErrorTo { File, Terminal };

// Runs the vxpk built with the tests in the folder workingFolder, with
// standard output in a file and standard error in a file or, for a user's
// view, on a pseudo-terminal that passes the bytes as they are written.
VxpkResult RunVxpk(const std::vector<std::string>& arguments, const std::string& workingFolder,
                   ErrorTo errorTo = ErrorTo::File);

// What a run on a terminal gave back, and whether the terminal echoed again
// once vxpk had ended.
struct TerminalRun {
    VxpkResult run;
    bool echoAfter = false;
};

// Runs vxpk with standard input and standard error on a terminal that
// echoes and edits lines as a user's does, its controlling terminal, so that
// Ctrl-C ("\x03") sends SIGINT; answers each prompt of dialogue, in turn,
// with its reply once the prompt has shown. err is all that the terminal
// showed; exitCode is -1 where a prompt never came.
TerminalRun RunVxpkOnTerminal(const std::vector<std::string>& arguments,
                              const std::string& workingFolder,
                              const std::vector<std::pair<std::string, std::string>>& dialogue);

// Runs program (a path, or a name found on PATH) the same way, with
// standard input read from a file that holds input, so that it is no
// terminal, as in a script that pipes a password in.
VxpkResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& workingFolder, const std::string& input,
                      ErrorTo errorTo = ErrorTo::File);

}  // namespace vx::test
