#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vx::engine {

// One read of up to into.size() bytes at offset of the file fd, through the
// system call table and retried when a signal interrupts it; the bytes read,
// 0 at the end. A failure ends the operation as a system error naming path.
std::size_t ReadAt(int fd, const std::string& path, std::span<unsigned char> into, uint64_t offset);

}  // namespace vx::engine
