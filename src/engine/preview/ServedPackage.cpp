#include "engine/preview/ServedPackage.h"

#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "engine/preview/EntityTag.h"
#include "engine/preview/MainFile.h"
#include "engine/reading/PackageBytes.h"
#include "engine/reading/PackageInput.h"
#include "engine/reading/PackageWalk.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// A description larger than this is no description the host would read.
constexpr uint64_t kLargestDescription = 1 << 20;

}  // namespace

ServedPackage::ServedPackage(const std::string& path) : file_(openPackageFile(path)) {
    WalkOpenPackage(path, file_.fd(), [this](const PackageEntry& entry) { index_.add(entry); });
    readMainFile(path);
    // Once, from the descriptor held: the name may lead elsewhere by now.
    struct stat info;
    if (systemCalls.fstat(file_.fd(), &info) != 0) {
        failSystem(path, errno);
    }
    index_.setIdentity(PackageIdentityOf(info));
}

void ServedPackage::readMainFile(const std::string& path) {
    const IndexedRecord* description = index_.find("package.json");
    if (description == nullptr || description->isFolder ||
        description->size > kLargestDescription) {
        return;
    }
    std::string text;
    if (!ReadPackageBytes(file_.fd(), description->contentsOffset, description->size, text)) {
        failSystem(path, errno);
    }
    index_.setMainFile(MainFileFrom(text));
}

}  // namespace vx::engine
