#include "Confinement.h"

#include <fcntl.h>
#include <sanitizer/common_interface_defs.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vx::fuzzing {
namespace {

namespace fs = std::filesystem;

const fs::path kScratch = "/scratch";

// A folder of the machine that stays reachable inside, at its own path.
struct SharedFolder {
    fs::path path;
    bool writable;
};

// What stands in the private root outside the scratch folder, as it stood
// when the confinement began.
std::set<fs::path> skeleton;
std::vector<fs::path> sharedFolders;

[[noreturn]] void refuse(const char* step) {
    std::fprintf(stderr,
                 "confinement: %s failed: %s; refusing to fuzz where the input could reach the "
                 "rest of the machine\n",
                 step, std::strerror(errno));
    std::fflush(stderr);
    std::_Exit(1);
}

void must(bool succeeded, const char* step) {
    if (!succeeded) {
        refuse(step);
    }
}

void writeText(const char* file, const std::string& text) {
    const int fd = ::open(file, O_WRONLY | O_CLOEXEC);
    must(fd >= 0 && ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
         file);
    ::close(fd);
}

// The folder libFuzzer reads or writes for a path argument: the path itself
// when it is a folder, otherwise the folder it lies in (an input file, a
// dictionary, an artifact prefix such as "artifacts/crash-").
void addFolderOf(std::vector<SharedFolder>& folders, std::string_view argument, bool writable) {
    std::error_code error;
    fs::path path = fs::absolute(argument, error).lexically_normal();
    if (!fs::is_directory(path, error)) {
        path = path.parent_path();
    }
    if (fs::is_directory(path, error)) {
        folders.push_back({path, writable});
    }
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

std::vector<SharedFolder> foldersOfCommandLine(int argc, char** argv) {
    std::vector<SharedFolder> folders;
    bool artifactsNamed = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (startsWith(argument, "-dict=")) {
            addFolderOf(folders, argument.substr(6), false);
        } else if (startsWith(argument, "-artifact_prefix=") ||
                   startsWith(argument, "-exact_artifact_path=")) {
            addFolderOf(folders, argument.substr(argument.find('=') + 1), true);
            artifactsNamed = true;
        } else if (!startsWith(argument, "-")) {
            addFolderOf(folders, argument, true);
        }
    }
    // libFuzzer writes a crashing input to the working folder unless told
    // where else.
    if (!artifactsNamed) {
        folders.push_back({fs::current_path(), true});
    }
    return folders;
}

bool inside(const fs::path& path, const fs::path& folder) {
    const auto [end, unused] =
        std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end();
}

// Parents first; a folder already reachable through one listed before it,
// with at least its access, needs no mount of its own.
std::vector<SharedFolder> withoutNested(std::vector<SharedFolder> folders) {
    std::sort(folders.begin(), folders.end(),
              [](const auto& a, const auto& b) { return a.path < b.path; });
    std::vector<SharedFolder> kept;
    for (const auto& folder : folders) {
        const bool covered = std::any_of(kept.begin(), kept.end(), [&](const auto& outer) {
            return inside(folder.path, outer.path) && (outer.writable || !folder.writable);
        });
        if (!covered) {
            kept.push_back(folder);
        }
    }
    return kept;
}

void bindInto(const fs::path& root, const fs::path& source, bool writable, bool isFile) {
    const fs::path point = root / source.relative_path();
    fs::create_directories(isFile ? point.parent_path() : point);
    if (isFile) {
        std::ofstream{point};
    }
    must(::mount(source.c_str(), point.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0,
         "bind mount");
    if (!writable) {
        must(::mount(nullptr, point.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) ==
                 0,
             "read-only remount");
    }
}

// Starts the sanitizers' symboliser now, while it can still reach the
// program's files, so that a crash inside is reported with its source lines.
void startSymboliser() {
    char text[256];
    __sanitizer_symbolize_pc(__builtin_return_address(0), "%p %F %L", text, sizeof text);
}

// A user namespace in which this process is root, and a process namespace
// whose first process is the next child. The mount namespace is the child's
// alone, so that this process keeps the machine's view to clean up in.
void enterNamespaces() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    must(::unshare(CLONE_NEWUSER | CLONE_NEWPID) == 0, "unshare");
    writeText("/proc/self/setgroups", "deny");
    writeText("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    writeText("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
}

pid_t confinedChild = 0;

void forwardToChild(int signal) {
    ::kill(confinedChild, signal);
}

// The caller's side: waits for the confined process, removes the folder on
// which its root was mounted (empty in this namespace, where none of its
// mounts shows) and ends as the confined process ended.
[[noreturn]] void waitOutside(pid_t child, const fs::path& root) {
    confinedChild = child;
    std::signal(SIGINT, SIG_IGN);
    std::signal(SIGTERM, forwardToChild);
    std::signal(SIGHUP, forwardToChild);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    std::error_code ignored;
    fs::remove_all(root, ignored);
    std::_Exit(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
}

// Calls visit for every path of the private root except what lies in the
// scratch folder, /proc and the shared folders.
template <class Visit>
void walkOutsideScratch(Visit visit) {
    for (auto it = fs::recursive_directory_iterator("/"); it != fs::recursive_directory_iterator();
         ++it) {
        const fs::path& path = it->path();
        visit(path);
        if (path == kScratch || path == "/proc" ||
            std::find(sharedFolders.begin(), sharedFolders.end(), path) != sharedFolders.end()) {
            it.disable_recursion_pending();
        }
    }
}

}  // namespace

fs::path EnterConfinement(int argc, char** argv) {
    const std::vector<SharedFolder> folders = withoutNested(foldersOfCommandLine(argc, argv));
    const fs::path workingFolder = fs::current_path();
    startSymboliser();
    enterNamespaces();
    std::string pattern = (fs::temp_directory_path() / "vx-fuzz-root-XXXXXX").string();
    must(::mkdtemp(pattern.data()) != nullptr, "mkdtemp");
    const fs::path root = pattern;
    const pid_t child = ::fork();
    must(child >= 0, "fork");
    if (child > 0) {
        waitOutside(child, root);
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    must(::unshare(CLONE_NEWNS) == 0, "unshare of the mounts");

    // Nothing mounted from here on may show in the machine's namespace.
    must(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
    // The root lives in memory, and its size is bounded, so that no input can
    // fill the machine's disk either.
    must(::mount("tmpfs", root.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=2g,mode=0755") == 0,
         "root mount");
    fs::create_directories(root / kScratch.relative_path());
    fs::create_directories(root / "proc");
    fs::create_directories(root / workingFolder.relative_path());
    bindInto(root, "/dev/null", true, true);
    bindInto(root, "/dev/urandom", false, true);
    for (const auto& folder : folders) {
        bindInto(root, folder.path, folder.writable, false);
        sharedFolders.push_back(folder.path);
    }

    // A process namespace may show its own /proc only while the machine's is
    // still in view.
    must(::mount("proc", (root / "proc").c_str(), "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC,
                 nullptr) == 0,
         "mount /proc");

    // The old root is stacked on the new one and then let go, so no path
    // leads back to it.
    must(::chdir(root.c_str()) == 0, "chdir");
    must(::syscall(SYS_pivot_root, ".", ".") == 0, "pivot_root");
    must(::umount2(".", MNT_DETACH) == 0, "detach old root");
    must(::chdir(workingFolder.c_str()) == 0, "chdir to the working folder");
    walkOutsideScratch([](const fs::path& path) { skeleton.insert(path); });
    return kScratch;
}

void CheckConfinement() {
    walkOutsideScratch([](const fs::path& path) {
        if (!skeleton.contains(path)) {
            std::fprintf(stderr, "confinement: %s appeared outside the scratch folder\n",
                         path.c_str());
            std::abort();
        }
    });
}

}  // namespace vx::fuzzing
