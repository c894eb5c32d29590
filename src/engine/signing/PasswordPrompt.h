#pragma once

#include "engine/signing/SecretBytes.h"

namespace vx::engine {

// The longest password read, as minisign reads at most this many bytes.
inline constexpr std::size_t kPasswordMaxBytes = 1023;

// Reads a password the way minisign does: on a terminal, typed on standard
// input with the echo off after a prompt on standard error, and typed a second
// time to confirm when confirm is set; otherwise one line of standard input.
// The line ends at its first "\n" or "\r". The echo comes back whatever
// happens.
SecretBytes ReadPassword(bool confirm);

}  // namespace vx::engine
