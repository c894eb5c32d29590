#pragma once

#include "engine/core/EngineFailure.h"

namespace vx::cli {

// The exit status of vxpk, as --help, the man page and the README tell it.
enum ExitCode : int {
    kSuccess = 0,
    // The package or the tree is not acceptable: invalid, unsafe or not
    // representable in the format.
    kUnacceptable = 1,
    kUsage = 2,
    // A file that cannot be read or written.
    kSystem = 3,
};

// The exit status of vxpk diff, the one exception to the table above: it
// answers as diff and cmp do, so that scripts can test it the same way.
enum DiffExitCode : int {
    kSame = 0,
    kDifferent = 1,
    // A usage error, a package that is not sound, a file that cannot be read.
    kTrouble = 2,
};

inline ExitCode exitCodeOf(engine::FailureKind kind) {
    return kind == engine::FailureKind::kUnacceptable ? kUnacceptable : kSystem;
}

}  // namespace vx::cli
