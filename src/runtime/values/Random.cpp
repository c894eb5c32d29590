#include "runtime/values/Random.h"

#include <bit>

#include "runtime/core/RuntimeException.h"

namespace vx {

Random::Random() {
    std::random_device entropy;
    // A whole number below 2^53, so that the Double seed holds it exactly.
    const uint64_t bits = (uint64_t{entropy()} << 32 | entropy()) >> 11;
    Seed(static_cast<double>(bits));
}

int64_t Random::InRange(int64_t minimum, int64_t maximum) {
    if (minimum > maximum) {
        throw InvalidArgumentException();
    }
    return std::uniform_int_distribution<int64_t>(minimum, maximum)(engine_);
}

void Random::Seed(double seed) {
    seed_ = seed;
    engine_.seed(std::bit_cast<uint64_t>(seed));
}

}  // namespace vx
