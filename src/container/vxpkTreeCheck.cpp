#include "container/vxpkTreeCheck.h"

#include <cstdio>
#include <string_view>

#include "container/PackageProblem.h"

namespace vx {
namespace {

// Names in messages with their control bytes spelt out, so that a NUL or a
// line feed in a hostile package cannot break the one line of a diagnosis.
std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
            char escaped[5];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned char>(c));
            out += escaped;
        } else {
            out += c;
        }
    }
    return out + "\"";
}

// Why a name cannot stand for one item below the destination; empty when it can.
std::string unsafeName(std::string_view name) {
    if (name.empty()) {
        return "is empty";
    }
    if (name == "." || name == "..") {
        return "leads out of its folder";
    }
    if (name.find('/') != std::string_view::npos) {
        return "holds \"/\"";
    }
    if (name.find('\0') != std::string_view::npos) {
        return "holds a NUL byte";
    }
    return "";
}

void checkParent(const RecordEntry& entry, std::string_view parent) {
    if (parent.empty()) {
        return;
    }
    const std::string_view separator = vxpkFormat::kSeparator;
    size_t start = 0;
    while (true) {
        const size_t end = parent.find(separator, start);
        const std::string_view component = parent.substr(start, end - start);
        if (const std::string why = unsafeName(component); !why.empty()) {
            throw PackageProblem(entry.number, entry.parentOffset,
                                 "the parent " + quoted(parent) + " has a component that " + why);
        }
        if (end == std::string_view::npos) {
            return;
        }
        start = end + separator.size();
    }
}

}  // namespace

std::string RecordPath(const vxpkFormat::Record& record) {
    std::string path(record.parent.bytes());
    for (char& c : path) {
        if (c == vxpkFormat::kSeparator[0]) {
            c = '/';
        }
    }
    return (path.empty() ? "" : path + "/") + std::string(record.name.bytes());
}

std::string vxpkTreeCheck::admit(const RecordEntry& entry) {
    const std::string_view name = entry.fields.name.bytes();
    if (const std::string why = unsafeName(name); !why.empty()) {
        throw PackageProblem(entry.number, entry.offset, "the name " + quoted(name) + " " + why);
    }
    if (entry.isFolder() && name.find(vxpkFormat::kSeparator) != std::string_view::npos) {
        throw PackageProblem(entry.number, entry.offset,
                             "the folder name " + quoted(name) + " holds the separator \":\"");
    }
    const std::string_view parent = entry.fields.parent.bytes();
    checkParent(entry, parent);
    const std::string path = RecordPath(entry.fields);
    if (!parent.empty()) {
        const std::string parentPath = path.substr(0, path.size() - name.size() - 1);
        const auto found = recorded_.find(parentPath);
        if (found == recorded_.end()) {
            throw PackageProblem(
                entry.number, entry.parentOffset,
                "the parent folder " + quoted(parentPath) + " is not recorded before this item");
        }
        if (!found->second) {
            throw PackageProblem(entry.number, entry.parentOffset,
                                 "the parent " + quoted(parentPath) + " is a file");
        }
    }
    if (!recorded_.emplace(path, entry.isFolder()).second) {
        throw PackageProblem(entry.number, entry.offset,
                             "the path " + quoted(path) + " is recorded twice");
    }
    return path;
}

}  // namespace vx
