#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "cli/CommandFailure.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "engine/core/Interruption.h"

namespace {

constexpr const char* kExitCodes =
    "Exit status: 0 success; 1 the package or the tree is not acceptable (invalid, unsafe, "
    "not representable), or a key, password or signature is (damaged, wrong, not matching); "
    "2 usage error; 3 a system error (a file that cannot be read or written); 129, 130, 143 "
    "stopped by SIGHUP, SIGINT or SIGTERM, which is how vxpk serve always ends. vxpk diff "
    "alone answers as diff and cmp do: 0 the same, 1 different, 2 "
    "trouble.";

int report(int code, const char* message) {
    std::fprintf(stderr, "vxpk: error: %s\n", message);
    return code;
}

// printf keeps a failed write to itself: a full disk behind standard output
// must not pass for success, nor a diff's lines lost for "the same".
int statusAfterOutput(int status, int troubleStatus) {
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return status;
    }
    const int error = errno != 0 ? errno : EIO;
    return report(troubleStatus, ("standard output: " + std::string(std::strerror(error))).c_str());
}

}  // namespace

int main(int argc, char** argv) {
    // Before any thread starts, so that every thread leaves the signals to
    // the one that watches for them.
    vx::engine::WatchForInterruption();
    CLI::App app(
        "vxpk packs folder trees into .vxpk packages and lists, checks, compares, safely "
        "extracts and serves them, and signs them and checks their signatures in minisign's "
        "format.",
        "vxpk");
    app.footer(kExitCodes);
    app.set_version_flag("--version", std::string("vxpk ") + VX_VERSION);
    app.require_subcommand(1);
    vx::cli::addPackCommand(app);
    vx::cli::addListCommand(app);
    vx::cli::addInfoCommand(app);
    vx::cli::addVerifyCommand(app);
    vx::cli::addExtractCommand(app);
    vx::cli::addCatCommand(app);
    vx::cli::addKeygenCommand(app);
    vx::cli::addSignCommand(app);
    int status = vx::cli::kSuccess;
    vx::cli::addDiffCommand(app, status);
    vx::cli::addServeCommand(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            return statusAfterOutput(app.exit(error), vx::cli::kSystem);
        }
        return report(vx::cli::kUsage, (std::string(error.what()) + " (see vxpk --help)").c_str());
    } catch (const vx::cli::CommandFailure& failure) {
        return report(failure.exitStatus, failure.what());
    } catch (const vx::engine::Interrupted& interrupted) {
        return 128 + interrupted.signal;
    } catch (const vx::engine::EngineFailure& failure) {
        return report(vx::cli::exitCodeOf(failure.kind), failure.what());
    } catch (const std::exception& failure) {
        return report(vx::cli::kSystem, failure.what());
    }
    // A signal that came while the last step finished: the work is whole,
    // but the caller asked it to stop and hears that it did.
    if (const int signalNumber = vx::engine::InterruptingSignal()) {
        return 128 + signalNumber;
    }
    return statusAfterOutput(
        status, app.got_subcommand("diff") ? int{vx::cli::kTrouble} : int{vx::cli::kSystem});
}
