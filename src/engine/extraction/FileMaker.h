#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/extraction/SafeExtraction.h"

namespace vx::engine {

// Makes the extracted files on threads of their own, so that creating and
// filling them overlaps reading and checking the package's records and each
// other. The
// queue is bounded and holds no contents, so memory stays flat.
class FileMaker {
public:
    // package stays open for as long as the maker lives; extraction too.
    FileMaker(const SafeExtraction& extraction, int package, const std::string& packagePath,
              const std::string& destination);
    // Stops the threads; what is still queued is not made.
    ~FileMaker();
    FileMaker(const FileMaker&) = delete;
    FileMaker& operator=(const FileMaker&) = delete;

    // A file at place with length bytes of the package at offset; raises the
    // failure of a file made before, if one failed.
    void make(ItemPlace place, std::string relative, uint64_t offset, uint64_t length);
    // Waits until every file is made, then raises the first failure.
    void finish();

private:
    struct Job {
        ItemPlace place;
        std::string relative;
        uint64_t offset;
        uint64_t length;
    };
    void run();
    void makeOne(const Job& job, class ContentsCopy& copy) const;
    void raiseFailure();

    const SafeExtraction& extraction_;
    const int package_;
    const std::string packagePath_;
    const std::string destination_;
    std::mutex mutex_;
    // Idle threads wait here for a job; each job wakes one of them.
    std::condition_variable workToDo_;
    // The owner waits here for room in the queue, or in finish for the end.
    std::condition_variable ownerMayGoOn_;
    std::deque<Job> jobs_;
    int busy_ = 0;
    int idleWorkers_ = 0;
    bool ownerWaiting_ = false;
    bool stopping_ = false;
    std::exception_ptr failure_;
    // Where the contents of the file that failed start, for package order.
    uint64_t failedOffset_ = 0;
    std::vector<std::thread> threads_;
};

}  // namespace vx::engine
