#pragma once

#include <compare>
#include <cstdint>

namespace vx {

// A fixed-point amount with four decimal places, kept as a whole number of
// ten-thousandths so that sums of money stay exact.
class Currency {
public:
    static constexpr int64_t Scale = 10000;

    constexpr Currency() = default;
    static constexpr Currency fromTenThousandths(int64_t count) {
        Currency amount;
        amount.tenThousandths_ = count;
        return amount;
    }
    constexpr int64_t tenThousandths() const { return tenThousandths_; }

    friend constexpr auto operator<=>(const Currency&, const Currency&) = default;

private:
    int64_t tenThousandths_ = 0;
};

}  // namespace vx
