#pragma once

#include "runtime/files/SystemCalls.h"

namespace vx::engine {

// An open file descriptor, closed when its owner goes; -1 owns nothing.
class OwnedDescriptor {
public:
    explicit OwnedDescriptor(int fd) : fd_(fd) {}
    ~OwnedDescriptor() {
        if (fd_ >= 0) {
            systemCalls.close(fd_);
        }
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;
    int fd() const { return fd_; }

private:
    int fd_;
};

}  // namespace vx::engine
