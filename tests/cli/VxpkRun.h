#pragma once

#include <sys/types.h>

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

// The vxpk built with the tests, started in the folder workingFolder with
// standard output in a file and standard error in a file, or on terminal when
// one is given. SIGINT, SIGTERM and SIGHUP reach it as they reach a command
// typed at a shell, at their default action and unblocked, whatever the tests
// inherited: a background job of a script starts with SIGINT ignored.
class VxpkChild {
public:
    VxpkChild(const std::vector<std::string>& arguments, const std::string& workingFolder,
              int terminal = -1);
    // program (a path, or a name found on PATH) in vxpk's place, with standard
    // input read from a file that holds input, so that it is no terminal, as
    // in a script that pipes a password in.
    VxpkChild(const std::string& program, const std::vector<std::string>& arguments,
              const std::string& workingFolder, const std::string& input);
    // Kills and reaps a child not waited for, so that no test leaves one behind.
    ~VxpkChild();
    VxpkChild(const VxpkChild&) = delete;
    VxpkChild& operator=(const VxpkChild&) = delete;

    bool running() const;
    void signal(int signalNumber) const;
    // Waits for the end; err stays empty when standard error is a terminal.
    VxpkResult wait();

private:
    std::string base_;
    bool onTerminal_;
    pid_t pid_;
};

// Replaces the calling process, a child just forked, with the vxpk built with
// the tests, run in workingFolder with its standard output and error as they
// are and the signals as a shell would give them; ends it with status 127
// when it cannot.
[[noreturn]] void ExecVxpk(const std::vector<std::string>& arguments,
                           const std::string& workingFolder);

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

// Runs program as VxpkChild does, to its end.
VxpkResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& workingFolder, const std::string& input = "");

// The bytes of the file at path, which is then removed: the output a run
// left behind.
std::string TakeFile(const std::string& path);

}  // namespace vx::test
