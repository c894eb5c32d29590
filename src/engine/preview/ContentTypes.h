#pragma once

#include <string_view>

namespace vx::engine {

// The Content-Type a browser needs for a file of the package, from the
// extension of its name (in any case); "application/octet-stream" for the
// rest, so that nothing unknown is ever run as a script or a page.
std::string_view ContentTypeOf(std::string_view path);

}  // namespace vx::engine
