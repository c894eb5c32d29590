#pragma once

#include "json/JSONItem.h"
#include "runtime/core/Ref.h"
#include "runtime/files/FolderItem.h"
#include "runtime/text/String.h"

// The package.json that tells the desktop host who the web app is, what to
// load first and how to open its first window: made from the wizard's field
// texts as they stand, and written over any file of that name.
namespace vx::PackageDescription {

// The texts of the settings page that the description is made of.
struct Fields {
    String name;
    String uid;
    String version;
    String company;
    String main;
    String title;
    String width;
    String height;
};

// What the wizard's fields hold when its window opens; the command line
// takes the same for the fields it is not given.
const Fields& wizardDefaults();

// The document, members in the order the host expects them. Only the main
// file is trimmed; width and height become numbers, 0 when they hold none.
Ref<JSONItem> document(const Fields& fields);

// Puts exactly the bytes of text into file, reusing it when it exists; false
// when it can be neither opened nor made. A failed write on the way goes
// unnoticed, as the older file operations report nothing once open.
bool write(const Ref<FolderItem>& file, const String& text);

}  // namespace vx::PackageDescription
