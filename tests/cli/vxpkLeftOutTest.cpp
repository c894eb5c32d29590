#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VxpkRun.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

// The line pack prints for count entries, naming rest.
std::string said(const std::string& count, const std::string& rest) {
    return "vxpk: left out " + count +
           " whose names start with \"_\" or \".\", which the format never packs: " + rest + "\n";
}

class vxpkLeftOutTest : public ::testing::Test {
protected:
    VxpkResult pack(std::vector<std::string> options, const std::string& package = "out.vxpk") {
        std::vector<std::string> arguments = {"pack", "site", package, "--name", "D", "--uid", "d"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return RunVxpk(arguments, scratch.path());
    }

    ScratchFolder scratch;
};

TEST_F(vxpkLeftOutTest, pack_saysWhatTheFormatLeftOutEvenWhenQuiet) {
    scratch.writeFile("site/index.html", "<h1/>");
    scratch.writeFile("site/_next/static/chunks/a.js", "a");
    scratch.writeFile("site/_headers", "/*");
    scratch.writeFile("site/.git/HEAD", "ref");
    struct Case {
        std::vector<std::string> options;
        std::string err;
    };
    const std::string twoAndGit =
        said("3 entries", "_headers, _next/ (and 1 dot-name; --verbose lists all)");
    const std::vector<Case> cases = {
        {{}, twoAndGit},
        {{"--quiet"}, twoAndGit},
        {{"--verbose"}, said("3 entries", ".git/, _headers, _next/")},
        {{"--verbose", "--exclude", ".git"}, said("2 entries", "_headers, _next/")},
        {{"--exclude", "_next/"},
         said("2 entries", "_headers (and 1 dot-name; --verbose lists all)")},
        {{"--exclude", "_*"},
         "vxpk: left out 1 entry whose name starts with \"_\" or \".\", which the format never "
         "packs: 1 dot-name (--verbose lists all)\n"},
        {{"--exclude", "_*", "--exclude", ".*"}, ""},
    };
    for (const auto& [options, err] : cases) {
        const VxpkResult result = pack(options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, err) << ::testing::PrintToString(options);
    }
}

TEST_F(vxpkLeftOutTest, pack_namesTheFirstFewAndCountsTheRestUnlessVerbose) {
    scratch.writeFile("site/index.html", "<h1/>");
    for (const std::string name : {"_a", "_b", "_c", "_d", "_e", "_f", "js/_g", "js/.map"}) {
        scratch.writeFile("site/" + name, "");
    }
    EXPECT_EQ(
        pack({}).err,
        said("8 entries", "_a, _b, _c, _d, _e (and 2 more, 1 dot-name; --verbose lists all)"));
    EXPECT_EQ(pack({"--verbose"}).err, said("8 entries", "_a, _b, _c, _d, _e, _f, js/.map, js/_g"));
}

TEST_F(vxpkLeftOutTest, report_changesNoByteOfThePackage) {
    scratch.writeFile("site/index.html", "<h1/>");
    scratch.writeFile("site/_app/x.js", "x");
    ASSERT_EQ(pack({"--quiet"}, "quiet.vxpk").exitCode, 0);
    ASSERT_EQ(pack({"--verbose"}, "verbose.vxpk").exitCode, 0);
    EXPECT_EQ(scratch.readFile("quiet.vxpk"), scratch.readFile("verbose.vxpk"));
}

}  // namespace
}  // namespace vx
