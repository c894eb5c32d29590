#include "cli/LeftOutReport.h"

#include <string_view>

namespace vx::cli {
namespace {

// Enough to show what went missing, few enough for one line.
constexpr std::size_t kNamedAtMost = 5;

bool isDotName(std::string_view path) {
    if (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.rfind('/');
    return path[slash == std::string_view::npos ? 0 : slash + 1] == '.';
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const auto& part : parts) {
        text += (text.empty() ? "" : ", ") + part;
    }
    return text;
}

// What the line counts without naming: those past the first few, and the
// dot-names.
std::string untoldOf(std::size_t more, std::size_t dotNames) {
    std::vector<std::string> parts;
    if (more > 0) {
        parts.push_back(std::to_string(more) + " more");
    }
    if (dotNames > 0) {
        parts.push_back(counted(dotNames, "dot-name", "dot-names"));
    }
    return joined(parts);
}

}  // namespace

std::string leftOutReport(const std::vector<std::string>& leftOut, bool verbose) {
    if (leftOut.empty()) {
        return "";
    }
    std::vector<std::string> named;
    std::size_t dotNames = 0;
    for (const auto& path : leftOut) {
        if (!verbose && isDotName(path)) {
            ++dotNames;
        } else {
            named.push_back(path);
        }
    }
    const std::size_t more =
        named.size() > kNamedAtMost && !verbose ? named.size() - kNamedAtMost : 0;
    named.resize(named.size() - more);
    const std::string untold = untoldOf(more, dotNames);
    std::string text =
        "vxpk: left out " +
        counted(leftOut.size(), "entry whose name starts", "entries whose names start") +
        " with \"_\" or \".\", which the format never packs: " + joined(named);
    if (!untold.empty()) {
        text += named.empty() ? untold + " (--verbose lists all)"
                              : " (and " + untold + "; --verbose lists all)";
    }
    return text;
}

}  // namespace vx::cli
