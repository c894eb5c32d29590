#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "VxpkRun.h"
#include "container/PackageDescription.h"
#include "container/PackageFixture.h"
#include "container/vxPacker.h"

namespace vx {
namespace {

using namespace test;

class NoLog : public LogReceiver {
public:
    void log(const String&) override {}
};

class vxpkPackTest : public ::testing::Test {
protected:
    VxpkResult run(const std::vector<std::string>& arguments) {
        return RunVxpk(arguments, scratch.path());
    }
    void makeSite(const std::string& root) {
        scratch.writeFile(root + "/index.html", "<h1/>");
        scratch.writeFile(root + "/css/a.css", ByteRange(0, 255));
        scratch.writeFile(root + "/css/img/empty", "");
        scratch.writeFile(root + "/Zeta", "upper case sorts first");
        scratch.writeFile(root + "/package.json", "{old}");
        scratch.writeFile(root + "/.git/HEAD", "hidden");
        scratch.writeFile(root + "/css/_drafts/a", "left out");
    }
    // The package the App's packer writes for the folder, the way the wizard
    // calls it.
    std::string appPackage(const std::string& site) {
        vxPacker::folder = scratch.item(site);
        vxPacker::target = scratch.item("app.vxpk");
        vxPacker::name = "Demo";
        vxPacker::uid = "demo1";
        vxPacker::owner = New<NoLog>();
        vxPacker::build();
        vxPacker::bs = nullptr;
        return scratch.readFile("app.vxpk");
    }

    ScratchFolder scratch;
};

TEST_F(vxpkPackTest, pack_isTheAppsPackageByteForByte) {
    makeSite("app/site");
    makeSite("cli/site");
    const std::vector<std::string> common = {"pack", "cli/site", "cli.vxpk", "--name",
                                             "Demo", "--uid",    "demo1"};
    ASSERT_EQ(run(common).exitCode, 0);
    EXPECT_EQ(scratch.readFile("cli.vxpk"), appPackage("app/site"));

    // The wizard writes package.json into the source, then packs; the command
    // puts the same file into the package and leaves the source alone.
    PackageDescription::Fields fields = PackageDescription::wizardDefaults();
    fields.name = "Demo";
    fields.uid = "demo1";
    fields.version = "2";
    fields.title = " Tï/\"tle ";
    fields.width = "800";
    ASSERT_TRUE(PackageDescription::write(scratch.item("app/site/package.json"),
                                          PackageDescription::document(fields)->ToString()));
    std::vector<std::string> withJson = common;
    withJson.insert(withJson.end(), {"--package-json", "--app-version", "2", "--title",
                                     " Tï/\"tle ", "--width", "800"});
    ASSERT_EQ(run(withJson).exitCode, 0);
    EXPECT_EQ(scratch.readFile("cli.vxpk"), appPackage("app/site"));
    EXPECT_EQ(scratch.readFile("cli/site/package.json"), "{old}");
}

TEST_F(vxpkPackTest, roundTrip_givesTheTreeBackQuietlyWhenNotOnATerminal) {
    makeSite("site");
    // Large enough to bypass the page cache when extracted, in several
    // blocks, with a last piece shorter than a disk block.
    std::string large((std::size_t{9} << 20) + 4097, '\0');
    for (std::size_t i = 0; i < large.size(); ++i) {
        large[i] = static_cast<char>(i * 31 % 251);
    }
    scratch.writeFile("site/css/img/large", large);
    // Back in a folder after one of its subfolders.
    scratch.writeFile("site/css/zz.css", "after img/");
    std::vector<VxpkResult> results = {
        run({"pack", "site", "out.vxpk", "--name", "Demo", "--uid", "demo1"}),
        run({"verify", "out.vxpk"}),
        run({"extract", "out.vxpk", "dest"}),
        run({"cat", "out.vxpk", "css/a.css"}),
        run({"list", "out.vxpk"}),
    };
    // Only what the format left out is told; nothing else is printed.
    EXPECT_EQ(results[0].err,
              "vxpk: left out 2 entries whose names start with \"_\" or \".\", which the format "
              "never packs: css/_drafts/ (and 1 dot-name; --verbose lists all)\n");
    results[0].err.clear();
    for (const auto& result : results) {
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
    }
    EXPECT_EQ(SnapshotTree(scratch.path("dest")), SnapshotTree(scratch.path("site"), true));
    EXPECT_EQ(results[3].out, ByteRange(0, 255));
    EXPECT_EQ(results[4].out,
              "Zeta\ncss/\ncss/a.css\ncss/img/\ncss/img/empty\ncss/img/large\ncss/zz.css\n"
              "index.html\n"
              "package.json\n");
}

TEST_F(vxpkPackTest, progress_isOneMovingLineOnATerminalUnlessQuiet) {
    makeSite("site");
    // Each showing rewrites the line from its start; the last counts all.
    const std::regex line(R"(^(\r\d+(/\d+)? items, \d+\.\d MiB, \d+%, \d+\.\d MiB/s   )+\n$)");
    const std::regex last(R"(\r(\d+)(/(\d+))? items, [^\r]*, 100%, [^\r]*\n$)");
    struct Case {
        std::vector<std::string> arguments;
        std::string items;
        bool shown;
    };
    // What --exclude leaves out is not told as left out by the format, so
    // that --quiet leaves nothing to say.
    const std::vector<Case> cases = {
        {{"pack", "site", "a.vxpk", "--name", "Demo", "--uid", "demo1", "--exclude", ".git",
          "--exclude", "_*"},
         "7",
         true},
        {{"extract", "a.vxpk", "out"}, "7", true},
        {{"pack", "site", "b.vxpk", "--name", "Demo", "--uid", "demo1", "--quiet", "--exclude",
          ".git", "--exclude", "_*"},
         "",
         false},
        {{"extract", "a.vxpk", "quiet", "--quiet"}, "", false},
        {{"list", "a.vxpk"}, "", false},
    };
    for (const auto& [arguments, items, shown] : cases) {
        std::string command;
        for (const auto& argument : arguments) {
            command += argument + " ";
        }
        SCOPED_TRACE(command);
        const VxpkResult result = RunVxpk(arguments, scratch.path(), ErrorTo::Terminal);
        EXPECT_EQ(result.exitCode, 0);
        if (!shown) {
            EXPECT_EQ(result.err, "");
            continue;
        }
        EXPECT_TRUE(std::regex_match(result.err, line)) << result.err;
        std::smatch count;
        ASSERT_TRUE(std::regex_search(result.err, count, last)) << result.err;
        EXPECT_EQ(count[1], items);
        EXPECT_TRUE(!count[2].matched || count[3] == items);
    }
}

TEST_F(vxpkPackTest, exclude_leavesOutMatchingPathsAndAllTheyHold) {
    makeSite("site");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"css", "Zeta\nindex.html\npackage.json\n"},
        {"*.html", "Zeta\ncss/\ncss/a.css\ncss/img/\ncss/img/empty\npackage.json\n"},
        {"css/[a-b].css", "Zeta\ncss/\ncss/img/\ncss/img/empty\nindex.html\npackage.json\n"},
        {"**/empty", "Zeta\ncss/\ncss/a.css\ncss/img/\nindex.html\npackage.json\n"},
        {"?eta", "css/\ncss/a.css\ncss/img/\ncss/img/empty\nindex.html\npackage.json\n"},
    };
    for (const auto& [glob, listing] : cases) {
        ASSERT_EQ(run({"pack", "site", "out.vxpk", "--name", "D", "--uid", "d", "--exclude", glob})
                      .exitCode,
                  0);
        EXPECT_EQ(run({"list", "out.vxpk"}).out, listing) << glob;
    }
}

