#include "engine/preview/PackageServer.h"

#include <httplib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include "engine/core/EngineFailure.h"
#include "engine/preview/RequestPath.h"
#include "engine/preview/ResponsePlan.h"
#include "engine/reading/PackageBytes.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

constexpr const char* kHost = "127.0.0.1";
// The most bytes of a file read and sent at a time, so that a large file
// never sits in memory whole.
constexpr std::size_t kBlock = 64 * 1024;
// Enough threads that a browser's parallel connections, or a benchmark's,
// are all answered at once rather than in turn.
constexpr std::size_t kThreads = 32;
constexpr std::size_t kRequestsPerConnection = 1000;

std::optional<std::string_view> headerOf(const httplib::Request& request, const char* name) {
    if (!request.has_header(name)) {
        return std::nullopt;
    }
    // The value lives in the request's own table for as long as the request.
    return std::string_view(request.headers.find(name)->second);
}

void fillBody(int fd, const ResponsePlan& plan, httplib::Response& response) {
    const std::string type(plan.contentType);
    if (plan.length == 0) {
        response.set_content("", type);
        return;
    }
    response.set_content_provider(
        plan.length, type,
        [fd, offset = plan.offset](size_t at, size_t length, httplib::DataSink& sink) {
            thread_local std::string block;
            return ReadPackageBytes(fd, offset + at, std::min(length, kBlock), block) &&
                   sink.write(block.data(), block.size());
        });
}

ResponsePlan planFor(const ServedPackage& package, const httplib::Request& request) {
    return PlanResponse(package.index(), {.target = request.target,
                                          .range = headerOf(request, "Range"),
                                          .ifNoneMatch = headerOf(request, "If-None-Match"),
                                          .ifRange = headerOf(request, "If-Range")});
}

void answer(const ServedPackage& package, const httplib::Request& request,
            httplib::Response& response) {
    const ResponsePlan plan = planFor(package, request);
    response.status = plan.status;
    if (!plan.reason.empty()) {
        response.set_content(plan.reason + "\n", "text/plain; charset=utf-8");
        return;
    }
    if (!plan.location.empty()) {
        response.set_header("Location", plan.location);
        return;
    }
    response.set_header("ETag", plan.etag);
    response.set_header("Accept-Ranges", "bytes");
    if (!plan.contentRange.empty()) {
        response.set_header("Content-Range", plan.contentRange);
    }
    if (plan.status == 200 || plan.status == 206) {
        fillBody(package.fd(), plan, response);
    }
}

// A request with any other method may carry a body, which is never read,
// so the connection cannot carry another request after it.
void refuseMethod(httplib::Request& request, httplib::Response& response) {
    response.status = 405;
    response.set_header("Allow", "GET, HEAD");
    response.set_content("only GET and HEAD are answered\n", "text/plain; charset=utf-8");
    request.headers.erase("Connection");
    request.headers.emplace("Connection", "close");
}

// The target as the log shows it: control characters, which a client could
// send to forge lines or drive the terminal, are escaped: those of ASCII
// and the C1 ones in their UTF-8 form (C2 80 to C2 9F), which a UTF-8
// terminal takes as controls too.
std::string printable(std::string_view target) {
    std::string shown;
    for (size_t at = 0; at < target.size(); ++at) {
        const auto c = static_cast<unsigned char>(target[at]);
        const auto next = at + 1 < target.size() ? static_cast<unsigned char>(target[at + 1]) : 0;
        if (c == 0xC2 && next >= 0x80 && next <= 0x9F) {
            shown += PercentEscape(c) + PercentEscape(next);
            ++at;
        } else if (c < 0x20 || c == 0x7f) {
            shown += PercentEscape(c);
        } else {
            shown += static_cast<char>(c);
        }
    }
    return shown;
}

// The reason comes from planning the request again, which is cheap and
// reads nothing: the body that carried it may have been compressed by now.
// The library answers some requests without asking the handler (a Range it
// cannot parse, a method it does not know), so a reason belongs to the
// answer only when the plan gives the status that was sent.
void logRequest(const ServedPackage& package, const httplib::Request& request,
                const httplib::Response& response) {
    const std::string bytes =
        request.method == "HEAD" ? "0" : response.get_header_value("Content-Length");
    std::string line = request.method + " " + printable(request.target) + " " +
                       std::to_string(response.status) + " " + (bytes.empty() ? "0" : bytes);
    if (response.status >= 400) {
        if (const ResponsePlan plan = planFor(package, request);
            plan.status == response.status && !plan.reason.empty()) {
            line += " " + plan.reason;
        }
    }
    std::fputs((line + "\n").c_str(), stderr);
}

// The library would also share the port with any other process that asks
// (SO_REUSEPORT), so that a second server on a taken port would seem to
// start and take half the requests; reusing the address alone still lets a
// server start again at once on the port it just left.
void reuseAddressOnly(int fd) {
    const int yes = 1;
    systemCalls.setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

}  // namespace

PackageServer::PackageServer(const ServedPackage& package)
    : package_(package), server_(std::make_unique<httplib::Server>()) {
    server_->new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server_->set_keep_alive_max_count(kRequestsPerConnection);
    // Headers and body leave in separate writes; without this the second
    // waits for the client's delayed acknowledgement, some 40 ms a request.
    server_->set_tcp_nodelay(true);
    // Every request is answered here, before the library's routing, which
    // would match a pattern for each request to find the one handler, and
    // would answer other methods 400 or 404. The library would also apply
    // the Range header again to whatever is answered, and gets unsatisfiable
    // ones wrong; the plan answers ranges itself, so the library is given
    // none. The request is the library's own non-const object, handed over
    // as const.
    server_->set_pre_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
            auto& asked = const_cast<httplib::Request&>(request);
            if (request.method != "GET" && request.method != "HEAD") {
                refuseMethod(asked, response);
            } else {
                asked.ranges.clear();
                answer(package_, request, response);
            }
            return httplib::Server::HandlerResponse::Handled;
        });
    server_->set_logger([this](const httplib::Request& request, const httplib::Response& response) {
        logRequest(package_, request, response);
    });
    server_->set_socket_options(reuseAddressOnly);
}

PackageServer::~PackageServer() = default;

int PackageServer::listenOn(int port) {
    errno = 0;
    const int bound = port == 0 ? server_->bind_to_any_port(kHost)
                                : (server_->bind_to_port(kHost, port) ? port : -1);
    if (bound < 0) {
        const std::string reason = errno != 0 ? std::strerror(errno) : "cannot listen";
        throw EngineFailure(FailureKind::kSystem,
                            std::string(kHost) + ":" + std::to_string(port) + ": " + reason);
    }
    return bound;
}

// The library's stop only ends a server that is already listening, so the
// listening happens on a thread of its own and this one passes the stop on
// once it can take effect.
void PackageServer::run() {
    std::thread listener([this] {
        server_->listen_after_bind();
        listening_ = false;
        stop();
    });
    awaitStop();
    while (listening_ && !server_->is_running()) {
        std::this_thread::yield();
    }
    server_->stop();
    listener.join();
}

void PackageServer::awaitStop() {
    std::unique_lock lock(mutex_);
    stopAsked_.wait(lock, [this] { return stopping_; });
}

void PackageServer::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    stopAsked_.notify_all();
}

}  // namespace vx::engine
