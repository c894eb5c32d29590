#include "engine/packing/PackFolder.h"

#include <utility>

#include "container/vxpkFormat.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/TemporaryFile.h"
#include "engine/packing/ExcludeGlob.h"
#include "engine/packing/PackPlan.h"
#include "engine/packing/PackWriter.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/files/FolderItem.h"

namespace vx::engine {
namespace {

void checkHeaderString(const std::string& what, const std::string& text) {
    if (text.size() > vxpkFormat::kMaxStringBytes) {
        failUnacceptable(what, "longer than 255 bytes");
    }
}

}  // namespace

std::vector<std::string> PackFolder(const PackRequest& request, WorkProgress& progress) {
    // From the walk on, so that a signal stops a long walk too, to the
    // rename: a signal removes the temporary package instead of ending the
    // process with it in place.
    const InterruptibleWork interruptible;
    checkHeaderString("--name", request.name);
    checkHeaderString("--uid", request.uid);
    const String folderName =
        New<FolderItem>(String(request.source, nullptr), FolderItem::PathModeNative)->Name();
    checkHeaderString(request.source, std::string(folderName.bytes()));
    PackPlan plan = planPack(request.source, ExcludeGlob(request.excludes), request.packageJson);

    TemporaryFile temporary(request.package);
    progress.begin(plan.items.size(), plan.contentBytes);
    WritePackage(temporary.fd(), request.source, request.package, plan,
                 {.name = String(request.name, nullptr),
                  .uid = String(request.uid, nullptr),
                  .folderName = folderName},
                 progress);
    // A package gets the mode of any new file.
    temporary.commit(0666);
    return std::move(plan.leftOut);
}

}  // namespace vx::engine
