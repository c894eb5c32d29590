#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "PackageBytes.h"
#include "container/PackageProblem.h"
#include "container/vxpkFormat.h"
#include "container/vxpkRecordReader.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx {
namespace {

using namespace test;

class vxpkRecordReaderTest : public ::testing::Test {
protected:
    vxpkRecordReader open(const std::string& bytes) {
        scratch.writeFile("in.vxpk", bytes);
        return vxpkRecordReader(BinaryStream::Open(scratch.item("in.vxpk"), false));
    }
    // The paths the reader walks before it ends or raises, and its diagnosis.
    std::string walk(const std::string& bytes) {
        std::string seen;
        try {
            auto reader = open(bytes);
            while (const auto entry = reader.next()) {
                seen += std::string(entry->fields.name.bytes()) + ";";
            }
        } catch (const PackageProblem& problem) {
            seen += problem.where();
        }
        return seen;
    }

    ScratchFolder scratch;
};

const std::vector<PackageRecord> kSample = {FolderRecord("css"), FileRecord("a.css", "p{}", "css"),
                                            FileRecord("index.html", "<h1/>")};

TEST_F(vxpkRecordReaderTest, encodedFields_areTheFormatByteForByte_andReadBackWithOffsets) {
    std::string bytes;
    vxpkFormat::appendHeader(bytes, {.name = "Demo", .uid = "demo1", .folderName = "site"});
    vxpkFormat::appendRecord(bytes, {.name = "css", .parent = "", .type = vxpkFormat::kFolderType});
    vxpkFormat::appendRecord(bytes, {.name = "a.css", .parent = "css", .length = 3});
    bytes += "p{}";
    vxpkFormat::appendRecord(bytes, {.name = "index.html", .parent = "", .length = 5});
    bytes += "<h1/>";
    ASSERT_EQ(bytes, EncodePackage(kSample));
    // A string the format cannot hold whole is cut, as the stream's own writer cuts it.
    std::string cut;
    vxpkFormat::appendString(cut, std::string(300, 'n'));
    EXPECT_EQ(cut, '\xff' + std::string(255, 'n'));

    auto reader = open(bytes);
    EXPECT_EQ(reader.header().name, "Demo");
    EXPECT_EQ(reader.header().folderName, "site");
    EXPECT_EQ(reader.packageSize(), 71u);
    const auto folder = reader.next();
    ASSERT_TRUE(folder);
    EXPECT_EQ(std::vector<uint64_t>({folder->offset, folder->parentOffset, folder->typeOffset,
                                     folder->lengthOffset, folder->contentsOffset}),
              std::vector<uint64_t>({21, 25, 26, 27, 31}));
    // The file's contents are passed over by the next call, not read.
    const auto file = reader.next();
    ASSERT_TRUE(file);
    EXPECT_EQ(file->contentsOffset, 46u);
    const auto last = reader.next();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->offset, 49u);
    scratch.writeFile("copy", "");
    const auto copy = BinaryStream::Open(scratch.item("copy"), true);
    reader.copyContents(*copy);
    copy->Close();
    EXPECT_EQ(scratch.readFile("copy"), "<h1/>");
    EXPECT_FALSE(reader.next());
}

// list and verify walk large packages: the contents between the records are
// passed over without being read, however much read-ahead would have taken.
TEST_F(vxpkRecordReaderTest, walk_readsTheFieldsAndNotTheContentsBetweenThem) {
    std::vector<PackageRecord> records;
    for (int i = 0; i < 20; ++i) {
        records.push_back(FileRecord(std::to_string(i), std::string(64 * 1024, 'c')));
    }
    const std::string bytes = EncodePackage(records);
    auto reader = open(bytes);
    const SystemCallFaults counting({});
    int seen = 0;
    while (reader.next()) {
        ++seen;
    }
    EXPECT_EQ(seen, 20);
    EXPECT_LT(counting.bytesRead(), bytes.size() / 10);
}

// A package cut anywhere is refused at the field it cuts, except at a record
// boundary, where it is a shorter package.
TEST_F(vxpkRecordReaderTest, packageCutAtEveryByte_isRefusedUnlessCutBetweenRecords) {
    const std::string whole = EncodePackage(kSample);
    const std::vector<size_t> boundaries = {21, 31, 49, 71};
    for (size_t cut = 0; cut < whole.size(); ++cut) {
        const std::string seen = walk(whole.substr(0, cut));
        const bool atBoundary =
            std::find(boundaries.begin(), boundaries.end(), cut) != boundaries.end();
        EXPECT_EQ(seen.find("bytes but the file ends") == std::string::npos &&
                      seen.find("runs past the end") == std::string::npos &&
                      seen.find("not a package") == std::string::npos,
                  atBoundary)
            << "cut at " << cut << ": " << seen;
    }
}

TEST_F(vxpkRecordReaderTest, damagedFields_areDiagnosedWithRecordAndOffset) {
    struct Case {
        std::string bytes;
        std::string diagnosis;
    };
    const std::vector<Case> cases = {
        {EncodeHeader("V002", "a", "b", "c"), "header at byte 0: not a package of version V001"},
        {EncodePackage({{"x", "", 3, 0, ""}}),
         "record 1 at byte 24: type 3 is neither 1 (file) nor 2 (folder)"},
        {EncodePackage({{"x", "", 1, -1, ""}}), "record 1 at byte 25: negative length -1"},
        {EncodePackage({{"x", "", 1, 9, "abc"}}),
         "record 1 at byte 25: the length 9 runs past the end of the file (3 bytes left)"},
        {EncodePackage({FileRecord("a", "1")}) + "\x05" + "ab",
         "a;record 2 at byte 30: the string needs 6 bytes but the file ends after 3"},
        // A folder's length has no bearing on the layout and is not checked.
        {EncodePackage({{"d", "", 2, 1000, ""}, FileRecord("f", "1", "d")}), "d;f;"},
    };
    for (const auto& [bytes, diagnosis] : cases) {
        EXPECT_EQ(walk(bytes), diagnosis);
    }
}

}  // namespace
}  // namespace vx
