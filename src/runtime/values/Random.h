#pragma once

#include <cstdint>
#include <random>

#include "runtime/core/Object.h"

namespace vx {

// A generator of pseudo-random numbers that seeds itself from the system when
// it is made, so that two runs draw different numbers.
class Random : public Object {
public:
    Random();

    // A whole number from minimum to maximum, both included;
    // InvalidArgumentException when minimum is above maximum.
    int64_t InRange(int64_t minimum, int64_t maximum);

    double Seed() const { return seed_; }
    // Restarts the sequence; one seed always gives the same numbers.
    void Seed(double seed);

private:
    std::mt19937_64 engine_;
    double seed_ = 0;
};

}  // namespace vx
