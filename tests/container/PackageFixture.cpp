#include "PackageFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "container/vxPacker.h"

namespace vx::test {
namespace fs = std::filesystem;

namespace {

std::string pstring(const std::string& text) {
    return static_cast<char>(text.size()) + text;
}

}  // namespace

std::string EncodeRecord(const PackageRecord& record) {
    const auto bits = static_cast<uint32_t>(record.length);
    return pstring(record.name) + pstring(record.parent) + static_cast<char>(record.type) +
           static_cast<char>(bits >> 24) + static_cast<char>(bits >> 16) +
           static_cast<char>(bits >> 8) + static_cast<char>(bits) + record.contents;
}

std::string EncodePackage(const std::vector<PackageRecord>& records, const std::string& name,
                          const std::string& uid, const std::string& folderName) {
    std::string bytes = pstring("V001") + pstring(name) + pstring(uid) + pstring(folderName);
    for (const auto& record : records) {
        bytes += EncodeRecord(record);
    }
    return bytes;
}

PackageRecord FileRecord(const std::string& name, const std::string& contents,
                         const std::string& parent) {
    return {name, parent, 1, static_cast<int32_t>(contents.size()), contents};
}

PackageRecord FolderRecord(const std::string& name, const std::string& parent) {
    return {name, parent, 2, 0, ""};
}

Tree SnapshotTree(const std::string& root, bool leaveOutHidden) {
    Tree tree;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
         ++it) {
        const std::string name = it->path().filename().string();
        if (leaveOutHidden && (name.front() == '.' || name.front() == '_')) {
            it.disable_recursion_pending();
            continue;
        }
        std::ifstream in(it->path(), std::ios::binary);
        tree[fs::relative(it->path(), root).string()] =
            it->is_directory() ? "/" : "=" + std::string(std::istreambuf_iterator<char>(in), {});
    }
    return tree;
}

std::string ByteRange(int first, int last) {
    std::string bytes;
    for (int b = first; b <= last; ++b) {
        bytes += static_cast<char>(b);
    }
    return bytes;
}

void PackageFixture::SetUp() {
    vxPacker::bs = nullptr;
    vxPacker::folder = scratch.item("site");
    vxPacker::target = scratch.item("out.vxpk");
    vxPacker::name = "Demo";
    vxPacker::uid = "demo1";
    vxPacker::owner = log;
    previousTemporary_ = fs::temp_directory_path().string();
    temporary = scratch.makeFolder("tmp");
    ::setenv("TMPDIR", temporary.c_str(), 1);
}

void PackageFixture::TearDown() {
    vxPacker::bs = nullptr;
    vxPacker::folder = nullptr;
    vxPacker::target = nullptr;
    vxPacker::owner = nullptr;
    ::setenv("TMPDIR", previousTemporary_.c_str(), 1);
}

Ref<vxpkFile> PackageFixture::openPackage(const std::string& bytes) {
    scratch.writeFile("in.vxpk", bytes);
    return vxpkFile::open(scratch.item("in.vxpk"));
}

std::string PackageFixture::extractionFolder() const {
    std::vector<std::string> folders;
    for (const auto& entry : fs::directory_iterator(temporary)) {
        folders.push_back(entry.path().string());
    }
    EXPECT_EQ(folders.size(), 1u);
    return folders.empty() ? temporary + "/missing" : folders.front();
}

void PackageFixture::clearTemporary() {
    for (const auto& entry : fs::directory_iterator(temporary)) {
        fs::remove_all(entry.path());
    }
    ui.messages.clear();
    log->lines.clear();
}

std::string PackageFixture::outcome() const {
    std::string text;
    for (const auto& line : log->lines) {
        text += line + "\n";
    }
    for (const auto& message : ui.messages) {
        text += "MsgBox " + std::string(message.bytes()) + "\n";
    }
    return text;
}

}  // namespace vx::test
