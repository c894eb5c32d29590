#include "engine/signing/Sodium.h"

#include <sodium.h>

#include "engine/core/EngineFailure.h"

namespace vx::engine {

void StartSodium() {
    // sodium_init is idempotent and thread-safe; it fails only where the
    // system gives it no randomness, and then no key can be made.
    if (sodium_init() < 0) {
        throw EngineFailure(FailureKind::kSystem, "libsodium: cannot start (no system randomness)");
    }
}

}  // namespace vx::engine