TEST_F(vxpkPackTest, excludeFrom_addsTheFilesPatternsToThoseGiven) {
    makeSite("site");
    scratch.writeFile("site/js/app.js.map", "{}");
    scratch.writeFile("site/js/lib/z.js.map", "{}");
    scratch.writeFile("ignore", "# source maps, anywhere\n*.map\n\nimg/\r\n");
    scratch.writeFile("more", "/Zeta\n");
    const auto result =
        run({"pack", "site", "out.vxpk", "--name", "D", "--uid", "d", "--exclude-from", "ignore",
             "--exclude-from", "more", "--exclude", "package.json", "--quiet"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(run({"list", "out.vxpk"}).out, "css/\ncss/a.css\nindex.html\njs/\njs/lib/\n");
}

TEST_F(vxpkPackTest, excludeFromAFileThatCannotBeRead_isOneLineAndWritesNothing) {
    makeSite("site");
    scratch.makeFolder("folder");
    for (const std::string file : {"missing", "folder"}) {
        const auto result =
            run({"pack", "site", "out.vxpk", "--name", "D", "--uid", "d", "--exclude-from", file});
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_EQ(result.err.rfind("vxpk: error: " + file + ": ", 0), 0u) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists(scratch.path("out.vxpk")));
}

TEST_F(vxpkPackTest, wrongUseOrUnreadableSource_haveTheirOwnExitCodes) {
    scratch.makeFolder("site");
    scratch.makeLink("cyclic/up", "..");
    const std::vector<std::pair<std::vector<std::string>, int>> cases = {
        {{"pack", "site", "out.vxpk", "--uid", "d"}, 2},
        {{"pack", "site", "out.vxpk", "--name", "D", "--uid", "d", "--title", "T"}, 2},
        {{"unpack", "out.vxpk"}, 2},
        {{"pack", "missing", "out.vxpk", "--name", "D", "--uid", "d"}, 3},
        {{"pack", "site", "no/such/folder.vxpk", "--name", "D", "--uid", "d"}, 3},
        {{"pack", "site", "out.vxpk", "--name", std::string(256, 'n'), "--uid", "d"}, 1},
        {{"pack", "cyclic", "out.vxpk", "--name", "D", "--uid", "d"}, 1},
    };
    for (const auto& [arguments, exitCode] : cases) {
        const auto result = run(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << arguments[1];
        EXPECT_EQ(result.err.rfind("vxpk: error: ", 0), 0u) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists(scratch.path("out.vxpk")));
}

}  // namespace
}  // namespace vx
