#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace vx::test {

// `vxpk serve` running as a real process in a folder: its first line of
// standard output read as the URL, its standard error kept in a file. Ended
// with SIGTERM when the object goes, if a test did not stop it.
class ServeProcess {
public:
    ServeProcess(const std::vector<std::string>& arguments, const std::string& workingFolder);
    ~ServeProcess();
    ServeProcess(const ServeProcess&) = delete;
    ServeProcess& operator=(const ServeProcess&) = delete;

    // "http://127.0.0.1:PORT/", or "" when the server did not say one within
    // ten seconds (it refused to start, say).
    const std::string& url() const { return url_; }
    int port() const;
    // Sends signalNumber and gives the exit status, -1 if it did not exit.
    int stop(int signalNumber);
    // Waits at most ten seconds for the process to end by itself and gives
    // its exit status; -1, and the process killed, when it did not end.
    int wait();
    // Everything it wrote to standard error so far.
    std::string errors() const;
    // Whether text shows in standard error within ten seconds: a request's
    // line is written after its answer, so a client may see the answer first.
    bool logs(const std::string& text) const;

private:
    pid_t child_ = -1;
    std::string errPath_;
    std::string url_;
};

}  // namespace vx::test
