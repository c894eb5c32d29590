#include "engine/preview/RequestPath.h"

#include <cstdio>
#include <optional>

#include "runtime/text/Hex.h"

namespace vx::engine {
namespace {

// One pass over the encoded text: what comes out is never looked at for
// escapes again, so "%252e" stays the three characters "%2e".
std::optional<std::string> percentDecode(std::string_view encoded) {
    std::string decoded;
    decoded.reserve(encoded.size());
    for (size_t at = 0; at < encoded.size(); ++at) {
        if (encoded[at] != '%') {
            decoded += encoded[at];
            continue;
        }
        if (at + 2 >= encoded.size()) {
            return std::nullopt;
        }
        const int high = HexDigitValue(encoded[at + 1]);
        const int low = HexDigitValue(encoded[at + 2]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        decoded += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return decoded;
}

// Why component cannot be part of a path inside the package, or "".
std::string_view componentRefusal(std::string_view component) {
    if (component.empty()) {
        return "an empty path component";
    }
    if (component == "." || component == "..") {
        return "a \".\" or \"..\" path component";
    }
    if (component.find('\\') != std::string_view::npos) {
        return "a backslash in the path";
    }
    if (component.find('\0') != std::string_view::npos) {
        return "a NUL in the path";
    }
    return {};
}

RequestPath refuse(std::string_view reason) {
    return {.valid = false, .path = {}, .folderForm = false, .refusal = std::string(reason)};
}

bool unreserved(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~' || c == '/';
}

}  // namespace

RequestPath DecodeRequestPath(std::string_view target) {
    target = target.substr(0, target.find_first_of("?#"));
    if (!target.starts_with('/')) {
        return refuse("not a path below the root");
    }
    auto decoded = percentDecode(target.substr(1));
    if (!decoded) {
        return refuse("a malformed percent escape");
    }
    std::string_view rest = *decoded;
    const bool folderForm = rest.ends_with('/');
    if (folderForm) {
        rest.remove_suffix(1);
    }
    if (rest.empty() && decoded->empty()) {
        return {.valid = true, .path = {}, .folderForm = true, .refusal = {}};
    }
    for (size_t start = 0; start <= rest.size();) {
        const size_t end = std::min(rest.find('/', start), rest.size());
        if (const auto reason = componentRefusal(rest.substr(start, end - start));
            !reason.empty()) {
            return refuse(reason);
        }
        start = end + 1;
    }
    return {.valid = true, .path = std::string(rest), .folderForm = folderForm, .refusal = {}};
}

std::string EncodeRequestPath(std::string_view path) {
    std::string target = "/";
    for (const unsigned char c : path) {
        if (unreserved(c)) {
            target += static_cast<char>(c);
        } else {
            target += PercentEscape(c);
        }
    }
    return target;
}

std::string PercentEscape(unsigned char byte) {
    char escape[4];
    std::snprintf(escape, sizeof escape, "%%%02X", byte);
    return escape;
}

}  // namespace vx::engine
