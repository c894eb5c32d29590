#pragma once

#include <cstdint>

namespace vx::engine {

// Hears how far a long operation has come, so that a command can show it;
// the engine itself never prints.
class WorkProgress {
public:
    virtual ~WorkProgress() = default;
    // The totals, once known; a total of 0 items stands for a count not
    // known in advance.
    virtual void begin(uint64_t totalItems, uint64_t totalBytes) = 0;
    // items more done, with bytes more of the total.
    virtual void advance(uint64_t bytes, uint64_t items = 1) = 0;
};

// For work that nobody watches.
class NoProgress final : public WorkProgress {
public:
    void begin(uint64_t, uint64_t) override {}
    void advance(uint64_t, uint64_t) override {}
};

}  // namespace vx::engine
