#pragma once

#include <string>

#include "container/vxpkRecordReader.h"

namespace vx::engine {

// Opens the package at path for reading and gives its descriptor; a file that cannot be opened ends
// the command with a system error, one that is no regular file is refused.
int openPackageFile(const std::string& path);
// The same as a stream that raises.
Ref<BinaryStream> openPackageStream(const std::string& path);
// A second descriptor of the package open at fd, as a stream that raises,
// for the record reader, which closes what it is given: the walk then reads
// the very file the caller holds, whatever happens to its name meanwhile.
Ref<BinaryStream> secondStreamOf(int fd, const std::string& path);

// Opens the package at path for the strict reader, which has read and
// checked its header.
vxpkRecordReader openPackage(const std::string& path);

// Runs body, turning the reader's findings into the command's failures named
// after the package: a problem of the package is unacceptable, a failed read
// a system error.
template <class Body>
auto withPackage(const std::string& path, Body&& body) -> decltype(body());

[[noreturn]] void failPackage(const std::string& path);

template <class Body>
auto withPackage(const std::string& path, Body&& body) -> decltype(body()) {
    try {
        return body();
    } catch (...) {
        failPackage(path);
    }
}

}  // namespace vx::engine
