#include "app/FileType.h"

#include "runtime/text/StringFunctions.h"
#include "runtime/ui/FileTypeRegistry.h"

namespace vx {

namespace {
// A String that already begins or ends with ";" joins with one separator, not two.
String Joined(const String& left, const String& right) {
    return ReplaceAll(left + ";" + right, ";;", ";");
}
}  // namespace

FileType::~FileType() {
    Deregister();
}

void FileType::ConformsTo(const String& value) {
    Deregister();
    mConformsTo = value;
}

void FileType::Extensions(const String& value) {
    Deregister();
    mExtension = value;
}

void FileType::Imported(bool value) {
    Deregister();
    mImported = value;
}

void FileType::MacCreator(const String& value) {
    Deregister();
    mMacCreator = value;
}

void FileType::MacType(const String& value) {
    Deregister();
    mMacType = value;
}

void FileType::MimeType(const String& value) {
    Deregister();
    mMimeType = value;
}

void FileType::Name(const String& value) {
    Deregister();
    mName = value;
}

void FileType::UTI(const String& value) {
    Deregister();
    mUTI = value;
}

String FileType::Operator_Convert() {
    Register();
    return Name();
}

String FileType::Operator_Add(const Ref<FileType>& right) {
    Register();
    right->Register();
    return Joined(Name(), right->Name());
}

String FileType::Operator_Add(const String& right) {
    Register();
    return Joined(Name(), right);
}

String FileType::Operator_AddRight(const Ref<FileType>& left) {
    Register();
    left->Register();
    return Joined(left->Name(), Name());
}

String FileType::Operator_AddRight(const String& left) {
    Register();
    return Joined(left, Name());
}

void FileType::Register() {
    if (mRegistered) {
        return;
    }
    // The MIME type, the parent type and Imported are kept, not passed on.
    RuntimeRegisterFileType(mName, mMacCreator, mMacType, mExtension, UTI());
    mRegistered = true;
}

void FileType::Deregister() {
    if (!mRegistered) {
        return;
    }
    RuntimeDeregisterFileType(mName);
    mRegistered = false;
}

}  // namespace vx
