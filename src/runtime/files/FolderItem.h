#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

namespace vx {

class BinaryStream;

// A path in the file system, whether or not anything exists there. Its
// operations never raise on a failure of the platform: they leave the code of
// the failure in LastErrorCode and answer false, 0, nil or nothing.
//
// Symbolic links are followed, except that a link leading back into one of
// its own ancestor folders answers as an empty file, so no walk of the tree
// can go round forever.
class FolderItem : public Object {
public:
    // The only path mode the program uses: an absolute path in the platform's
    // own syntax.
    static constexpr int64_t PathModeNative = 3;

    // A doubled separator names the same object as a single one, and a
    // trailing separator is dropped. A relative path is taken from the
    // current folder. Other modes raise UnsupportedFormatException, and so
    // does a path holding a NUL byte, which no system call could name.
    FolderItem(const String& path, int64_t pathMode);

private:
    struct FolderHandle;
    // Lets make_shared reach the constructor that only this class may call.
    struct Passkey {
        explicit Passkey() = default;
    };

public:
    FolderItem(Passkey, String normalisedPath, std::shared_ptr<const FolderHandle> parent);

    // The object named name inside this folder, which need not exist; nil for
    // a name that cannot be one entry (empty, ".", "..", or holding "/" or NUL).
    Ref<FolderItem> Child(const String& name) const;
    // The containing folder; nil for the root.
    Ref<FolderItem> Parent() const;

    // Entries of the directory, "." and ".." left out, sorted by the bytes of
    // their names. The listing is read once per object and then kept, so the
    // same index names the same entry however often it is asked; a folder
    // that cannot be listed counts 0 and is asked again next time. An entry
    // stays bound to the folder that was listed, even if that is renamed.
    int64_t Count();
    // 1-based; an index outside 1 to Count raises OutOfBoundsException. Asked
    // for the same index again before the next Count, it gives the same object.
    Ref<FolderItem> Item(int64_t index);

    bool Directory() const;
    bool Exists() const;
    // Whether this process could read or write the object now, as the
    // platform decides for the effective user, not what the mode bits say.
    bool IsReadable() const;
    bool IsWriteable() const;
    int64_t LastErrorCode() const { return lastErrorCode_; }
    // Size of a file in bytes; 0 for a directory and for what does not exist.
    uint64_t Length() const;
    String Name() const;
    // Never ends in a separator, except for the root "/".
    String NativePath() const;

    // Each sets LastErrorCode (0 on success) and raises nothing.
    void CreateAsFolder();
    // Removes a file, a link (not what it leads to) or an empty folder.
    void Delete();

    // The older way to open files: nil on failure, with the reason in
    // LastErrorCode, and a stream whose UseIOExceptions is false. Newer code
    // uses BinaryStream::Create and BinaryStream::Open instead. The file type
    // name selects nothing on this platform.
    Ref<BinaryStream> CreateBinaryFile(const String& fileTypeName);
    Ref<BinaryStream> OpenAsBinaryFile(bool readWrite);

    // Opens the object with the desktop's default application.
    void Launch(bool activate) const;

private:
    // Where a system call finds this object: a folder and a name in it.
    struct Location {
        int folder;
        const char* name;
    };

    Location location() const;
    bool readListing();
    Ref<BinaryStream> openStream(int flags);

    String path_;
    // The folder this entry was listed from, nil for an object made from a path.
    std::shared_ptr<const FolderHandle> parent_;
    int64_t lastErrorCode_ = 0;
    std::optional<std::vector<std::string>> entryNames_;
    // This folder, open since it was listed, for the entries Item gives out.
    std::shared_ptr<const FolderHandle> handle_;
    // The entry Item gave last: a loop asks for one entry several times in a
    // pass, and Count, at the head of the next pass, lets it go.
    Ref<FolderItem> lastItem_;
    int64_t lastIndex_ = 0;
};

}  // namespace vx
