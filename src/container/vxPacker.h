#pragma once

#include "container/LogReceiver.h"
#include "runtime/core/Ref.h"
#include "runtime/files/BinaryStream.h"
#include "runtime/files/FolderItem.h"
#include "runtime/text/String.h"

// Writes a source folder into one package file: four header strings, then,
// depth-first, a record for every entry whose name does not begin with "."
// or "_", each file's bytes right behind its record. One set of properties
// serves the whole program; the wizard fills them in and calls build.
namespace vx::vxPacker {

// The stream of the package being written; after a failed build it stays open.
inline Ref<BinaryStream> bs;
// The source folder: root of the walk and base of every relative path.
inline Ref<FolderItem> folder;
inline String name;
inline String uid;
// The package file to write.
inline Ref<FolderItem> target;
// Receives the progress lines.
inline Ref<LogReceiver> owner;

// Packs folder into target. Silent when a property is missing or folder is
// no folder; file failures end in a message box and leave the partial file.
void build();
// Writes the record of item and, for a folder, the records of all it holds.
void packFileItem(const Ref<FolderItem>& item);
// The parent field of item: the path of its folder below the source folder,
// with ":" between the components.
String getRelativePath(const Ref<FolderItem>& item);

}  // namespace vx::vxPacker
