#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "engine/preview/ServedPackage.h"

namespace httplib {
class Server;
}

namespace vx::engine {

// An HTTP server on 127.0.0.1 alone that answers GET and HEAD from a served
// package, every body read from the package by offset, and says one line per
// request on standard error: method, target, status, body bytes and, for a
// refusal, why.
class PackageServer {
public:
    explicit PackageServer(const ServedPackage& package);
    ~PackageServer();
    PackageServer(const PackageServer&) = delete;
    PackageServer& operator=(const PackageServer&) = delete;

    // Listens on port of 127.0.0.1, or on one the system picks for 0, and
    // gives the port; EngineFailure, a system one, when it cannot.
    int listenOn(int port);
    // Answers requests until stop is called, from any thread, at any time:
    // a stop asked for before the server began to listen ends it as soon
    // as it does.
    void run();
    void stop();

private:
    void awaitStop();

    const ServedPackage& package_;
    std::unique_ptr<httplib::Server> server_;
    std::mutex mutex_;
    std::condition_variable stopAsked_;
    bool stopping_ = false;
    std::atomic<bool> listening_{true};
};

}  // namespace vx::engine
