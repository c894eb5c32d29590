#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/packing/ExcludeGlob.h"
#include "engine/packing/PackPlan.h"
#include "support/ScratchFolder.h"

namespace vx::engine {
namespace {

using test::ScratchFolder;

class PackPlanLeftOutTest : public ::testing::Test {
protected:
    // A site as web frameworks build it, with what the format leaves out at
    // the top and further down.
    void SetUp() override {
        scratch.writeFile("site/.git/HEAD", "ref");
        scratch.writeFile("site/_next/static/a.js", "a");
        scratch.writeFile("site/_headers", "/* x");
        scratch.writeFile("site/index.html", "<h1/>");
        scratch.writeFile("site/js/app.js", "app");
        scratch.writeFile("site/js/.DS_Store", "");
        scratch.writeFile("site/js/_chunks/c.js", "c");
        scratch.makeLink("site/_shared", "js");
        scratch.makeLink("site/_gone", "nowhere");
    }
    PackPlan plan(const std::vector<std::string>& excludes) {
        return planPack(scratch.path("site"), ExcludeGlob(excludes), std::nullopt);
    }

    ScratchFolder scratch;
};

std::vector<std::string> pathsOf(const PackPlan& plan) {
    std::vector<std::string> paths;
    for (const auto& item : plan.items) {
        paths.push_back(item.relative);
    }
    return paths;
}

TEST_F(PackPlanLeftOutTest, leftOut_namesEachEntryOnceInWalkOrderAndNoneThatIsExcluded) {
    struct Case {
        std::vector<std::string> excludes;
        std::vector<std::string> leftOut;
    };
    const std::vector<Case> cases = {
        // A folder counts once; a symlink counts as what it leads to, a
        // broken one as no folder.
        {{}, {".git/", "_gone", "_headers", "_next/", "_shared/", "js/.DS_Store", "js/_chunks/"}},
        {{"_next", "/_headers", ".git/"}, {"_gone", "_shared/", "js/.DS_Store", "js/_chunks/"}},
        // Folder-only patterns pass over what is no folder.
        {{"_headers/", "_shared/", "_gone/"},
         {".git/", "_gone", "_headers", "_next/", "js/.DS_Store", "js/_chunks/"}},
        // What an excluded folder holds is never walked.
        {{"js"}, {".git/", "_gone", "_headers", "_next/", "_shared/"}},
        {{".*"}, {"_gone", "_headers", "_next/", "_shared/", "js/_chunks/"}},
    };
    for (const auto& [excludes, leftOut] : cases) {
        const PackPlan planned = plan(excludes);
        EXPECT_EQ(planned.leftOut, leftOut) << ::testing::PrintToString(excludes);
    }
}

TEST_F(PackPlanLeftOutTest, leftOut_changesNothingThatIsPacked) {
    const std::vector<std::string> packed = {"index.html", "js", "js/app.js"};
    EXPECT_EQ(pathsOf(plan({})), packed);
    EXPECT_EQ(pathsOf(plan({"_*", ".*"})), packed);
}

TEST_F(PackPlanLeftOutTest, excludedEntries_areNeverLookedAtSoTheyMayBeAnything) {
    scratch.makeLink("site/broken", "nowhere");
    ASSERT_EQ(::mkfifo(scratch.path("site/js/pipe").c_str(), 0644), 0);
    EXPECT_THROW(plan({}), EngineFailure);
    EXPECT_THROW(plan({"broken"}), EngineFailure);
    // A folder-only pattern has to know the entry is no folder.
    EXPECT_THROW(plan({"broken/", "pipe"}), EngineFailure);
    EXPECT_EQ(pathsOf(plan({"broken", "pipe"})),
              (std::vector<std::string>{"index.html", "js", "js/app.js"}));
}

}  // namespace
}  // namespace vx::engine
