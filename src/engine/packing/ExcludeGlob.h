#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vx::engine {

// The --exclude patterns of pack. A pattern is matched against an entry's
// whole path below the source folder, with "/" between components: "*", "?"
// and "[...]" match within one component, and a component "**" matches any
// number of components, none included.
class ExcludeGlob {
public:
    explicit ExcludeGlob(std::vector<std::string> patterns);
    bool excludes(std::string_view relativePath) const;

private:
    std::vector<std::vector<std::string>> patterns_;
};

}  // namespace vx::engine
