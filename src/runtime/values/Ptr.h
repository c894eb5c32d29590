#pragma once

#include <cstdint>

namespace vx {

// A raw machine address as a value. The program carries it and converts it to
// and from integers; nothing reads through it.
struct Ptr {
    std::uintptr_t Address = 0;

    friend constexpr bool operator==(const Ptr&, const Ptr&) = default;
};

}  // namespace vx
