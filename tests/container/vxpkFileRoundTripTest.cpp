#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "ExtractionFixture.h"
#include "container/vxPacker.h"
#include "container/vxpkFile.h"

namespace vx {
namespace {

class SilentLog : public LogReceiver {
public:
    void log(const String& /*text*/) override {}
};

// Names that a web app's folder may hold, UTF-8 and inner dots and
// underscores among them, and some that the packer must leave out.
const std::vector<std::string> kNames = {"index.html",
                                         "a_b",
                                         "x.",
                                         "y_",
                                         "Caf\xC3\xA9",
                                         "\xE6\x97\xA5\xE6\x9C\xAC",
                                         "\xF0\x9F\x98\x80",
                                         "v1.2.3",
                                         ".hidden",
                                         "_private",
                                         "name with blanks"};
const std::vector<std::size_t> kSizes = {0, 1, 255, 4096, 131072, 200001};

class vxpkFileRoundTripTest : public test::ExtractionFixture {
protected:
    // Packs the folder src of the scratch folder and opens the package again.
    Ref<vxpkFile> packAndOpen() {
        vxPacker::folder = scratch.item("src");
        vxPacker::target = scratch.item("out.vxpk");
        vxPacker::name = "Round \xE2\x9C\x93";
        vxPacker::uid = "com.example.round";
        vxPacker::owner = New<SilentLog>();
        vxPacker::build();
        vxPacker::bs = nullptr;
        vxPacker::owner = nullptr;
        return vxpkFile::open(scratch.item("out.vxpk"));
    }

    void expectRoundTrip(const std::string& what) {
        const auto file = packAndOpen();
        ASSERT_NE(file, nullptr) << what;
        EXPECT_EQ(file->name.bytes(), "Round \xE2\x9C\x93") << what;
        EXPECT_EQ(file->uid.bytes(), "com.example.round") << what;
        EXPECT_EQ(file->folderName.bytes(), "src") << what;
        EXPECT_EQ(test::SnapshotTree(extractionFolder()),
                  test::SnapshotTree(scratch.path("src"), true))
            << what;
        EXPECT_TRUE(messages().empty()) << what;
    }

    std::string randomBytes(std::size_t size) {
        std::string bytes(size, '\0');
        for (auto& b : bytes) {
            b = static_cast<char>(random_());
        }
        return bytes;
    }

    // A random tree below relative, with every name of kNames possible at
    // every level and a file of each size somewhere.
    void makeRandomTree(const std::string& relative, int depth) {
        scratch.makeFolder(relative);
        const int entries = static_cast<int>(random_() % 6);
        for (int i = 0; i < entries; ++i) {
            const std::string path =
                relative + "/" + kNames[random_() % kNames.size()] + std::to_string(i);
            if (depth > 0 && random_() % 3 == 0) {
                makeRandomTree(path, depth - 1);
            } else {
                scratch.writeFile(path, randomBytes(kSizes[random_() % kSizes.size()]));
            }
        }
    }

    std::mt19937 random_{2024};
};

TEST_F(vxpkFileRoundTripTest, emptySourceFolder_extractsToAnEmptyFolder) {
    scratch.makeFolder("src");
    expectRoundTrip("empty");
}

TEST_F(vxpkFileRoundTripTest, onlyHiddenEntries_extractToAnEmptyFolder) {
    scratch.writeFile("src/.DS_Store", "x");
    scratch.writeFile("src/_build/out.js", "y");
    scratch.makeFolder("src/.git/objects");
    expectRoundTrip("hidden only");
}

TEST_F(vxpkFileRoundTripTest, treeOfEveryKind_extractsToTheSameTreeLessHiddenEntries) {
    std::string everyByte;
    for (int b = 0; b < 256; ++b) {
        everyByte += static_cast<char>(b);
    }
    scratch.writeFile("src/every byte", everyByte + everyByte);
    scratch.writeFile("src/empty", "");
    scratch.makeFolder("src/empty folder");
    scratch.writeFile("src/css/site.css", "body{}");
    scratch.writeFile("src/css/img/logo.png", everyByte);
    scratch.writeFile("src/css/.cache/x", "left out");
    scratch.writeFile("src/css/_draft.css", "left out");
    scratch.writeFile("src/a.b_c/d_e.f", "inner dots and underscores");
    scratch.writeFile("src/\xE6\x97\xA5\xE6\x9C\xAC/\xF0\x9F\x98\x80.txt", "utf-8");
    // A hundred levels: the parent field of the deepest file is 199 bytes.
    std::string deep = "src";
    for (int level = 0; level < 100; ++level) {
        deep += "/d";
    }
    scratch.writeFile(deep + "/bottom", "deep");
    scratch.writeFile("src/large", std::string(3 << 20, 'L') + everyByte);
    expectRoundTrip("every kind");
}

TEST_F(vxpkFileRoundTripTest, randomTrees_extractToTheSameTreeLessHiddenEntries) {
    for (int seed = 1; seed <= 6; ++seed) {
        random_.seed(static_cast<unsigned>(seed));
        clearTemporary();
        std::filesystem::remove_all(scratch.path("src"));
        makeRandomTree("src", 4);
        expectRoundTrip("seed " + std::to_string(seed));
    }
}

}  // namespace
}  // namespace vx
