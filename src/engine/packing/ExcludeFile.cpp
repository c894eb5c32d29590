#include "engine/packing/ExcludeFile.h"

#include <string_view>

#include "engine/core/EngineFailure.h"
#include "engine/core/ReadUpTo.h"
#include "runtime/text/Lines.h"

namespace vx::engine {
namespace {

// More than any list of patterns holds; a path such as /dev/zero stops here
// instead of filling memory.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

std::string readWhole(const std::string& path) {
    std::string text(kMostBytes + 1, '\0');
    text.resize(ReadUpTo(path, text.data(), text.size()));
    if (text.size() > kMostBytes) {
        throw EngineFailure(FailureKind::kSystem, path + ": more than 1 MiB of patterns");
    }
    return text;
}

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

}  // namespace

std::vector<std::string> readExcludeFile(const std::string& path) {
    const std::string text = readWhole(path);
    std::vector<std::string> patterns;
    for (const std::string_view line : SplitLines(text)) {
        if (!isBlank(line) && !line.starts_with('#')) {
            patterns.emplace_back(line);
        }
    }
    return patterns;
}

}  // namespace vx::engine
