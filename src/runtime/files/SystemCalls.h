#pragma once

#include <dirent.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <termios.h>

#include <cstddef>

namespace vx {

// Every system call that FolderItem, BinaryStream, vxpk's engine and the
// desktop launcher make goes through this one table, so that a test can put a
// failure in place of a call: an interrupted call, a short write, a full disk,
// a kernel that cannot copy between two files, a disk that fails half way
// through a file. It holds the
// real calls unless a test replaced them; the cost is one indirect call next
// to a system call. Each entry has the signature of the call it is named after
// (the variadic ones with their optional argument spelled out).
struct SystemCalls {
    char* (*getcwd)(char* buffer, std::size_t size);
    int (*stat)(const char* path, struct stat* info);
    int (*fstat)(int fd, struct stat* info);
    int (*fstatat)(int folder, const char* name, struct stat* info, int flags);
    int (*faccessat)(int folder, const char* name, int mode, int flags);
    int (*openat)(int folder, const char* name, int flags, mode_t mode);
    int (*close)(int fd);
    int (*dup)(int fd);
    int (*isatty)(int fd);
    int (*fcntl)(int fd, int command, int argument);
    DIR* (*fdopendir)(int fd);
    dirent* (*readdir)(DIR* folder);
    int (*closedir)(DIR* folder);
    int (*mkdirat)(int folder, const char* name, mode_t mode);
    int (*unlinkat)(int folder, const char* name, int flags);
    int (*renameat)(int fromFolder, const char* from, int toFolder, const char* to);
    int (*fchmod)(int fd, mode_t mode);
    mode_t (*umask)(mode_t mask);
    int (*mkstemp)(char* pattern);
    char* (*mkdtemp)(char* pattern);
    ssize_t (*pread)(int fd, void* data, std::size_t count, off_t offset);
    ssize_t (*pwrite)(int fd, const void* data, std::size_t count, off_t offset);
    ssize_t (*write)(int fd, const void* data, std::size_t count);
    int (*ftruncate)(int fd, off_t length);
    int (*fallocate)(int fd, int mode, off_t offset, off_t length);
    ssize_t (*copy_file_range)(int in, off_t* inOffset, int out, off_t* outOffset,
                               std::size_t count, unsigned int flags);
    int (*linkat)(int fromFolder, const char* from, int toFolder, const char* to, int flags);
    // For a password typed on a terminal without echo, or piped in.
    ssize_t (*read)(int fd, void* data, std::size_t count);
    int (*tcgetattr)(int fd, termios* settings);
    int (*tcsetattr)(int fd, int when, const termios* settings);
    // For the signals that stop vxpk's work.
    int (*sigaction)(int signal, const struct sigaction* action, struct sigaction* old);
    int (*pthread_sigmask)(int how, const sigset_t* signals, sigset_t* old);
    int (*sigwait)(const sigset_t* signals, int* signal);
    void (*_exit)(int status);
    int (*posix_spawnp)(pid_t* child, const char* file, const posix_spawn_file_actions_t* actions,
                        const posix_spawnattr_t* attributes, char* const argv[],
                        char* const environment[]);
    pid_t (*waitpid)(pid_t child, int* status, int options);
    int (*setsockopt)(int fd, int level, int name, const void* value, socklen_t length);
};

// The calls the platform gives.
extern const SystemCalls kRealSystemCalls;
// The calls in use; the file layer reads nothing else.
extern SystemCalls systemCalls;

}  // namespace vx
