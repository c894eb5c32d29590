#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "container/vxpkFile.h"
#include "support/RecordingUIServices.h"
#include "support/ScratchFolder.h"

namespace vx::test {

// A tree on disk as a map from the path below its root to "/" for a folder or
// "=" and the bytes for a file.
using Tree = std::map<std::string, std::string>;

// Lists every entry below root; with leaveOutHidden, entries whose names begin
// with "." or "_" are left out with everything they hold.
Tree SnapshotTree(const std::string& root, bool leaveOutHidden = false);

// Runs each test with the temporary folder pointed at a folder of its own, so
// that what an extraction leaves behind can be found and counted.
class ExtractionFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes the bytes as the package file in.vxpk and opens it.
    Ref<vxpkFile> openPackage(const std::string& bytes);
    // The folders that extractions made in the temporary folder.
    std::vector<std::string> extractionFolders() const;
    // The one extraction folder; fails the test when there is not exactly one.
    std::string extractionFolder() const;
    // Empties the temporary folder for the next extraction.
    void clearTemporary() const;
    std::vector<std::string> messages() const;

    ScratchFolder scratch;
    std::string temporary;
    RecordingUIServices ui;

private:
    std::optional<std::string> previousTemporary_;
    std::optional<InstalledUIServices> installed_;
};

}  // namespace vx::test
