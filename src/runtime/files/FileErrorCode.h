#pragma once

#include <cstdint>

namespace vx {

// Turns a platform error into the number that LastErrorCode and
// IOException::ErrorNumber carry. The program tells only two numbers apart:
// 102 when access was denied and 104 when the file is in use or already there.
// Every other failure keeps an errno of its own as PlatformErrorCodeBase + errno,
// so that no two causes share a number and none of them is 0.
inline constexpr int64_t AccessDeniedErrorCode = 102;
inline constexpr int64_t FileInUseErrorCode = 104;
inline constexpr int64_t PlatformErrorCodeBase = 1000;
// A typed read that found fewer bytes than its value needs. It is the base
// itself: errno 0 names no failure, so the number is free.
inline constexpr int64_t EndOfStreamErrorCode = PlatformErrorCodeBase;

// 0 for 0, otherwise the mapped number.
int64_t FileErrorCode(int errnoValue);

}  // namespace vx
