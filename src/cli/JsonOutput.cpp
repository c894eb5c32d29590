#include "cli/JsonOutput.h"

#include <cstdio>

namespace vx::cli {

Ref<JSONItem> NewJsonObject() {
    auto item = New<JSONItem>();
    item->EscapeSlashes = false;
    return item;
}

Ref<JSONItem> NewJsonArray() {
    return New<JSONItem>(String("[]"));
}

Ref<JSONItem> HeaderJson(const vxpkFormat::Header& header) {
    auto document = NewJsonObject();
    document->Value("version", String(vxpkFormat::kVersion));
    document->Value("name", header.name);
    document->Value("uid", header.uid);
    document->Value("folderName", header.folderName);
    return document;
}

Variant JsonCount(uint64_t count) {
    return Variant(static_cast<int64_t>(count));
}

void PrintJson(const Ref<JSONItem>& document) {
    const String text = document->ToString();
    std::fwrite(text.bytes().data(), 1, text.bytes().size(), stdout);
    std::fputc('\n', stdout);
}

}  // namespace vx::cli
