#pragma once

#include <string>

namespace vx::engine {

// A file written under a unique, unguessable name beside its final place and
// renamed there only when whole, so a failure leaves no partial file and an
// older one untouched.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int fd() const { return fd_; }
    // Closes the file, gives it mode (less the umask) and renames it to the
    // target.
    void commit(unsigned mode);
    // The same, but refused (EEXIST) where the target exists, even one made
    // while this file was written: it is linked into place, never renamed.
    void commitNew(unsigned mode);

private:
    // Closes the file and gives it mode less the umask.
    void close(unsigned mode);

    std::string target_;
    std::string path_;
    int fd_;
    bool committed_ = false;
};

}  // namespace vx::engine
