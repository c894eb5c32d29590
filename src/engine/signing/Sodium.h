#pragma once

// Starts libsodium once per process before any signing code uses it; safe to
// call from every entry point.
namespace vx::engine {

void StartSodium();

}  // namespace vx::engine
