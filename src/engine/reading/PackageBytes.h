#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vx::engine {

// Reads exactly length bytes at offset of the open package fd into bytes
// (replacing what it held) with the file layer's full read at an offset,
// so that many threads can read one descriptor at once: the server's
// answers, and the two packages that diff compares. Interrupted and short
// reads are taken up again; false, with errno set, on a failed read or on a
// file that ends before the bytes do (EIO then).
bool ReadPackageBytes(int fd, uint64_t offset, std::size_t length, std::string& bytes);

}  // namespace vx::engine
