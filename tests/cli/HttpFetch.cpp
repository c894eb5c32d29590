#include "HttpFetch.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>

extern char** environ;

namespace vx::test {
namespace {

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    ::unlink(path.c_str());
    return bytes.str();
}

bool runCurl(std::vector<std::string> arguments) {
    std::vector<char*> argv;
    for (auto& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    pid_t child = 0;
    if (::posix_spawnp(&child, "curl", nullptr, nullptr, argv.data(), environ) != 0) {
        return false;
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The status line and "Name: value" lines of the last answer in a -D file.
void readHead(const std::string& head, HttpAnswer& answer) {
    std::istringstream lines(head);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        const size_t colon = line.find(':');
        if (line.starts_with("HTTP/")) {
            answer.status = std::atoi(line.c_str() + line.find(' ') + 1);
            answer.headers.clear();
        } else if (colon != std::string::npos) {
            std::string name = line.substr(0, colon);
            std::ranges::transform(name, name.begin(), ::tolower);
            answer.headers[name] = line.substr(line.find_first_not_of(' ', colon + 1));
        }
    }
}

}  // namespace

HttpAnswer Fetch(const std::string& origin, const std::string& target,
                 const std::vector<std::string>& options, const std::string& scratchFolder) {
    const std::string head = scratchFolder + "/curl.head";
    const std::string body = scratchFolder + "/curl.body";
    std::vector<std::string> arguments = {"curl", "-sS", "--max-time", "20", "--path-as-is",
                                          "--request-target", target, "-D", head, "-o", body};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(origin + "/");
    HttpAnswer answer;
    if (runCurl(arguments)) {
        readHead(slurp(head), answer);
        answer.body = slurp(body);
    }
    return answer;
}

}  // namespace vx::test
