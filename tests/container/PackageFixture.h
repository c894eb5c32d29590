#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "container/LogReceiver.h"
#include "container/vxpkFile.h"
#include "support/RecordingUIServices.h"
#include "support/ScratchFolder.h"

// Shared ground of the package tests: a package encoder written apart from the
// code under test, a snapshot of trees on disk, and a fixture that records
// what the user saw and keeps extractions in a temporary folder of their own.
namespace vx::test {

// One item record of a package. Its length and contents are written as
// given, even when they disagree, so that tests can make broken packages.
struct PackageRecord {
    std::string name;
    std::string parent;
    int8_t type = 0;
    int32_t length = 0;
    std::string contents;
};

std::string EncodeRecord(const PackageRecord& record);
// The header of "V001" and the given strings, then the records.
std::string EncodePackage(const std::vector<PackageRecord>& records,
                          const std::string& name = "Demo", const std::string& uid = "demo1",
                          const std::string& folderName = "site");
// Records whose fields agree: a file's length is that of its contents.
PackageRecord FileRecord(const std::string& name, const std::string& contents,
                         const std::string& parent = "");
PackageRecord FolderRecord(const std::string& name, const std::string& parent = "");

// A tree as a map from the path below its root to "/" for a folder or "="
// and the bytes for a file; leaveOutHidden drops names beginning with "." or
// "_" and all they hold.
using Tree = std::map<std::string, std::string>;
Tree SnapshotTree(const std::string& root, bool leaveOutHidden = false);

std::string ByteRange(int first, int last);

class RecordingLog : public LogReceiver {
public:
    void log(const String& text) override { lines.emplace_back(text.bytes()); }
    std::vector<std::string> lines;
};

class PackageFixture : public ::testing::Test {
protected:
    // Points the packer at the folder site, the package out.vxpk, "Demo",
    // "demo1" and the log, and the temporary folder at a folder of the test.
    void SetUp() override;
    void TearDown() override;

    // Writes the bytes as the package file in.vxpk and opens it.
    Ref<vxpkFile> openPackage(const std::string& bytes);
    // The one extraction folder; fails the test when there is not exactly one.
    std::string extractionFolder() const;
    // Empties the temporary folder and forgets what the user saw.
    void clearTemporary();
    // What the user saw: the log lines, then "MsgBox " and each message, one a line.
    std::string outcome() const;

    ScratchFolder scratch;
    std::string temporary;
    RecordingUIServices ui;
    InstalledUIServices installed{ui};
    Ref<RecordingLog> log = New<RecordingLog>();

private:
    std::string previousTemporary_;
};

}  // namespace vx::test
