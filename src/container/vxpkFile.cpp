#include "container/vxpkFile.h"

#include <algorithm>

#include "container/vxpkFormat.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/files/SpecialFolder.h"
#include "runtime/services/UIServices.h"
#include "runtime/text/Hex.h"
#include "runtime/text/NumberFormat.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/values/Date.h"
#include "runtime/values/Dictionary.h"
#include "runtime/values/Random.h"
#include "runtime/values/Variant.h"

namespace vx {
namespace {

// The present second in hexadecimal, then a number from 100 to 400: two
// extractions in one second still differ, most of the time.
String temporaryFolderName() {
    const String time = Hex(New<Date>()->TotalSeconds());
    return time + Str(New<Random>()->InRange(100, 400), "");
}

// Where the record's item goes: its parent path turned back into folders of
// this platform, below the extraction folder. Neither part is checked, so a
// ".." leads where it leads.
String itemPath(const Ref<FolderItem>& folder, const String& parent, const String& itemName) {
    const String separator = "/";
    String path = folder->NativePath() + separator;
    if (Len(parent) > 0) {
        path = path + ReplaceAll(parent, vxpkFormat::kSeparator, separator) + separator;
    }
    return path + itemName;
}

// The count of contents bytes that the stream can still give for a length
// field: none for a negative one, and no more than the file holds.
uint64_t contentsAvailable(BinaryStream& stream, int64_t length) {
    if (length <= 0) {
        return 0;
    }
    const uint64_t position = stream.Position();
    const uint64_t end = std::max(stream.Length(), position);
    return std::min(static_cast<uint64_t>(length), end - position);
}

// A fresh entry for every record, filled as the record is read. Nothing
// reads it: the item is made from the parsed fields themselves.
Ref<Dictionary> newEntry() {
    auto entry = New<Dictionary>();
    entry->Value("name", StringToVariant(""));
    entry->Value("parent", StringToVariant(""));
    entry->Value("key", StringToVariant(""));
    entry->Value("type", Int64ToVariant(1));
    entry->Value("file", Variant());
    return entry;
}

void reportExtractFailure() {
    MsgBox("Error: Unable to extract vxpk contents.");
}

}  // namespace

Ref<vxpkFile> vxpkFile::open(const Ref<FolderItem>& source) {
    auto file = New<vxpkFile>();
    file->fileSource = source;
    const Ref<FolderItem> destination = SpecialFolder::Temporary()->Child(temporaryFolderName());
    if (destination == nullptr) {
        MsgBox("Unable to extract file...");
        return nullptr;
    }
    // A folder of that name may be there already; then it is shared.
    destination->CreateAsFolder();
    if (!destination->Exists()) {
        MsgBox("Unable to extract file...");
        return nullptr;
    }
    return file->extract(destination) ? file : nullptr;
}

bool vxpkFile::extract(const Ref<FolderItem>& destination) {
    try {
        if (destination == nullptr || !destination->Directory()) {
            return false;
        }
        folder = destination;
        const Ref<BinaryStream> stream = BinaryStream::Open(fileSource, false);
        vxpkFormat::prepare(*stream);
        version = vxpkFormat::readString(*stream);
        if (RuntimeStringCompare(version, vxpkFormat::kVersion) != 0) {
            return false;
        }
        const bool result = readVersion1(stream);
        stream->Close();
        return result;
    } catch (const IOException&) {
        reportExtractFailure();
    } catch (const TypeMismatchException&) {
        reportExtractFailure();
    } catch (const NilObjectException&) {
        reportExtractFailure();
    }
    return false;
}

bool vxpkFile::readVersion1(const Ref<BinaryStream>& stream) {
    const vxpkFormat::Header header = vxpkFormat::readHeader(*stream);
    name = header.name;
    uid = header.uid;
    folderName = header.folderName;
    // The end of the file is the only end of a package; a record cut short
    // runs into it and gives what the reads give there.
    while (!stream->EOF_()) {
        const Ref<Dictionary> entry = newEntry();
        const vxpkFormat::Record record = vxpkFormat::readRecord(*stream);
        entry->Value("name", StringToVariant(record.name));
        entry->Value("parent", StringToVariant(record.parent));
        entry->Value("type", Int64ToVariant(record.type));
        if (!recreateItem(*stream, record.name, record.parent, record.type, record.length)) {
            return false;
        }
        RuntimeBackgroundTask();
    }
    return true;
}

bool vxpkFile::recreateItem(BinaryStream& stream, const String& itemName, const String& parent,
                            int64_t type, int64_t length) {
    const String path = itemPath(folder, parent, itemName);
    const auto item = New<FolderItem>(path, FolderItem::PathModeNative);
    if (item == nullptr) {
        MsgBox("Unable to create " + path);
        return false;
    }
    if (type == vxpkFormat::kFolderType) {
        // A folder that is there already, or cannot be made, is no reason to
        // stop: the records inside it tell for themselves.
        item->CreateAsFolder();
        return true;
    }
    // The contents go from the package to the file in bounded blocks, never
    // whole in memory, so a length field that promises gigabytes costs no
    // more than the bytes the package really holds.
    const uint64_t start = stream.Position();
    const uint64_t count = contentsAvailable(stream, length);
    const Ref<BinaryStream> out =
        item->Exists() ? item->OpenAsBinaryFile(true) : item->CreateBinaryFile("Any");
    if (out == nullptr) {
        MsgBox("Unable to write document.");
        return false;
    }
    // Cuts what is left of an older, longer file of the same name.
    out->Length(count);
    out->CopyFrom(stream, count);
    // A failed read of the package is the package's failure, as any other
    // read; a failed write of the file goes unreported, as the stream from
    // the older file operations reports none.
    if (stream.LastErrorCode() != 0) {
        throw MakeException<IOException>(stream.LastErrorCode());
    }
    // The next record starts behind all the contents, however far the
    // write got.
    stream.Position(start + count);
    out->Close();
    return true;
}

}  // namespace vx
