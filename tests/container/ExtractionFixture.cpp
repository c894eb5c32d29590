#include "ExtractionFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace vx::test {
namespace fs = std::filesystem;

namespace {

bool isHidden(const fs::path& path) {
    const std::string name = path.filename().string();
    return !name.empty() && (name.front() == '.' || name.front() == '_');
}

std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

Tree SnapshotTree(const std::string& root, bool leaveOutHidden) {
    Tree tree;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
         ++it) {
        if (leaveOutHidden && isHidden(it->path())) {
            it.disable_recursion_pending();
            continue;
        }
        const std::string relative = fs::relative(it->path(), root).string();
        tree[relative] = it->is_directory() ? "/" : "=" + readAll(it->path());
    }
    return tree;
}

void ExtractionFixture::SetUp() {
    if (const char* value = std::getenv("TMPDIR")) {
        previousTemporary_ = value;
    }
    temporary = scratch.makeFolder("tmp");
    ::setenv("TMPDIR", temporary.c_str(), 1);
    installed_.emplace(ui);
}

void ExtractionFixture::TearDown() {
    installed_.reset();
    if (previousTemporary_) {
        ::setenv("TMPDIR", previousTemporary_->c_str(), 1);
    } else {
        ::unsetenv("TMPDIR");
    }
}

Ref<vxpkFile> ExtractionFixture::openPackage(const std::string& bytes) {
    scratch.writeFile("in.vxpk", bytes);
    return vxpkFile::open(scratch.item("in.vxpk"));
}

std::vector<std::string> ExtractionFixture::extractionFolders() const {
    std::vector<std::string> folders;
    for (const auto& entry : fs::directory_iterator(temporary)) {
        folders.push_back(entry.path().string());
    }
    return folders;
}

std::string ExtractionFixture::extractionFolder() const {
    const auto folders = extractionFolders();
    EXPECT_EQ(folders.size(), 1u);
    return folders.empty() ? temporary + "/missing" : folders.front();
}

void ExtractionFixture::clearTemporary() const {
    for (const auto& entry : fs::directory_iterator(temporary)) {
        fs::remove_all(entry.path());
    }
}

std::vector<std::string> ExtractionFixture::messages() const {
    std::vector<std::string> texts;
    for (const auto& message : ui.messages) {
        texts.emplace_back(message.bytes());
    }
    return texts;
}

}  // namespace vx::test
