#pragma once

#include <cstdint>

namespace vx {

// A colour as the program stores it: red, green and blue, and an alpha where 0
// is opaque. Its integer form is &hAARRGGBB, the form numbers convert to and from.
struct Color {
    uint8_t Red = 0;
    uint8_t Green = 0;
    uint8_t Blue = 0;
    uint8_t Alpha = 0;

    constexpr uint32_t packed() const {
        return (uint32_t{Alpha} << 24) | (uint32_t{Red} << 16) | (uint32_t{Green} << 8) | Blue;
    }
    static constexpr Color fromPacked(uint32_t value) {
        return Color{static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8),
                     static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 24)};
    }

    friend constexpr bool operator==(const Color&, const Color&) = default;
};

}  // namespace vx
