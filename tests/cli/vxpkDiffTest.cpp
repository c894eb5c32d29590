#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "VxpkRun.h"
#include "container/PackageBytes.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

// A tree as its paths below the root: a path that ends in "/" is a folder,
// any other a file with the bytes given.
using Tree = std::vector<std::pair<std::string, std::string>>;

const Tree kSite = {{"index.html", "<h1/>"}, {"css/a.css", "a{}"}, {"img/", ""}};

Tree with(Tree tree, const Tree& more) {
    tree.insert(tree.end(), more.begin(), more.end());
    return tree;
}

class vxpkDiffTest : public ::testing::Test {
protected:
    VxpkResult run(const std::vector<std::string>& arguments) {
        return RunVxpk(arguments, scratch.path());
    }
    // Makes the tree in a fresh folder named folderName and packs it with the
    // real command into package.
    void pack(const Tree& tree, const std::string& package, const std::string& folderName = "site",
              const std::string& name = "Demo", const std::string& uid = "demo1") {
        const std::string root = "trees/" + std::to_string(++trees) + "/" + folderName;
        scratch.makeFolder(root);
        for (const auto& [path, bytes] : tree) {
            if (path.ends_with("/")) {
                scratch.makeFolder(root + "/" + path);
            } else {
                scratch.writeFile(root + "/" + path, bytes);
            }
        }
        ASSERT_EQ(run({"pack", "--quiet", root, package, "--name", name, "--uid", uid}).exitCode,
                  0);
    }

    ScratchFolder scratch;
    int trees = 0;
};

TEST_F(vxpkDiffTest, diff_treesThatDiffer_printsOneLinePerPathAndExitsOne) {
    struct Case {
        const char* what;
        Tree before;
        Tree after;
        std::string lines;
    };
    const std::vector<Case> cases = {
        {"added", kSite, with(kSite, {{"js/app.js", "go()"}}), "A\tjs/\nA\tjs/app.js\n"},
        {"removed", with(kSite, {{"old.txt", "x"}}), kSite, "D\told.txt\n"},
        {"same size", kSite, with(kSite, {{"css/a.css", "b{}"}}), "M\tcss/a.css\t3 -> 3\n"},
        {"other size", kSite, with(kSite, {{"css/a.css", "a{b:c}"}}), "M\tcss/a.css\t3 -> 6\n"},
        {"file turned folder", with(kSite, {{"x", "1"}}), with(kSite, {{"x/y", "2"}}),
         "T\tx\tfile -> folder\nA\tx/y\n"},
        {"folder turned file",
         with(kSite, {{"img/a.png", "png"}}),
         {{"img", "png"}},
         "D\tcss/\nD\tcss/a.css\nT\timg\tfolder -> file\nD\timg/a.png\nD\tindex.html\n"},
    };
    for (const auto& [what, before, after, lines] : cases) {
        pack(before, "old.vxpk");
        pack(after, "new.vxpk");
        const auto result = run({"diff", "old.vxpk", "new.vxpk"});
        EXPECT_EQ(result.out, lines) << what;
        EXPECT_EQ(result.exitCode, 1) << what;
        EXPECT_EQ(result.err, "") << what;
    }
}

TEST_F(vxpkDiffTest, diff_headerChanged_printsTheFieldsBeforeThePaths) {
    pack(kSite, "old.vxpk");
    pack(with(kSite, {{"index.html", "<h2/>"}}), "new.vxpk", "web", "Demo 2", "demo2");
    const auto result = run({"diff", "old.vxpk", "new.vxpk"});
    EXPECT_EQ(result.out,
              "name: Demo -> Demo 2\nuid: demo1 -> demo2\nfolder name: site -> web\n"
              "M\tindex.html\t5 -> 5\n");
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(vxpkDiffTest, diff_json_givesTheHeaderChangesAndEveryPathWithTypesAndSizes) {
    pack(with(kSite, {{"x", "1"}, {"gone/", ""}}), "old.vxpk");
    pack(with(kSite, {{"x/", ""}, {"css/a.css", "a{b:c}"}}), "new.vxpk", "site", "Demo 2");
    const auto result = run({"diff", "--json", "old.vxpk", "new.vxpk"});
    EXPECT_EQ(result.out,
              "{\"same\":false,\"header\":[{\"field\":\"name\",\"old\":\"Demo\",\"new\":\"Demo "
              "2\"}],\"paths\":[{\"path\":\"css/a.css\",\"kind\":\"modified\",\"oldType\":"
              "\"file\",\"oldSize\":3,\"newType\":\"file\",\"newSize\":6},{\"path\":\"gone\","
              "\"kind\":\"removed\",\"oldType\":\"folder\"},{\"path\":\"x\",\"kind\":\"type "
              "changed\",\"oldType\":\"file\",\"oldSize\":1,\"newType\":\"folder\"}]}\n");
    EXPECT_EQ(result.exitCode, 1);

    const auto same = run({"diff", "--json", "old.vxpk", "old.vxpk"});
    EXPECT_EQ(same.out, "{\"same\":true,\"header\":[],\"paths\":[]}\n");
    EXPECT_EQ(same.exitCode, 0);
}

TEST_F(vxpkDiffTest, diff_exitStatus_isZeroForTheSameOneForDifferentTwoForTrouble) {
    pack(kSite, "old.vxpk");
    pack(kSite, "copy.vxpk");
    pack(with(kSite, {{"index.html", "<h2/>"}}), "new.vxpk");
    scratch.writeFile("bad.vxpk", EncodePackage({FileRecord("a", "1", "d")}));
    const std::string unsound =
        "bad.vxpk: record 1 at byte 23: the parent folder \"d\" is not recorded before this item";
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        std::string err;
    };
    const std::vector<Case> cases = {
        {{"old.vxpk", "copy.vxpk"}, 0, ""},
        {{"old.vxpk", "new.vxpk"}, 1, ""},
        {{"bad.vxpk", "old.vxpk"}, 2, unsound},
        {{"old.vxpk", "bad.vxpk"}, 2, unsound},
        {{"old.vxpk", "missing.vxpk"}, 2, "missing.vxpk: No such file or directory"},
        {{"old.vxpk", "trees"}, 2, "trees: not a regular file"},
        {{"old.vxpk"}, 2, "NEW is required (see vxpk --help)"},
        {{"--bogus", "old.vxpk", "new.vxpk"},
         2,
         "The following argument was not expected: --bogus (see vxpk --help)"},
    };
    for (const auto& [arguments, exitCode, err] : cases) {
        std::vector<std::string> command = {"diff"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto result = run(command);
        EXPECT_EQ(result.exitCode, exitCode) << arguments.back();
        EXPECT_EQ(result.err, err.empty() ? "" : "vxpk: error: " + err + "\n") << arguments.back();
        EXPECT_EQ(result.out, exitCode == 1 ? "M\tindex.html\t5 -> 5\n" : "") << arguments.back();
    }
}

}  // namespace
}  // namespace vx
