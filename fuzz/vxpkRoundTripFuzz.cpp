// A small tree made from the input bytes is packed by vxPacker, extracted
// again by vxpkFile, and the extracted tree compared with what the package
// format holds; any difference aborts.
//
// The format is not a faithful copy of every tree: names beginning with "."
// or "_" stay out with all they hold, and ":" separates the parent path, so a
// folder whose name holds ":" sends its entries to other places on the way
// back, where they may land on each other or find no folder to go into. The
// expected tree is therefore worked out record by record, as the format
// says, not copied from the source.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "Confinement.h"
#include "QuietUIServices.h"
#include "container/vxPacker.h"
#include "container/vxpkFile.h"
#include "runtime/text/TextEncoding.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaxEntries = 48;
constexpr std::size_t kMaxDepth = 6;
constexpr std::size_t kMaxNameBytes = 12;
constexpr std::size_t kLargeUnit = 1024;

struct Node {
    bool folder = true;
    std::string contents;
    // Byte order, as the folders are listed.
    std::map<std::string, Node> children;
};

// The input, read front to back; past its end every byte is 0.
class InputBytes {
public:
    InputBytes(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    bool more() const { return at_ < size_; }
    uint8_t next() { return more() ? data_[at_++] : 0; }
    std::string take(std::size_t count) {
        std::string bytes;
        while (bytes.size() < count && more()) {
            bytes += static_cast<char>(next());
        }
        return bytes;
    }

private:
    const uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

// Any bytes but "/" and NUL, which no name can hold; "." and ".." name no entry.
std::string takeName(InputBytes& input) {
    std::string name = input.take(1 + input.next() % kMaxNameBytes);
    for (char& c : name) {
        if (c == '/' || c == '\0') {
            c = '-';
        }
    }
    return name == "." || name == ".." ? std::string() : name;
}

// Small contents are input bytes; large ones, which take the other copying
// paths of the streams, repeat a few of them.
std::string takeContents(InputBytes& input, bool large) {
    const std::size_t length = input.next();
    if (!large) {
        return input.take(length);
    }
    const std::string unit = input.take(16);
    std::string contents;
    for (std::size_t i = 0; !unit.empty() && i < length * kLargeUnit / unit.size(); ++i) {
        contents += unit;
    }
    return contents;
}

// Each step either adds a file or a folder (which the next steps fill) to the
// folder at hand, or goes back up one level.
Node decodeTree(InputBytes& input) {
    Node root;
    std::vector<Node*> open{&root};
    for (std::size_t entries = 0; input.more() && entries < kMaxEntries; ++entries) {
        const uint8_t step = input.next();
        if (step % 4 == 3) {
            if (open.size() > 1) {
                open.pop_back();
            }
            continue;
        }
        const bool folder = step % 4 == 2 && open.size() < kMaxDepth;
        const std::string name = takeName(input);
        Node made{folder, folder ? std::string() : takeContents(input, (step & 0x80) != 0), {}};
        if (name.empty() || open.back()->children.contains(name)) {
            continue;
        }
        Node& added = open.back()->children.emplace(name, std::move(made)).first->second;
        if (folder) {
            open.push_back(&added);
        }
    }
    return root;
}

void writeTree(const fs::path& at, const Node& node) {
    for (const auto& [name, child] : node.children) {
        if (child.folder) {
            fs::create_directory(at / name);
            writeTree(at / name, child);
        } else {
            std::ofstream(at / name, std::ios::binary) << child.contents;
        }
    }
}

struct Record {
    std::string name;
    std::string parent;
    const Node* node;
};

// The records the packer writes: depth first, in byte order, hidden names
// left out, the parent path joined with ":".
void collectRecords(const Node& folder, const std::string& parent, std::vector<Record>& records) {
    for (const auto& [name, child] : folder.children) {
        if (name.front() == '.' || name.front() == '_') {
            continue;
        }
        records.push_back({name, parent, &child});
        if (child.folder) {
            collectRecords(child, parent.empty() ? name : parent + ":" + name, records);
        }
    }
}

// A tree as a map from the path below its root to "/" for a folder or "="
// and the bytes for a file.
using Tree = std::map<std::string, std::string>;

struct Extraction {
    Tree tree;
    bool whole = true;
};

[[noreturn]] void fail(const char* why) {
    std::fprintf(stderr, "round trip: %s\n", why);
    std::abort();
}

void printTree(const char* title, const Tree& tree) {
    std::fprintf(stderr, "%s:\n", title);
    for (const auto& [path, entry] : tree) {
        std::fprintf(stderr, "  %s %s\n", path.c_str(), entry == "/" ? "(folder)" : "(file)");
    }
}

// The extraction folder lies at the bottom of a chain of folders deeper than
// the ".." that a parent path of these small trees can hold, so that what
// climbs out of it is still seen.
constexpr int kChainDepth = 32;

std::vector<std::string> chainFolders() {
    std::vector<std::string> folders{"u"};
    for (int level = 1; level < kChainDepth; ++level) {
        folders.push_back(folders.back() + "/u");
    }
    folders.push_back(folders.back() + "/extracted");
    return folders;
}

// Where the kernel finds the folder that a parent path names, from the
// extraction folder: every component must be a folder that is there, "." and
// empty components stay where they are and ".." goes up, into the chain once
// it leaves the extraction folder. Nothing when it fails.
std::optional<std::string> parentFolder(const Tree& tree, const std::string& parent) {
    std::vector<std::string> at = chainFolders();
    std::string component;
    std::istringstream components(parent);
    while (std::getline(components, component, ':')) {
        if (component == "..") {
            if (at.size() == 1) {
                fail("a record climbs above the chain; make it deeper");
            }
            at.pop_back();
        } else if (!component.empty() && component != ".") {
            at.push_back(at.back() + "/" + component);
            const auto entry = tree.find(at.back());
            if (entry == tree.end() || entry->second != "/") {
                return std::nullopt;
            }
        }
    }
    return at.back();
}

// What the reader makes of the records: each item goes to its parent path
// with ":" turned into "/"; a folder that cannot be made is passed over, a
// file that cannot be written ends the extraction.
Extraction expectedExtraction(const std::vector<Record>& records) {
    Extraction expected;
    for (const std::string& folder : chainFolders()) {
        expected.tree[folder] = "/";
    }
    for (const Record& record : records) {
        const std::optional<std::string> parent = parentFolder(expected.tree, record.parent);
        const std::string path = parent.value_or("") + "/" + record.name;
        if (record.node->folder) {
            if (parent) {
                expected.tree.try_emplace(path, "/");
            }
            continue;
        }
        const auto existing = expected.tree.find(path);
        if (!parent || (existing != expected.tree.end() && existing->second == "/")) {
            expected.whole = false;
            break;
        }
        expected.tree[path] = "=" + record.node->contents;
    }
    return expected;
}

Tree snapshot(const fs::path& root) {
    Tree tree;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        std::ifstream in(entry.path(), std::ios::binary);
        tree[fs::relative(entry.path(), root).string()] =
            entry.is_directory() ? "/" : "=" + std::string(std::istreambuf_iterator<char>(in), {});
    }
    return tree;
}

class NoLog : public vx::LogReceiver {
public:
    void log(const vx::String& /*text*/) override {}
};

fs::path scratch;
vx::fuzzing::QuietUIServices ui;

vx::Ref<vx::FolderItem> itemAt(const fs::path& path) {
    return vx::New<vx::FolderItem>(vx::String(path.string(), vx::Encodings::UTF8),
                                   vx::FolderItem::PathModeNative);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    scratch = vx::fuzzing::EnterConfinement(*argc, *argv);
    vx::InstallUIServices(&ui);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    InputBytes input(data, size);
    const Node source = decodeTree(input);
    const fs::path site = scratch / "site";
    const fs::path chainTop = scratch / "chain";
    const fs::path extracted = chainTop / chainFolders().back();
    fs::create_directory(site);
    fs::create_directories(extracted);
    writeTree(site, source);

    vx::vxPacker::folder = itemAt(site);
    vx::vxPacker::target = itemAt(scratch / "out.vxpk");
    vx::vxPacker::name = "Round trip";
    vx::vxPacker::uid = "round.trip";
    vx::vxPacker::owner = vx::New<NoLog>();
    vx::vxPacker::build();
    if (!ui.messages.empty()) {
        fail("the packer showed a message");
    }

    auto file = vx::New<vx::vxpkFile>();
    file->fileSource = vx::vxPacker::target;
    const bool whole = file->extract(itemAt(extracted));
    if (file->name != "Round trip" || file->uid != "round.trip" || file->folderName != "site") {
        fail("the header differs");
    }

    std::vector<Record> records;
    collectRecords(source, "", records);
    const Extraction expected = expectedExtraction(records);
    if (whole != expected.whole ||
        ui.messages != std::vector<std::string>(whole ? 0 : 1, "Unable to write document.")) {
        fail("the extraction ended otherwise than the format says");
    }
    if (const Tree got = snapshot(chainTop); got != expected.tree) {
        printTree("extracted", got);
        printTree("expected", expected.tree);
        fail("the extracted tree differs");
    }

    fs::remove_all(site);
    fs::remove_all(chainTop);
    vx::fuzzing::CheckConfinement();
    ui.messages.clear();
    return 0;
}
