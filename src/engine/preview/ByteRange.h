#pragma once

#include <cstdint>
#include <string_view>

namespace vx::engine {

// What a Range header asks of a file of a given size, as the server answers
// it: the whole file, one part of it, or nothing it can give.
struct ByteRange {
    enum class Kind {
        // No single byte range was asked for (no header, several ranges, or
        // another unit): answer 200 with the whole file.
        kWhole,
        // Answer 206 with length bytes from first.
        kPart,
        // Answer 416: the range is malformed or starts past the end.
        kUnsatisfiable,
    };
    Kind kind = Kind::kWhole;
    uint64_t first = 0;
    uint64_t length = 0;
};

// Reads a "bytes=" header value for a file of size bytes: "A-B", "A-" or the
// suffix "-N". A last position past the end is cut to the end, a suffix
// longer than the file is the whole file; several ranges are answered with
// the whole file, which a server may always do. Malformed single ranges are
// unsatisfiable, as the HTTP library already answers them before the
// server sees them.
ByteRange ParseByteRange(std::string_view header, uint64_t size);

}  // namespace vx::engine
