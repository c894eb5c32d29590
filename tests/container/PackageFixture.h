#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "PackageBytes.h"
#include "container/LogReceiver.h"
#include "container/vxPacker.h"
#include "container/vxpkFile.h"
#include "support/RecordingUIServices.h"
#include "support/ScratchFolder.h"

// Shared ground of the package tests: a snapshot of trees on disk, and a fixture that records
// what the user saw and keeps extractions in a temporary folder of their own.
namespace vx::test {

// A tree as a map from the path below its root to "/" for a folder or "="
// and the bytes for a file; leaveOutHidden drops names beginning with "." or
// "_" and all they hold.
using Tree = std::map<std::string, std::string>;
inline Tree SnapshotTree(const std::string& root, bool leaveOutHidden = false) {
    namespace fs = std::filesystem;
    Tree tree;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
         ++it) {
        const std::string name = it->path().filename().string();
        if (leaveOutHidden && (name.front() == '.' || name.front() == '_')) {
            it.disable_recursion_pending();
            continue;
        }
        // Appended rather than "=" + ...: GCC 12 at -O3 warns falsely
        // (-Wrestrict) on a literal inserted before a temporary string.
        std::string entry(1, it->is_directory() ? '/' : '=');
        if (!it->is_directory()) {
            std::ifstream in(it->path(), std::ios::binary);
            entry.append(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        }
        tree[fs::relative(it->path(), root).string()] = entry;
    }
    return tree;
}

inline std::string ByteRange(int first, int last) {
    std::string bytes;
    for (int b = first; b <= last; ++b) {
        bytes += static_cast<char>(b);
    }
    return bytes;
}

class RecordingLog : public LogReceiver {
public:
    void log(const String& text) override { lines.emplace_back(text.bytes()); }
    std::vector<std::string> lines;
};

class PackageFixture : public ::testing::Test {
protected:
    // Points the packer at the folder site, the package out.vxpk, "Demo",
    // "demo1" and the log, and the temporary folder at a folder of the test.
    void SetUp() override {
        vxPacker::bs = nullptr;
        vxPacker::folder = scratch.item("site");
        vxPacker::target = scratch.item("out.vxpk");
        vxPacker::name = "Demo";
        vxPacker::uid = "demo1";
        vxPacker::owner = log;
        ::setenv("TMPDIR", temporary.c_str(), 1);
    }
    void TearDown() override { ::setenv("TMPDIR", originalTemporary.c_str(), 1); }

    // Writes the bytes as the package file in.vxpk and opens it.
    Ref<vxpkFile> openPackage(const std::string& bytes) {
        scratch.writeFile("in.vxpk", bytes);
        return vxpkFile::open(scratch.item("in.vxpk"));
    }
    // The one extraction folder; fails the test when there is not exactly one.
    std::string extractionFolder() const {
        std::vector<std::string> folders;
        for (const auto& entry : std::filesystem::directory_iterator(temporary)) {
            folders.push_back(entry.path().string());
        }
        EXPECT_EQ(folders.size(), 1u);
        return folders.empty() ? temporary + "/missing" : folders.front();
    }
    // Empties the temporary folder and forgets what the user saw.
    void clearTemporary() {
        for (const auto& entry : std::filesystem::directory_iterator(temporary)) {
            std::filesystem::remove_all(entry.path());
        }
        ui.messages.clear();
        log->lines.clear();
    }
    // What the user saw: the log lines, then "MsgBox " and each message, one a line.
    std::string outcome() const {
        std::string text;
        for (const auto& line : log->lines) {
            text += line + "\n";
        }
        for (const auto& message : ui.messages) {
            text += "MsgBox " + std::string(message.bytes()) + "\n";
        }
        return text;
    }

    const std::string originalTemporary = std::filesystem::temp_directory_path().string();
    ScratchFolder scratch;
    const std::string temporary = scratch.makeFolder("tmp");
    RecordingUIServices ui;
    InstalledUIServices installed{ui};
    Ref<RecordingLog> log = New<RecordingLog>();
};

}  // namespace vx::test
