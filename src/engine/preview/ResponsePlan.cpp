#include "engine/preview/ResponsePlan.h"

#include <algorithm>

#include "engine/preview/ByteRange.h"
#include "engine/preview/ContentTypes.h"
#include "engine/preview/EntityTag.h"
#include "engine/preview/PathResolution.h"
#include "engine/preview/RequestPath.h"

namespace vx::engine {
namespace {

ResponsePlan refusal(int status, std::string reason) {
    ResponsePlan plan;
    plan.status = status;
    plan.reason = std::move(reason);
    return plan;
}

// The file's bytes, all or the part the Range header asks for.
void applyRange(ResponsePlan& plan, const IndexedRecord& file,
                const std::optional<std::string_view>& header) {
    const ByteRange range = header ? ParseByteRange(*header, file.size) : ByteRange{};
    const std::string size = std::to_string(file.size);
    switch (range.kind) {
        case ByteRange::Kind::kWhole:
            plan.offset = file.contentsOffset;
            plan.length = file.size;
            return;
        case ByteRange::Kind::kPart:
            plan.status = 206;
            plan.offset = file.contentsOffset + range.first;
            plan.length = range.length;
            plan.contentRange = "bytes " + std::to_string(range.first) + "-" +
                                std::to_string(range.first + range.length - 1) + "/" + size;
            return;
        case ByteRange::Kind::kUnsatisfiable:
            plan.status = 416;
            plan.contentRange = "bytes */" + size;
            return;
    }
}

ResponsePlan redirect(int status, std::string location) {
    ResponsePlan plan;
    plan.status = status;
    plan.location = std::move(location);
    return plan;
}

// The target with "/" after its path, its query kept.
std::string withFolderSlash(std::string_view target) {
    const size_t end = std::min(target.find_first_of("?#"), target.size());
    return std::string(target.substr(0, end)) + "/" + std::string(target.substr(end));
}

}  // namespace

ResponsePlan PlanResponse(const PathIndex& index, const RequestFacts& request) {
    const RequestPath asked = DecodeRequestPath(request.target);
    if (!asked.valid) {
        return refusal(400, "refused: " + asked.refusal);
    }
    const PathResolution found = ResolvePath(index, asked.path);
    if (found.file == nullptr) {
        return refusal(404, found.reason);
    }
    if (asked.path.empty() && found.path.find('/') != std::string::npos) {
        return redirect(302, EncodeRequestPath(found.path));
    }
    if (!asked.folderForm && found.path != asked.path) {
        return redirect(301, withFolderSlash(request.target));
    }
    ResponsePlan plan;
    plan.etag = EntityTagOf(index.identity(), *found.file);
    if (request.ifNoneMatch && NoneMatchNames(*request.ifNoneMatch, plan.etag)) {
        plan.status = 304;
        return plan;
    }
    plan.contentType = ContentTypeOf(found.path);
    // Strong comparison: a weak tag, or a date (no Last-Modified is ever
    // sent), cannot vouch that the part asked for fits the copy held.
    const bool rangeHolds = !request.ifRange || *request.ifRange == plan.etag;
    applyRange(plan, *found.file, rangeHolds ? request.range : std::nullopt);
    return plan;
}

}  // namespace vx::engine
