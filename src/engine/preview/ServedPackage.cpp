#include "engine/preview/ServedPackage.h"

#include <fcntl.h>

#include <cerrno>

#include "engine/core/EngineFailure.h"
#include "engine/preview/EntityTag.h"
#include "engine/preview/MainFile.h"
#include "engine/preview/PackageBytes.h"
#include "engine/reading/PackageInput.h"
#include "runtime/files/BinaryStream.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// A description larger than this is no description the host would read.
constexpr uint64_t kLargestDescription = 1 << 20;

// A second descriptor of the same open file for the record reader, which
// closes what it is given, so that the walk and the answers read the very
// file that was checked, whatever happens to its name meanwhile.
Ref<BinaryStream> streamOf(int fd, const std::string& path) {
    const int copy = systemCalls.fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) {
        failSystem(path, errno);
    }
    auto stream = New<BinaryStream>(copy, false);
    stream->UseIOExceptions = true;
    return stream;
}

}  // namespace

ServedPackage::ServedPackage(const std::string& path) : file_(openPackageFile(path)) {
    const Ref<BinaryStream> stream = streamOf(file_.fd(), path);
    withPackage(path, [&] {
        vxpkRecordReader reader(stream);
        WalkRecords(reader, [this](const PackageEntry& entry) { index_.add(entry); });
    });
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
