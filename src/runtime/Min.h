#pragma once

#include <concepts>

namespace vx {

// The smallest of two or more numbers, as a Double.
template <std::convertible_to<double>... Further>
double Min(double first, double second, Further... further) {
    double smallest = second < first ? second : first;
    ((smallest = static_cast<double>(further) < smallest ? static_cast<double>(further) : smallest),
     ...);
    return smallest;
}

}  // namespace vx
