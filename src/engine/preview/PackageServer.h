#pragma once

#include <memory>

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
    // Answers requests until stop is called, from any thread.
    void run();
    void stop();

private:
    const ServedPackage& package_;
    std::unique_ptr<httplib::Server> server_;
};

}  // namespace vx::engine
