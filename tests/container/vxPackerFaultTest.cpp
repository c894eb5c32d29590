#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "PackageFixture.h"
#include "container/vxPacker.h"
#include "support/SystemCallFaults.h"

// Builds that meet a failing disk: the message by the error number, no
// "BUILD DONE...", and the package left as far as it was written.
namespace vx {
namespace {

using namespace test;

std::string patternOf(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

class FaultyDiskFixture : public PackageFixture {
protected:
    // Writes the files into the source folder and gives their records.
    std::vector<PackageRecord> makeSource(const std::vector<PackageRecord>& files) {
        for (const auto& file : files) {
            scratch.writeFile("site/" + file.name, file.contents);
        }
        return files;
    }
    // Builds under the faults, then lets the package's stream go, as the end
    // of the program does, so that what it still held is written if it can be.
    void buildWith(const Faults& faults) {
        SystemCallFaults injected(faults);
        vxPacker::build();
        vxPacker::bs = nullptr;
        EXPECT_GT(injected.injected(), 0);
    }
    std::string logText() const {
        std::string text;
        for (const auto& line : log->lines) {
            text += line + "\n";
        }
        return text;
    }
    std::string header() const {
        return "Build using file version 001\nSource: " + scratch.path("site") +
               "\nTarget: " + scratch.path("out.vxpk") + "\n";
    }
};

using FullDisk = FaultyDiskFixture;
using ReadErrorInSource = FaultyDiskFixture;

TEST_F(FullDisk, halfWayThroughTheContents_keepsThePackageUpToTheFullDisk) {
    std::vector<PackageRecord> smallFiles;
    for (int i = 10; i < 50; ++i) {
        // Appended rather than "f" + ...: GCC 12 at -O3 warns falsely
        // (-Wrestrict) on a literal inserted before a temporary string.
        smallFiles.push_back(
            FileRecord(std::string("f").append(std::to_string(i)), patternOf(5000)));
    }
    const struct {
        const char* where;
        std::vector<PackageRecord> files;
        uint64_t diskSpace;
    } cases[] = {
        {"a large file", {FileRecord("big.bin", patternOf(300000)), FileRecord("z", "zz")}, 150000},
        {"many small files", smallFiles, 100000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.where);
        clearTemporary();
        const auto records = makeSource(c.files);
        std::string wholeLog = header();
        for (const auto& record : records) {
            wholeLog += "Copying: " + record.name + "\n";
        }

        buildWith({.diskSpace = c.diskSpace});

        EXPECT_EQ(scratch.readFile("out.vxpk"), EncodePackage(records).substr(0, c.diskSpace));
        EXPECT_TRUE(wholeLog.starts_with(logText())) << logText();
        EXPECT_GT(logText().size(), header().size());
        EXPECT_EQ(ui.messages, std::vector<String>{"Error creating app file."});
        std::filesystem::remove_all(scratch.path("site"));
    }
}

// A file that cannot be read leaves none of its bytes in the package, wherever
// the read failed: the package ends with the record of that file.
TEST_F(ReadErrorInSource, endsTheBuildBehindTheRecordOfThatFile) {
    const struct {
        const char* where;
        std::size_t size;
        Faults faults;
    } cases[] = {
        {"half way through a small file", 60000, {.readFailsAt = 30000}},
        {"at the start of a kernel copy", 300000, {.copyFails = EIO}},
        {"part way through a kernel copy", 300000, {.copyFails = EIO, .copyBefore = 150000}},
        {"part way through a large file copied through the buffer",
         300000,
         {.readFailsAt = 200000, .copyFails = EXDEV}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.where);
        clearTemporary();
        const auto records =
            makeSource({FileRecord("a.txt", "first"), FileRecord("b.bin", patternOf(c.size))});

        buildWith(c.faults);

        const std::string whole = EncodePackage(records);
        EXPECT_EQ(scratch.readFile("out.vxpk"), whole.substr(0, whole.size() - c.size));
        EXPECT_EQ(outcome(), header() +
                                 "Copying: a.txt\nCopying: b.bin\n"
                                 "MsgBox Error creating app file.\n");
    }
}

}  // namespace
}  // namespace vx
