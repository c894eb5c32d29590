#include "engine/extraction/ExtractPackage.h"

#include <cerrno>

#include "container/vxpkTreeCheck.h"
#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/extraction/FileMaker.h"
#include "engine/extraction/SafeExtraction.h"
#include "engine/reading/PackageInput.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {

void ExtractPackage(const std::string& package, const std::string& destination,
                    WorkProgress& progress) {
    // Until the tree is in place: a signal removes the temporary folder
    // instead of ending the process with it beside the destination.
    const InterruptibleWork interruptible;
    const int fd = openPackageFile(package);
    const auto stream = New<BinaryStream>(fd, false);
    stream->UseIOExceptions = true;
    // The files' contents are read on the maker's threads through a second
    // descriptor of the same open file: they read the very file the reader
    // checks, at offsets of their own.
    const OwnedDescriptor contents(systemCalls.dup(fd));
    if (contents.fd() < 0) {
        failSystem(package, errno);
    }
    vxpkRecordReader reader = withPackage(package, [&] { return vxpkRecordReader(stream); });
    SafeExtraction extraction(destination);
    progress.begin(0, reader.packageSize());
    FileMaker maker(extraction, contents.fd(), package, destination);
    withPackage(package, [&] {
        // Progress counts package bytes, so that it ends at 100% with the file.
        uint64_t done = 0;
        vxpkTreeCheck tree;
        while (const auto entry = reader.next()) {
            StopIfInterrupted();
            std::string path = tree.admit(*entry);
            if (entry->isFolder()) {
                extraction.makeFolder(path);
            } else {
                ItemPlace place = extraction.placeOf(path);
                maker.make(std::move(place), std::move(path), entry->contentsOffset,
                           entry->contentsBytes());
            }
            const uint64_t end = entry->contentsOffset + entry->contentsBytes();
            progress.advance(end - done);
            done = end;
        }
    });
    maker.finish();
    extraction.commit();
}

}  // namespace vx::engine
