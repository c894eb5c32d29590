#include "engine/packing/ExcludeFile.h"

#include <string_view>

#include "engine/core/EngineFailure.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/files/BinaryStream.h"
#include "runtime/files/FolderItem.h"
#include "runtime/text/Lines.h"

namespace vx::engine {
namespace {

std::string readWhole(const std::string& path) {
    try {
        const auto stream = BinaryStream::Open(
            New<FolderItem>(String(path, nullptr), FolderItem::PathModeNative), false);
        return std::string(stream->Read(static_cast<int64_t>(stream->Length())).bytes());
    } catch (const IOException& failure) {
        throw EngineFailure(FailureKind::kSystem,
                            path + ": " + describeFileError(failure.ErrorNumber));
    }
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
