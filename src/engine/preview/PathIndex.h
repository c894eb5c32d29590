#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "engine/preview/MainFile.h"
#include "engine/reading/PackageWalk.h"

namespace vx::engine {

// Where the bytes of one path of the package are: all a request needs.
struct IndexedRecord {
    bool isFolder = false;
    uint64_t recordOffset = 0;
    uint64_t contentsOffset = 0;
    uint64_t size = 0;
};

// The paths of a package mapped to their records, the file the host loads
// first and the package's identity; built once, then only read, by any number of threads.
class PathIndex {
public:
    void add(const PackageEntry& entry);
    // The record at path ("/" between components), or nullptr.
    const IndexedRecord* find(std::string_view path) const;

    const std::string& mainFile() const { return mainFile_; }
    void setMainFile(std::string path) { mainFile_ = std::move(path); }
    // The package's identity, part of every ETag.
    const std::string& identity() const { return identity_; }
    void setIdentity(std::string identity) { identity_ = std::move(identity); }

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };
    std::unordered_map<std::string, IndexedRecord, Hash, std::equal_to<>> records_;
    std::string mainFile_{kIndexPage};
    std::string identity_;
};

}  // namespace vx::engine
