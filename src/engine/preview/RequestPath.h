#pragma once

#include <string>
#include <string_view>

namespace vx::engine {

// The target of an HTTP request turned into a path below the package's root,
// decoded exactly once, or the reason it can name nothing inside the package.
struct RequestPath {
    bool valid = false;
    // Components joined by "/", no leading or trailing "/"; "" for the root.
    std::string path;
    // Whether the decoded path ended with "/", as a folder's own URL does.
    bool folderForm = false;
    // Why the target was refused, when it was.
    std::string refusal;
};

// Takes the path part of target (before "?" or "#"), which must start with
// "/", percent-decodes it once and refuses every component that could lead
// out of the tree or that no package can hold: "", ".", "..", a backslash or
// a NUL. One trailing "/" is allowed, as folders are asked for that way.
RequestPath DecodeRequestPath(std::string_view target);

// The target that names path, a path below the package's root: "/" and the
// path with every byte but letters, digits, "-._~" and "/" percent-encoded,
// so that DecodeRequestPath gives path back.
std::string EncodeRequestPath(std::string_view path);

// "%" and the byte's two upper-case hex digits.
std::string PercentEscape(unsigned char byte);

}  // namespace vx::engine
