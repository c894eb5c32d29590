#include "engine/preview/MainFile.h"

#include <exception>

#include "json/JSONItem.h"
#include "runtime/text/TextEncoding.h"

namespace vx::engine {
namespace {

std::string declaredMain(std::string_view packageJson) {
    try {
        const auto document = New<JSONItem>(String(packageJson, Encodings::UTF8));
        const Variant main = document->Lookup("main", Variant());
        const String* text = std::get_if<String>(&main.storage());
        return text != nullptr ? std::string(text->bytes()) : std::string();
    } catch (const std::exception&) {
        // Not JSON, or not an object: the host falls back as if there were
        // no description at all.
        return {};
    }
}

}  // namespace

std::string MainFileFrom(std::string_view packageJson) {
    std::string main = declaredMain(packageJson);
    while (main.starts_with("./") || main.starts_with('/')) {
        main.erase(0, main.starts_with('/') ? 1 : 2);
    }
    return main.empty() ? std::string(kIndexPage) : main;
}

}  // namespace vx::engine
