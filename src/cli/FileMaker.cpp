#include "cli/FileMaker.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "cli/CliFailure.h"
#include "cli/ContentsCopy.h"

namespace vx::cli {
namespace {

// Enough files queued to keep the thread busy, few enough to be no memory.
constexpr std::size_t kMostQueued = 256;
// Making a file is mostly the kernel's work, which goes on in parallel.
constexpr int kThreads = 2;

}  // namespace

FileMaker::FileMaker(const SafeExtraction& extraction, int package, const std::string& packagePath,
                     const std::string& destination)
    : extraction_(extraction),
      package_(package),
      packagePath_(packagePath),
      destination_(destination) {
    for (int i = 0; i < kThreads; ++i) {
        threads_.emplace_back([this] { run(); });
    }
}

FileMaker::~FileMaker() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        jobs_.clear();
    }
    changed_.notify_all();
    for (auto& thread : threads_) {
        thread.join();
    }
}

void FileMaker::raiseFailure() {
    if (failure_) {
        std::rethrow_exception(failure_);
    }
}

void FileMaker::make(ItemPlace place, std::string relative, uint64_t offset, uint64_t length) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return jobs_.size() < kMostQueued || failure_; });
    raiseFailure();
    jobs_.push_back({std::move(place), std::move(relative), offset, length});
    lock.unlock();
    changed_.notify_all();
}

void FileMaker::finish() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return (jobs_.empty() && busy_ == 0) || failure_; });
    raiseFailure();
}

void FileMaker::run() {
    ContentsCopy copy;
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return !jobs_.empty() || stopping_; });
        if (stopping_) {
            return;
        }
        const Job job = std::move(jobs_.front());
        jobs_.pop_front();
        ++busy_;
        lock.unlock();
        changed_.notify_all();
        std::exception_ptr failure;
        try {
            makeOne(job, copy);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        --busy_;
        if (failure) {
            failure_ = failure;
            jobs_.clear();
            stopping_ = true;
        }
        changed_.notify_all();
    }
}

void FileMaker::makeOne(const Job& job, ContentsCopy& copy) const {
    const int out = extraction_.makeFile(job.place, job.relative);
    const ContentsCopy::Outcome outcome = copy.copy(package_, job.offset, job.length, out);
    const int closed = ::close(out) == 0 ? 0 : errno;
    if (outcome.readError != 0) {
        failSystem(packagePath_, outcome.readError);
    }
    if (outcome.packageEnded) {
        throw CliFailure(kSystem, packagePath_ + ": the file ended early");
    }
    if (outcome.writeError != 0 || closed != 0) {
        failSystem(destination_ + "/" + job.relative,
                   outcome.writeError != 0 ? outcome.writeError : closed);
    }
}

}  // namespace vx::cli
