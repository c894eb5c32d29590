#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/packing/ExcludeGlob.h"

namespace vx::engine {
namespace {

struct Case {
    std::string pattern;
    std::string path;
    bool isFolder;
    bool excluded;
};

// The conventions of tar's --exclude and of .gitignore, case by case.
const std::vector<Case> kCases = {
    // Without "/": a name at any depth, never part of one.
    {"*.map", "app.js.map", false, true},
    {"*.map", "js/app.js.map", false, true},
    {"*.map", "js/lib/z.js.map", false, true},
    {"*.map", "js/app.js", false, false},
    {"*.map", "maps/x.mapped", false, false},
    {"node_modules", "node_modules", true, true},
    {"node_modules", "a/b/node_modules", true, true},
    {"node_modules", "a/node_modules_old", true, false},
    {"?eta", "Zeta", false, true},
    {"?eta", "eta", false, false},
    {"[a-b].css", "css/b.css", false, true},
    {"[a-b].css", "css/c.css", false, false},
    // With a "/": the path from the source's top, whole.
    {"css/*.css", "css/a.css", false, true},
    {"css/*.css", "old/css/a.css", false, false},
    {"css/*.css", "css/img/a.css", false, false},
    {"/index.html", "index.html", false, true},
    {"/index.html", "docs/index.html", false, false},
    {"docs/index.html", "docs/index.html", false, true},
    {"a//b", "a/b", false, true},
    // A trailing "/": folders only, with or without a "/" before it.
    {"build/", "build", true, true},
    {"build/", "build", false, false},
    {"build/", "src/build", true, true},
    {"src/build/", "src/build", true, true},
    {"src/build/", "src/build", false, false},
    {"/build/", "lib/build", true, false},
    // "**": any number of components, none included.
    {"**/empty", "empty", false, true},
    {"**/empty", "css/img/empty", false, true},
    {"css/**/x", "css/x", false, true},
    {"css/**/x", "css/a/b/x", false, true},
    {"css/**/x", "js/a/x", false, false},
    {"css/**", "css/a/b", false, true},
    {"**/tmp/", "a/tmp", true, true},
    {"**/tmp/", "a/tmp", false, false},
    // A pattern of nothing leaves nothing out.
    {"", "a", false, false},
    {"/", "a", true, false},
};

TEST(ExcludeGlobTest, excludes_followsTheConventionsOfTarAndGitignore) {
    for (const auto& [pattern, path, isFolder, excluded] : kCases) {
        EXPECT_EQ(ExcludeGlob({pattern}).excludes(path, isFolder), excluded)
            << "pattern \"" << pattern << "\", " << (isFolder ? "folder " : "file ") << path;
    }
}

TEST(ExcludeGlobTest, excludes_withSeveralPatternsLeavesOutWhatAnyOfThemMatches) {
    const ExcludeGlob glob({"*.map", "build/", "/docs/x"});
    EXPECT_TRUE(glob.excludes("a/b.map", false));
    EXPECT_TRUE(glob.excludes("a/build", true));
    EXPECT_TRUE(glob.excludes("docs/x", false));
    EXPECT_FALSE(glob.excludes("a/build", false));
    EXPECT_FALSE(glob.excludes("a/docs/x", false));
    EXPECT_FALSE(ExcludeGlob({}).excludes("a", false));
}

}  // namespace
}  // namespace vx::engine
