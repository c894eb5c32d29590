#include "engine/EngineSite.h"

#include <filesystem>

#include "engine/packing/PackFolder.h"

namespace vx::test {
namespace {

std::string patternOf(std::size_t count, int seed) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<char>(i * 31 % 251 + static_cast<std::size_t>(seed));
    }
    return bytes;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

EngineSite::EngineSite() {
    scratch.writeFile("site/a.txt", patternOf(300, 1));
    // Over 8 MiB, so that extraction writes it past the page cache, and over
    // two of pack's parts, ending in a piece shorter than a disk block.
    scratch.writeFile("site/zz.bin", patternOf((std::size_t{9} << 20) + 4097, 2));
    scratch.writeFile("site/css/b.css", patternOf(3000, 3));
    scratch.writeFile("site/z.txt", patternOf(500, 4));
}

void EngineSite::pack(const std::string& package) {
    engine::NoProgress progress;
    engine::PackFolder({.source = scratch.path("site"),
                        .package = scratch.path(package),
                        .name = "D",
                        .uid = "d",
                        .excludes = {},
                        .packageJson = {}},
                       progress);
}

std::map<std::string, engine::PackageEntry> EngineSite::entries(const std::string& package) {
    std::map<std::string, engine::PackageEntry> byPath;
    engine::WalkPackage(scratch.path(package),
                        [&](const engine::PackageEntry& entry) { byPath[entry.path] = entry; });
    return byPath;
}

std::set<std::string> EngineSite::namesInScratch() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(scratch.path())) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

std::string EngineSite::expand(std::string message) const {
    replaceAll(message, "{package}", scratch.path("out.vxpk"));
    replaceAll(message, "{source}", scratch.path("site"));
    replaceAll(message, "{destination}", scratch.path("dest"));
    return message;
}

}  // namespace vx::test
