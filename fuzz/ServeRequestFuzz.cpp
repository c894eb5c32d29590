// Arbitrary requests to vxpk serve, as the lines "target", "Range value",
// "If-None-Match value" and "If-Range value", planned against a small package's index. Whatever
// the request, the answer must be one of the statuses the server gives, and
// its bytes must lie inside the contents of the one file that the target
// names in the package: nothing else is ever read. A broken rule aborts.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "engine/preview/ByteRange.h"
#include "engine/preview/PathResolution.h"
#include "engine/preview/RequestPath.h"
#include "engine/preview/ResponsePlan.h"

namespace {

using namespace vx::engine;

const PathIndex& package() {
    static const PathIndex index = [] {
        PathIndex made;
        uint64_t offset = 0;
        for (const char* folder : {"css", "docs", "a b"}) {
            made.add({.path = folder, .isFolder = true, .recordOffset = offset += 100});
        }
        for (const char* file : {"index.html", "app.html", "css/site.css", "docs/index.html",
                                 "a b/%2e.txt", "empty"}) {
            offset += 1000;
            made.add({.path = file,
                      .recordOffset = offset,
                      .contentsOffset = offset + 50,
                      .size = std::string_view(file) == "empty" ? 0 : offset / 100});
        }
        made.setMainFile("app.html");
        return made;
    }();
    return index;
}

void require(bool rule) {
    if (!rule) {
        std::abort();
    }
}

// A valid path has only components that a package can hold.
void checkPath(const RequestPath& decoded) {
    if (!decoded.valid) {
        return;
    }
    const std::string& path = decoded.path;
    require(path.find('\\') == std::string::npos && path.find('\0') == std::string::npos);
    require(path.empty() || (path.front() != '/' && path.back() != '/'));
    const std::string framed = "/" + path + "/";
    for (const char* bad : {"//", "/./", "/../"}) {
        require(path.empty() || framed.find(bad) == std::string::npos);
    }
}

void checkPlan(std::string_view target, const ResponsePlan& plan) {
    const RequestPath decoded = DecodeRequestPath(target);
    checkPath(decoded);
    const bool answered = plan.status == 200 || plan.status == 206;
    require(answered || plan.length == 0);
    require(answered || plan.status == 304 || plan.status == 416 || plan.status == 400 ||
            plan.status == 404 || plan.status == 301 || plan.status == 302);
    // A redirect leads to a path inside the package, never to another host.
    require((plan.status != 301 && plan.status != 302) || DecodeRequestPath(plan.location).valid);
    if (answered) {
        const IndexedRecord* file = ResolvePath(package(), decoded.path).file;
        require(file != nullptr && !file->isFolder);
        require(plan.offset >= file->contentsOffset);
        require(plan.offset + plan.length <= file->contentsOffset + file->size);
    }
}

std::optional<std::string_view> nextLine(std::string_view& rest) {
    if (rest.empty()) {
        return std::nullopt;
    }
    const size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string_view target = nextLine(rest).value_or("");
    const auto range = nextLine(rest);
    const auto ifNoneMatch = nextLine(rest);
    const auto ifRange = nextLine(rest);
    checkPlan(target, PlanResponse(package(), {target, range, ifNoneMatch, ifRange}));
    if (range) {
        const ByteRange part = ParseByteRange(*range, 1000);
        require(part.kind != ByteRange::Kind::kPart ||
                (part.length > 0 && part.first < 1000 && part.first + part.length <= 1000));
    }
    return 0;
}
