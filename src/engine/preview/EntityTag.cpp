#include "engine/preview/EntityTag.h"

#include <cstdio>

namespace vx::engine {
namespace {

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

std::string PackageIdentityOf(const struct stat& info) {
    const auto nanoseconds = static_cast<unsigned long long>(info.st_mtim.tv_sec) * 1000000000ULL +
                             static_cast<unsigned long long>(info.st_mtim.tv_nsec);
    char identity[64];
    std::snprintf(identity, sizeof identity, "%llx-%llx-%llx",
                  static_cast<unsigned long long>(info.st_ino),
                  static_cast<unsigned long long>(info.st_size), nanoseconds);
    return identity;
}

std::string EntityTagOf(std::string_view packageIdentity, const IndexedRecord& file) {
    char place[40];
    std::snprintf(place, sizeof place, "%llx-%llx",
                  static_cast<unsigned long long>(file.recordOffset),
                  static_cast<unsigned long long>(file.size));
    // Appended rather than "\"" + ...: GCC 12 at -O3 warns falsely
    // (-Wrestrict) on a literal inserted before a temporary string.
    return std::string("\"").append(packageIdentity).append("-").append(place).append("\"");
}

bool NoneMatchNames(std::string_view header, std::string_view tag) {
    while (!header.empty()) {
        const size_t comma = header.find(',');
        std::string_view candidate = trimmed(header.substr(0, comma));
        if (candidate.starts_with("W/")) {
            candidate.remove_prefix(2);
        }
        if (candidate == "*" || candidate == tag) {
            return true;
        }
        header = comma == std::string_view::npos ? std::string_view() : header.substr(comma + 1);
    }
    return false;
}

}  // namespace vx::engine
