#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vx::engine {

// Copies a file's contents out of the package into a new file, through one
// buffer that is reused from file to file.
class ContentsCopy {
public:
    ContentsCopy();

    // How a copy ended: 0 when whole, otherwise the errno of the failed side.
    struct Outcome {
        int readError = 0;
        int writeError = 0;
        // The package gave fewer bytes than the record announced.
        bool packageEnded = false;
    };

    // length bytes at offset of package into out, which is new and empty.
    // A signal that asks the work to stop ends the copy early between two
    // blocks, with no error: the caller asks whether one came.
    Outcome copy(int package, uint64_t offset, uint64_t length, int out);

private:
    struct Free {
        void operator()(char* block) const;
    };
    std::unique_ptr<char, Free> buffer_;
};

}  // namespace vx::engine
