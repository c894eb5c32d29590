#include "engine/preview/ByteRange.h"

#include <limits>
#include <optional>

namespace vx::engine {
namespace {

constexpr std::string_view kUnit = "bytes=";

// The decimal number spelled by digits, saturated at the largest value so
// that a position beyond any file stays beyond it; nullopt unless all are
// digits.
std::optional<uint64_t> position(std::string_view digits) {
    if (digits.empty()) {
        return std::nullopt;
    }
    constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();
    uint64_t value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        const auto next = static_cast<uint64_t>(digit - '0');
        value = value > (kMost - next) / 10 ? kMost : value * 10 + next;
    }
    return value;
}

ByteRange part(uint64_t first, uint64_t last) {
    return {.kind = ByteRange::Kind::kPart, .first = first, .length = last - first + 1};
}

constexpr ByteRange kUnsatisfiable{.kind = ByteRange::Kind::kUnsatisfiable};

// "-N": the last N bytes.
ByteRange suffix(std::string_view count, uint64_t size) {
    const auto bytes = position(count);
    if (!bytes || *bytes == 0 || size == 0) {
        return kUnsatisfiable;
    }
    return part(*bytes >= size ? 0 : size - *bytes, size - 1);
}

}  // namespace

ByteRange ParseByteRange(std::string_view header, uint64_t size) {
    if (!header.starts_with(kUnit) || header.find(',') != std::string_view::npos) {
        return {};
    }
    const std::string_view asked = header.substr(kUnit.size());
    const size_t dash = asked.find('-');
    if (dash == std::string_view::npos) {
        return kUnsatisfiable;
    }
    if (dash == 0) {
        return suffix(asked.substr(1), size);
    }
    const auto first = position(asked.substr(0, dash));
    const std::string_view lastText = asked.substr(dash + 1);
    const auto last = lastText.empty() ? std::optional(size - 1) : position(lastText);
    if (!first || !last || *first > *last || *first >= size) {
        return kUnsatisfiable;
    }
    return part(*first, std::min(*last, size - 1));
}

}  // namespace vx::engine
