#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace vx::test {

struct ChildOptions {
    // Run as the user nobody when the tests run as root, so that file
    // permissions bind; an unprivileged test run stays as it is.
    bool unprivileged = true;
    // A limit on the size of any file the child writes (RLIMIT_FSIZE), with
    // the signal ignored so that the write fails with EFBIG instead.
    std::optional<uint64_t> fileSizeLimit;
};

// Runs body in a forked child and gives back the text it returned. An
// exception escaping body gives "exception: " and its what(); a child that
// dies gives "child died", so a test comparing the text then fails.
std::string RunInChild(const std::function<std::string()>& body, const ChildOptions& options = {});

}  // namespace vx::test
