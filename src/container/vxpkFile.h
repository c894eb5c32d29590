#pragma once

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/files/BinaryStream.h"
#include "runtime/files/FolderItem.h"
#include "runtime/text/String.h"
#include "runtime/values/Array.h"

namespace vx {

// An opened package: open re-creates a package's tree in a new folder of the
// temporary folder, in one pass over the file, and keeps what its header says.
class vxpkFile : public Object {
public:
    // Extracts source into a new folder named after the present moment and a
    // random number; nil if that failed, after telling the user where there
    // was something to tell. What was written so far stays on disk.
    static Ref<vxpkFile> open(const Ref<FolderItem>& source);

    // Reads fileSource into destination, which must be an existing folder;
    // true when the whole package was written there. A wrong version string
    // fails silently; a failed read ends in a message box.
    virtual bool extract(const Ref<FolderItem>& destination);
    // Reads the header behind the version string, then re-creates each record
    // in folder until the end of the file; false, after a message, at the first
    // item that cannot be made. Read failures are left to the caller.
    virtual bool readVersion1(const Ref<BinaryStream>& stream);

    Ref<FolderItem> fileSource;
    // Declared with the class and never filled: the reader keeps no listing.
    Ref<Array<String>> items = CreateArray<String>(-1);
    String name;
    String uid;
    // Likewise never filled.
    Ref<Array<String>> data = CreateArray<String>(-1);
    // Kept for the caller only; the extraction makes no folder of this name.
    String folderName;
    Ref<FolderItem> folder;
    String version;

private:
    // Makes the item of one record below folder and, for a file, moves its
    // contents out of the stream.
    bool recreateItem(BinaryStream& stream, const String& itemName, const String& parent,
                      int64_t type, int64_t length);
};

}  // namespace vx
