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
        // A signal asked the work to stop before the copy was done.
        bool interrupted = false;
        bool whole() const {
            return readError == 0 && writeError == 0 && !packageEnded && !interrupted;
        }
    };

    // length bytes at offset of package into out, which is new and empty.
    Outcome copy(int package, uint64_t offset, uint64_t length, int out);

private:
    struct Free {
        void operator()(char* block) const;
    };
    std::unique_ptr<char, Free> buffer_;
};

}  // namespace vx::engine
