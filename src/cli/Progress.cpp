#include "cli/Progress.h"

#include <cstdio>

#include "engine/core/StandardStreams.h"

namespace vx::cli {
namespace {

// Often enough to look alive, seldom enough to cost nothing.
constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr double kMiB = 1024.0 * 1024.0;

}  // namespace

Progress::Progress(bool quiet)
    : enabled_(!quiet && engine::StandardErrorIsTerminal()),
      start_(std::chrono::steady_clock::now()),
      lastShown_(start_) {}

void Progress::begin(uint64_t totalItems, uint64_t totalBytes) {
    totalItems_ = totalItems;
    totalBytes_ = totalBytes;
}

Progress::~Progress() {
    if (enabled_ && items_ > 0) {
        show();
        std::fputc('\n', stderr);
    }
}

void Progress::advance(uint64_t bytes, uint64_t items) {
    items_ += items;
    bytes_ += bytes;
    if (enabled_ && std::chrono::steady_clock::now() - lastShown_ >= kInterval) {
        show();
    }
}

void Progress::show() {
    lastShown_ = std::chrono::steady_clock::now();
    const double seconds = std::chrono::duration<double>(lastShown_ - start_).count();
    const double percent = totalBytes_ == 0 ? 100.0 : 100.0 * bytes_ / totalBytes_;
    std::fprintf(stderr, "\r%llu", static_cast<unsigned long long>(items_));
    if (totalItems_ > 0) {
        std::fprintf(stderr, "/%llu", static_cast<unsigned long long>(totalItems_));
    }
    std::fprintf(stderr, " items, %.1f MiB, %.0f%%, %.1f MiB/s   ", bytes_ / kMiB, percent,
                 seconds > 0 ? bytes_ / kMiB / seconds : 0.0);
    std::fflush(stderr);
}

}  // namespace vx::cli
