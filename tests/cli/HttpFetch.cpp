#include "HttpFetch.h"

#include <algorithm>
#include <sstream>

#include "VxpkRun.h"

namespace vx::test {
namespace {

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
    std::vector<std::string> arguments = {
        "-sS",  "--max-time", "20", "--path-as-is", "--request-target",
        target, "-D",         head, "-o",           body};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(origin + "/");
    HttpAnswer answer;
    if (RunProgram("curl", arguments, scratchFolder).exitCode == 0) {
        readHead(TakeFile(head), answer);
        answer.body = TakeFile(body);
    }
    return answer;
}

}  // namespace vx::test
