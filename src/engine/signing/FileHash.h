#pragma once

#include <array>
#include <string>
#include <vector>

// Digests of a whole file, read once from start to end in blocks, so that the
// memory stays the same whatever the file's size.
namespace vx::engine {

using Blake2b512 = std::array<unsigned char, 64>;
using Sha256 = std::array<unsigned char, 32>;

Blake2b512 Blake2b512OfFile(const std::string& path);
// The same of the file open at fd, read by offset from its start whatever
// fd's position; failures name path.
Blake2b512 Blake2b512OfFile(int fd, const std::string& path);
Sha256 Sha256OfFile(const std::string& path);
// The whole file in memory, for the legacy signatures that sign the bytes
// themselves; refused above limit bytes.
std::vector<unsigned char> WholeFile(const std::string& path, uint64_t limit);

// Lower-case hex, as sha256sum prints it.
std::string HexOf(const Sha256& digest);

}  // namespace vx::engine
