#include "cli/ExtractPackage.h"

#include "cli/CliFailure.h"
#include "cli/PackageInput.h"
#include "cli/Progress.h"
#include "cli/SafeExtraction.h"
#include "container/vxpkTreeCheck.h"
#include "runtime/core/RuntimeException.h"

namespace vx::cli {
namespace {

void extractFile(vxpkRecordReader& reader, SafeExtraction& extraction, const std::string& path,
                 const std::string& destination) {
    const auto out = New<BinaryStream>(extraction.makeFile(path), true);
    out->UseIOExceptions = true;
    try {
        reader.copyContents(*out);
        out->Close();
    } catch (const IOException& failure) {
        throw CliFailure(kSystem,
                         destination + "/" + path + ": " + describeFileError(failure.ErrorNumber));
    }
}

}  // namespace

void ExtractPackage(const std::string& package, const std::string& destination, bool quiet) {
    vxpkRecordReader reader = openPackage(package);
    SafeExtraction extraction(destination);
    Progress progress(quiet, 0, reader.packageSize());
    withPackage(package, [&] {
        // Progress counts package bytes, so that it ends at 100% with the file.
        uint64_t done = 0;
        vxpkTreeCheck tree;
        while (const auto entry = reader.next()) {
            const std::string path = tree.admit(*entry);
            if (entry->isFolder()) {
                extraction.makeFolder(path);
            } else {
                extractFile(reader, extraction, path, destination);
            }
            const uint64_t end = entry->contentsOffset + entry->contentsBytes();
            progress.advance(end - done);
            done = end;
        }
    });
    extraction.commit();
}

}  // namespace vx::cli
