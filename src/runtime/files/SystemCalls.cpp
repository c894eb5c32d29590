#include "runtime/files/SystemCalls.h"

#include <fcntl.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vx {

constexpr SystemCalls kRealSystemCalls = {
    .getcwd = [](char* buffer, std::size_t size) { return ::getcwd(buffer, size); },
    .stat = [](const char* path, struct stat* info) { return ::stat(path, info); },
    .fstat = [](int fd, struct stat* info) { return ::fstat(fd, info); },
    .fstatat = [](int folder, const char* name, struct stat* info,
                  int flags) { return ::fstatat(folder, name, info, flags); },
    .faccessat = [](int folder, const char* name, int mode,
                    int flags) { return ::faccessat(folder, name, mode, flags); },
    .openat = [](int folder, const char* name, int flags,
                 mode_t mode) { return ::openat(folder, name, flags, mode); },
    .close = [](int fd) { return ::close(fd); },
    .dup = [](int fd) { return ::dup(fd); },
    .isatty = [](int fd) { return ::isatty(fd); },
    .fcntl = [](int fd, int command, int argument) { return ::fcntl(fd, command, argument); },
    .fdopendir = [](int fd) { return ::fdopendir(fd); },
    .readdir = [](DIR* folder) { return ::readdir(folder); },
    .closedir = [](DIR* folder) { return ::closedir(folder); },
    .mkdirat = [](int folder, const char* name,
                  mode_t mode) { return ::mkdirat(folder, name, mode); },
    .unlinkat = [](int folder, const char* name,
                   int flags) { return ::unlinkat(folder, name, flags); },
    .renameat = [](int fromFolder, const char* from, int toFolder,
                   const char* to) { return ::renameat(fromFolder, from, toFolder, to); },
    .fchmod = [](int fd, mode_t mode) { return ::fchmod(fd, mode); },
    .umask = [](mode_t mask) { return ::umask(mask); },
    .mkstemp = [](char* pattern) { return ::mkstemp(pattern); },
    .mkdtemp = [](char* pattern) { return ::mkdtemp(pattern); },
    .pread = [](int fd, void* data, std::size_t count,
                off_t offset) { return ::pread(fd, data, count, offset); },
    .pwrite = [](int fd, const void* data, std::size_t count,
                 off_t offset) { return ::pwrite(fd, data, count, offset); },
    .write = [](int fd, const void* data, std::size_t count) { return ::write(fd, data, count); },
    .ftruncate = [](int fd, off_t length) { return ::ftruncate(fd, length); },
    .fallocate = [](int fd, int mode, off_t offset,
                    off_t length) { return ::fallocate(fd, mode, offset, length); },
    .copy_file_range =
        [](int in, off_t* inOffset, int out, off_t* outOffset, std::size_t count,
           unsigned int flags) {
            return ::copy_file_range(in, inOffset, out, outOffset, count, flags);
        },
    .linkat = [](int fromFolder, const char* from, int toFolder, const char* to,
                 int flags) { return ::linkat(fromFolder, from, toFolder, to, flags); },
    .read = [](int fd, void* data, std::size_t count) { return ::read(fd, data, count); },
    .tcgetattr = [](int fd, termios* settings) { return ::tcgetattr(fd, settings); },
    .tcsetattr = [](int fd, int when,
                    const termios* settings) { return ::tcsetattr(fd, when, settings); },
    .sigaction = [](int signal, const struct sigaction* action,
                    struct sigaction* old) { return ::sigaction(signal, action, old); },
    .pthread_sigmask = [](int how, const sigset_t* signals,
                          sigset_t* old) { return ::pthread_sigmask(how, signals, old); },
    .sigwait = [](const sigset_t* signals, int* signal) { return ::sigwait(signals, signal); },
    ._exit = [](int status) { ::_exit(status); },
    .posix_spawnp =
        [](pid_t* child, const char* file, const posix_spawn_file_actions_t* actions,
           const posix_spawnattr_t* attributes, char* const argv[], char* const environment[]) {
            return ::posix_spawnp(child, file, actions, attributes, argv, environment);
        },
    .waitpid = [](pid_t child, int* status,
                  int options) { return ::waitpid(child, status, options); },
    .setsockopt = [](int fd, int level, int name, const void* value,
                     socklen_t length) { return ::setsockopt(fd, level, name, value, length); },
};

constinit SystemCalls systemCalls = kRealSystemCalls;

}  // namespace vx
