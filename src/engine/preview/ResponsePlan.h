#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/preview/PathIndex.h"

namespace vx::engine {

// What the server was asked: the raw request target, before any decoding,
// and the headers that change the answer.
struct RequestFacts {
    std::string_view target;
    std::optional<std::string_view> range;
    std::optional<std::string_view> ifNoneMatch;
    // The Range applies only while this names the file's current tag.
    std::optional<std::string_view> ifRange;
};

// The whole answer to one GET or HEAD, decided without reading a byte of
// contents: the status and headers, and which bytes of the package make the
// body.
struct ResponsePlan {
    int status = 200;
    // The type of the file that answers; empty when none does.
    std::string_view contentType;
    // For 200, 206 and 304.
    std::string etag;
    // For 206 ("bytes A-B/SIZE") and 416 ("bytes */SIZE").
    std::string contentRange;
    // For 301 and 302: the target that answers instead.
    std::string location;
    // The body: length bytes of the package from offset.
    uint64_t offset = 0;
    uint64_t length = 0;
    // For 400 and 404: why, for standard error and as a short text body.
    std::string reason;
};

// Decodes and resolves the target in the index, then applies If-None-Match,
// and Range unless If-Range names another version, to the file found. A page must be answered at
// its own URL for its relative links to work: a folder asked for without its "/" is sent there
// (301), and "/" is sent to a main file below the root (302); one at the
// root answers "/" itself. Nothing outside the index can be named, so
// nothing outside the package can be read.
ResponsePlan PlanResponse(const PathIndex& index, const RequestFacts& request);

}  // namespace vx::engine
