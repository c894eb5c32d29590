#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vx::engine {

// The --exclude patterns of pack, read as tar and .gitignore read theirs. A
// pattern without "/" matches an entry's name at any depth; a pattern with a
// "/" matches the entry's whole path below the source folder (a leading "/"
// only anchors it there); a trailing "/" makes it match folders only. "*",
// "?" and "[...]" match within one component, and a component "**" matches
// any number of components, none included. An empty pattern matches nothing.
class ExcludeGlob {
public:
    explicit ExcludeGlob(const std::vector<std::string>& patterns);
    // relativePath has "/" between components.
    bool excludes(std::string_view relativePath, bool isFolder) const;

private:
    struct Pattern {
        std::vector<std::string> components;
        bool folderOnly = false;
    };
    std::vector<Pattern> patterns_;
};

}  // namespace vx::engine
