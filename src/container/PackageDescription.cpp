#include "container/PackageDescription.h"

#include "runtime/files/BinaryStream.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/text/Val.h"

namespace vx::PackageDescription {

const Fields& wizardDefaults() {
    static const Fields defaults{.name = "My App",
                                 .uid = "com.example.myapp",
                                 .version = "1.0",
                                 .company = "http://www.example.com",
                                 .main = "index.html",
                                 .title = "My App",
                                 .width = "600",
                                 .height = "600"};
    return defaults;
}

Ref<JSONItem> document(const Fields& fields) {
    auto root = New<JSONItem>();
    auto window = New<JSONItem>();
    root->Compact = false;
    window->Compact = false;

    root->Value("name", fields.name);
    root->Value("uid", fields.uid);
    root->Value("version", fields.version);
    root->Value("company", fields.company);
    root->Value("main", Trim(fields.main));

    window->Value("title", fields.title);
    window->Value("width", Val(fields.width));
    window->Value("height", Val(fields.height));

    root->Value("window", Variant(window));
    return root;
}

bool write(const Ref<FolderItem>& file, const String& text) {
    Ref<BinaryStream> stream =
        file->Exists() ? file->OpenAsBinaryFile(true) : file->CreateBinaryFile("Any");
    if (!stream) {
        return false;
    }
    // Cut to the length in characters, then write the bytes from the start: a
    // text with non-ASCII characters runs past the cut, and no tail of an
    // older, longer file survives either way.
    stream->Length(static_cast<uint64_t>(Len(text)));
    stream->Write(text);
    stream->Close();
    return true;
}

}  // namespace vx::PackageDescription
