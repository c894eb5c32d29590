#include "ProgramRun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <utility>

extern char** environ;

namespace vx::test {

int RunProgram(std::vector<std::string> argv, const std::string& outPath,
               const std::string& errPath) {
    std::vector<char*> pointers;
    for (auto& argument : argv) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const auto& [fd, path] : {std::pair(1, &outPath), std::pair(2, &errPath)}) {
        if (!path->empty()) {
            posix_spawn_file_actions_addopen(&actions, fd, path->c_str(),
                                             O_WRONLY | O_CREAT | O_TRUNC, 0600);
        }
    }
    pid_t child = 0;
    const int error =
        ::posix_spawnp(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        return -1;
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string TakeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    ::unlink(path.c_str());
    return bytes.str();
}

}  // namespace vx::test
