#include "engine/packing/ExcludeFile.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

#include "engine/core/EngineFailure.h"
#include "engine/core/OwnedDescriptor.h"
#include "runtime/files/FullCalls.h"

namespace vx::engine {
namespace {

// More than any list of patterns holds; a path such as /dev/zero stops here
// instead of filling memory.
constexpr std::size_t kMostBytes = 16u << 20;
constexpr std::size_t kBlock = 64u << 10;

// Read to the end rather than to a length, so that a pipe or a process
// substitution (`--exclude-from <(...)`), which has none, gives its lines.
std::string readWhole(const std::string& path) {
    const OwnedDescriptor file(systemCalls.openat(AT_FDCWD, path.c_str(), O_RDONLY | O_CLOEXEC, 0));
    FullResult got{.bytes = kBlock, .error = file.fd() < 0 ? errno : 0};
    std::string text;
    while (got.error == 0 && got.bytes == kBlock && text.size() <= kMostBytes) {
        const std::size_t had = text.size();
        text.resize(had + kBlock);
        got = readFully(file.fd(), text.data() + had, kBlock);
        text.resize(had + got.bytes);
    }
    if (got.error != 0) {
        failSystem(path, got.error);
    }
    if (text.size() > kMostBytes) {
        throw EngineFailure(FailureKind::kSystem, path + ": more than 16 MiB of patterns");
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
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (!isBlank(line) && !line.starts_with('#')) {
            patterns.emplace_back(line);
        }
    }
    return patterns;
}

}  // namespace vx::engine
