#include "engine/preview/ContentTypes.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace vx::engine {
namespace {

// Text types carry their encoding, as web apps are written in UTF-8 and a
// browser would guess otherwise.
using TypeOfExtension = std::pair<std::string_view, std::string_view>;

constexpr std::array<TypeOfExtension, 18> kTypes{{
    {"html", "text/html; charset=utf-8"},
    {"htm", "text/html; charset=utf-8"},
    {"css", "text/css; charset=utf-8"},
    {"js", "text/javascript; charset=utf-8"},
    {"mjs", "text/javascript; charset=utf-8"},
    {"json", "application/json"},
    {"map", "application/json"},
    {"txt", "text/plain; charset=utf-8"},
    {"svg", "image/svg+xml"},
    {"png", "image/png"},
    {"jpg", "image/jpeg"},
    {"jpeg", "image/jpeg"},
    {"gif", "image/gif"},
    {"webp", "image/webp"},
    {"ico", "image/x-icon"},
    {"wasm", "application/wasm"},
    {"woff", "font/woff"},
    {"woff2", "font/woff2"},
}};

std::string lowerExtension(std::string_view path) {
    const size_t slash = path.rfind('/');
    const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const size_t dot = name.rfind('.');
    std::string extension(dot == std::string_view::npos ? "" : name.substr(dot + 1));
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return extension;
}

}  // namespace

std::string_view ContentTypeOf(std::string_view path) {
    const std::string extension = lowerExtension(path);
    const auto* found =
        std::ranges::find(kTypes, std::string_view(extension), &TypeOfExtension::first);
    return found != kTypes.end() ? found->second : "application/octet-stream";
}

}  // namespace vx::engine
