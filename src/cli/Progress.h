#pragma once

#include <chrono>
#include <cstdint>

#include "engine/core/WorkProgress.h"

namespace vx::cli {

// One line on standard error that keeps moving while pack or extract works:
// items, bytes, percent of the bytes and the rate. Silent when asked to be or
// when standard error is not a terminal, so logs of scripts stay clean.
class Progress : public engine::WorkProgress {
public:
    explicit Progress(bool quiet);
    ~Progress() override;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void begin(uint64_t totalItems, uint64_t totalBytes) override;
    void advance(uint64_t bytes, uint64_t items = 1) override;

private:
    void show();

    bool enabled_;
    uint64_t totalItems_ = 0;
    uint64_t totalBytes_ = 0;
    uint64_t items_ = 0;
    uint64_t bytes_ = 0;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point lastShown_;
};

}  // namespace vx::cli
