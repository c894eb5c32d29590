#include "engine/extraction/FileMaker.h"

#include <cerrno>
#include <utility>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/extraction/ContentsCopy.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// Enough files queued to keep the threads busy, few enough to be no memory.
constexpr std::size_t kMostQueued = 256;
// A full queue takes new files again once it has run down to this.
constexpr std::size_t kRefillBelow = kMostQueued / 2;
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
    workToDo_.notify_all();
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
    if (jobs_.size() >= kMostQueued || failure_) {
        ownerWaiting_ = true;
        ownerMayGoOn_.wait(lock,
                           [this] { return failure_ ? busy_ == 0 : jobs_.size() <= kRefillBelow; });
        ownerWaiting_ = false;
    }
    raiseFailure();
    jobs_.push_back({std::move(place), std::move(relative), offset, length});
    const bool wake = idleWorkers_ > 0;
    lock.unlock();
    if (wake) {
        workToDo_.notify_one();
    }
}

void FileMaker::finish() {
    std::unique_lock lock(mutex_);
    ownerWaiting_ = true;
    // A failure empties the queue; the files begun before it still end, so
    // that the one told is the earliest in the package whichever thread
    // failed first.
    ownerMayGoOn_.wait(lock, [this] { return jobs_.empty() && busy_ == 0; });
    ownerWaiting_ = false;
    raiseFailure();
}

void FileMaker::run() {
    ContentsCopy copy;
    std::unique_lock lock(mutex_);
    while (true) {
        ++idleWorkers_;
        workToDo_.wait(lock, [this] { return !jobs_.empty() || stopping_; });
        --idleWorkers_;
        if (stopping_) {
            return;
        }
        const Job job = std::move(jobs_.front());
        jobs_.pop_front();
        ++busy_;
        lock.unlock();
        std::exception_ptr failure;
        try {
            makeOne(job, copy);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        --busy_;
        if (failure && (!failure_ || job.offset < failedOffset_)) {
            failure_ = failure;
            failedOffset_ = job.offset;
        }
        if (failure) {
            jobs_.clear();
            stopping_ = true;
            workToDo_.notify_all();
        }
        // The owner waits for room in the queue or for the end; it is woken
        // only once there is plenty of room, so that it queues many files
        // for each time it waits.
        if (ownerWaiting_ && (jobs_.size() <= kRefillBelow || failure_)) {
            ownerMayGoOn_.notify_one();
        }
    }
}

void FileMaker::makeOne(const Job& job, ContentsCopy& copy) const {
    StopIfInterrupted();
    const int out = extraction_.makeFile(job.place, job.relative);
    const ContentsCopy::Outcome outcome = copy.copy(package_, job.offset, job.length, out);
    const int closed = systemCalls.close(out) == 0 ? 0 : errno;
    StopIfInterrupted();
    if (outcome.readError != 0) {
        failSystem(packagePath_, outcome.readError);
    }
    if (outcome.packageEnded) {
        throw EngineFailure(FailureKind::kSystem, packagePath_ + ": the file ended early");
    }
    if (outcome.writeError != 0 || closed != 0) {
        failSystem(destination_ + "/" + job.relative,
                   outcome.writeError != 0 ? outcome.writeError : closed);
    }
}

}  // namespace vx::engine
