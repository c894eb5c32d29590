#pragma once

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

namespace vx {

class Picture;

// A kind of file the application knows: its display name, extensions and
// platform codes. Converting one to a String registers it with the toolkit and
// gives the name by which a dialog's filter asks for it. Changing any property
// takes the type out of the registry first, so the toolkit always hears of the
// name it was registered under.
class FileType : public Object {
public:
    FileType() = default;
    FileType(const FileType&) = delete;
    FileType& operator=(const FileType&) = delete;
    ~FileType() override;

    String ConformsTo() const { return mConformsTo; }
    void ConformsTo(const String& value);
    String Extensions() const { return mExtension; }
    void Extensions(const String& value);
    bool Imported() const { return mImported; }
    void Imported(bool value);
    String MacCreator() const { return mMacCreator; }
    void MacCreator(const String& value);
    String MacType() const { return mMacType; }
    void MacType(const String& value);
    String MimeType() const { return mMimeType; }
    void MimeType(const String& value);
    String Name() const { return mName; }
    void Name(const String& value);
    String UTI() const { return mUTI; }
    void UTI(const String& value);
    // A file type carries no picture of its own.
    Ref<Picture> Icon() const { return nullptr; }

    // Registers the type and gives its Name.
    String Operator_Convert();
    // Filters of several types: the names joined by one ";". Both sides that
    // are types get registered.
    String Operator_Add(const Ref<FileType>& right);
    String Operator_Add(const String& right);
    String Operator_AddRight(const Ref<FileType>& left);
    String Operator_AddRight(const String& left);

    void Register();
    void Deregister();
    bool Registered() const { return mRegistered; }

private:
    String mConformsTo;
    String mExtension;
    bool mImported = false;
    String mMacCreator;
    String mMacType;
    String mMimeType;
    String mName;
    bool mRegistered = false;
    String mUTI;
};

}  // namespace vx
