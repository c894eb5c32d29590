#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/core/StandardStreams.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

// cat's bytes go to whatever standard output is, whole or with a failure
// that names it.
namespace vx {
namespace {

// Standard output is the file at path, opened with flags, for the life of
// the object.
class StandardOutputAt {
public:
    StandardOutputAt(const std::string& path, int flags) : saved_(::dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int fd = ::open(path.c_str(), flags | O_CLOEXEC, 0644);
        ::dup2(fd, STDOUT_FILENO);
        ::close(fd);
    }
    ~StandardOutputAt() {
        ::dup2(saved_, STDOUT_FILENO);
        ::close(saved_);
    }
    StandardOutputAt(const StandardOutputAt&) = delete;
    StandardOutputAt& operator=(const StandardOutputAt&) = delete;

private:
    int saved_;
};

TEST(StandardStreams, writeToStandardOutput_isWholeOrFailsNamingIt) {
    test::ScratchFolder scratch;
    const std::string bytes(200000, 'b');
    struct Case {
        std::string path;
        int flags;
        test::Faults faults;
        std::string failure;
    };
    // Named rather than braced in the table: GCC 12 at -O3 warns falsely
    // (-Wmaybe-uninitialized) on the string inside a braced temporary.
    test::Faults interruptedAndShort;
    interruptedAndShort.interruptEvery = 2;
    interruptedAndShort.writeAtMost = 5000;
    const test::Faults none;
    const std::vector<Case> cases = {
        {scratch.writeFile("out", "head"), O_WRONLY | O_APPEND, interruptedAndShort, ""},
        {"/dev/full", O_WRONLY, none, "standard output: No space left on device"},
    };
    for (const auto& [path, flags, faults, failure] : cases) {
        SCOPED_TRACE(path);
        std::string failed;
        {
            const StandardOutputAt redirected(path, flags);
            const test::SystemCallFaults injected(faults);
            try {
                engine::WriteStandardOutput(bytes);
            } catch (const engine::EngineFailure& raised) {
                failed = raised.what();
            }
        }
        EXPECT_EQ(failed, failure);
    }
    EXPECT_EQ(scratch.readFile("out"), "head" + bytes);
}

}  // namespace
}  // namespace vx
