#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vx::engine {

// Tells whether two runs of bytes, each in a package of its own, are the
// same, reading both block by block through one pair of buffers that serves
// every file, so that memory stays flat however large the files are.
class ContentsCompare {
public:
    // A package open for reading, and the path its failures are named after.
    struct Package {
        std::string path;
        int fd = -1;
    };

    ContentsCompare(Package before, Package after);

    // The length bytes at beforeOffset and at afterOffset; a failed read, or a
    // package that ends before them, ends it with EngineFailure.
    bool same(uint64_t beforeOffset, uint64_t afterOffset, uint64_t length);

private:
    void readBlock(const Package& package, std::string& into, std::size_t count,
                   uint64_t offset) const;

    Package before_;
    Package after_;
    std::string beforeBlock_;
    std::string afterBlock_;
};

}  // namespace vx::engine
