#pragma once

#include <map>
#include <string>
#include <vector>

namespace vx::test {

// One answer as curl received it.
struct HttpAnswer {
    // 0 when curl got no answer at all.
    int status = 0;
    // Names in lower case.
    std::map<std::string, std::string> headers;
    std::string body;
};

// Asks origin ("http://127.0.0.1:PORT") for target with curl, a real
// client, sending the target exactly as given (no normalising, no
// re-encoding); options are more of curl's, such as "-I" or "-H" "Range: ...".
// The files curl writes go to scratchFolder.
HttpAnswer Fetch(const std::string& origin, const std::string& target,
                 const std::vector<std::string>& options, const std::string& scratchFolder);

}  // namespace vx::test
