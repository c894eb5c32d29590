#include "container/vxPacker.h"

#include "container/vxpkFormat.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/files/FileErrorCode.h"
#include "runtime/services/UIServices.h"
#include "runtime/text/StringFunctions.h"

namespace vx::vxPacker {
namespace {

// A parent path holds at most 255 bytes, so no tree deeper than about 128
// levels can be packed faithfully; twice that is allowed, and the walk stops
// there, long before the stack would run out.
constexpr int kMaxWalkDepth = 256;
int walkDepth = 0;

class WalkDepthGuard {
public:
    WalkDepthGuard() {
        if (walkDepth == kMaxWalkDepth) {
            throw StackOverflowException();
        }
        ++walkDepth;
    }
    ~WalkDepthGuard() { --walkDepth; }
    WalkDepthGuard(const WalkDepthGuard&) = delete;
    WalkDepthGuard& operator=(const WalkDepthGuard&) = delete;
};

// Names beginning with "." or "_" stay out of the package, with all they hold.
bool isLeftOut(const Ref<FolderItem>& parent, int64_t index) {
    return Left(parent->Item(index)->Name(), 1) == "." ||
           Left(parent->Item(index)->Name(), 1) == "_";
}

// One pass per entry, with Count and Item asked afresh every time, and the
// yield point after every entry, a skipped one included.
void packEntries(const Ref<FolderItem>& parent) {
    for (int64_t i = 1; i <= parent->Count(); ++i) {
        if (!isLeftOut(parent, i)) {
            packFileItem(parent->Item(i));
        }
        RuntimeBackgroundTask();
    }
}

void reportFailure(const IOException& failure) {
    if (failure.ErrorNumber == FileInUseErrorCode) {
        MsgBox("ERROR: Destination file is in use");
    } else if (failure.ErrorNumber == AccessDeniedErrorCode) {
        MsgBox("ERROR: Access dinied while creating destination.");
    } else {
        MsgBox("Error creating app file.");
    }
}

}  // namespace

void build() {
    try {
        if (target == nullptr || folder == nullptr) {
            return;
        }
        if (!folder->Directory()) {
            return;
        }
        if (target->Exists()) {
            if (!target->IsWriteable()) {
                MsgBox("Destination file exists and is not writable.");
                return;
            }
            target->Delete();
        }
        owner->log("Build using file version 001");
        owner->log("Source: " + folder->NativePath());
        owner->log("Target: " + target->NativePath());

        bs = BinaryStream::Create(target, true);
        vxpkFormat::prepare(*bs);
        vxpkFormat::writeHeader(*bs, {.name = name, .uid = uid, .folderName = folder->Name()});
        // A folder object keeps the listing it read first, and the one the
        // wizard picked may have been walked by an earlier build: list the
        // source afresh so that files added or removed since then count.
        packEntries(New<FolderItem>(folder->NativePath(), FolderItem::PathModeNative));
        // The end of the file is the end of the package: no trailer follows.
        bs->Close();
        owner->log("BUILD DONE...");
    } catch (const IOException& failure) {
        // The stream stays open and the partial package on disk, as they are.
        reportFailure(failure);
    }
}

void packFileItem(const Ref<FolderItem>& item) {
    const WalkDepthGuard depth;
    const String rel = getRelativePath(item);
    const bool isFolder = item->Directory();
    vxpkFormat::writeString(*bs, item->Name());
    vxpkFormat::writeString(*bs, rel);
    // The line comes before the type byte, so a write that fails there still
    // leaves the item named in the log.
    owner->log((isFolder ? "Processing Folder: " : "Copying: ") + item->Name());
    uint64_t length = 0;
    if (item->IsReadable()) {
        length = item->Length();
    }
    // Only the low 32 bits fit the field; the contents below are always whole.
    vxpkFormat::writeTypeAndLength(*bs, isFolder ? vxpkFormat::kFolderType : vxpkFormat::kFileType,
                                   static_cast<int32_t>(static_cast<uint32_t>(length)));

    if (isFolder) {
        packEntries(item);
        return;
    }
    if (length == 0) {
        return;
    }
    const Ref<BinaryStream> src = BinaryStream::Open(item, false);
    // The count is what the open file holds now, not the length written above.
    bs->CopyFrom(*src, src->Length());
    src->Close();
}

String getRelativePath(const Ref<FolderItem>& item) {
    const String root = folder->NativePath();
    const String separator = "/";
    String rel = Replace(item->NativePath(), root, "");
    if (Left(rel, 1) == separator) {
        rel = Mid(rel, 2);
    }
    rel = Mid(rel, 1, Len(rel) - Len(item->Name()));
    if (Right(rel, 1) == separator) {
        rel = Left(rel, Len(rel) - 1);
    }
    return ReplaceAll(rel, separator, vxpkFormat::kSeparator);
}

}  // namespace vx::vxPacker
