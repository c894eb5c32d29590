#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <string>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FileErrorCode.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

// Faults that a real disk seldom gives, made by substitute system calls.
namespace vx {
namespace {

using test::Faults;
using test::ScratchFolder;
using test::SystemCallFaults;

std::string randomBytes(std::size_t count) {
    std::mt19937 random(11);
    std::string bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
    return bytes;
}

// Larger than the stream's buffer, so that it is written, read and copied
// past the buffer as well as through it.
const std::string kLarge = randomBytes(400000);

// A file of every kind of write: a block too large for the buffer, small
// values gathered in it, a copy inside the kernel and one through the buffer;
// then the whole file read back through a stream.
std::string writeAndReadBack(const ScratchFolder& scratch) {
    const auto out = BinaryStream::Create(scratch.item("out"), true);
    out->LittleEndian = false;
    out->Write(String(kLarge, nullptr));
    out->WriteInt32(0x01020304);
    out->WritePString("mid");
    const auto source = BinaryStream::Open(scratch.item("source"), false);
    out->CopyFrom(*source, kLarge.size());
    source->Position(0);
    out->CopyFrom(*source, 5000);
    out->Close();
    const auto back = BinaryStream::Open(scratch.item("out"), false);
    return std::string(back->Read(static_cast<int64_t>(back->Length())).bytes());
}

TEST(BinaryStreamFaults, passingFaults_leaveEveryByteInPlace) {
    ScratchFolder scratch;
    scratch.writeFile("source", kLarge);
    const std::string expected =
        kLarge + "\x01\x02\x03\x04\x03mid" + kLarge + kLarge.substr(0, 5000);
    const std::pair<const char*, Faults> cases[] = {
        {"interrupted calls", {.interruptEvery = 2}},
        {"short writes and reads", {.writeAtMost = 1000, .readAtMost = 777}},
        {"kernel copy across file systems", {.copyFails = EXDEV}},
        {"kernel without the copy call", {.copyFails = ENOSYS}},
        {"kernel copy refused after a first block", {.copyFails = EXDEV, .copyBefore = 100000}},
    };
    for (const auto& [fault, faults] : cases) {
        SystemCallFaults injected(faults);
        EXPECT_EQ(writeAndReadBack(scratch), expected) << fault;
        EXPECT_EQ(scratch.readFile("out"), expected) << fault;
        EXPECT_GT(injected.injected(), 0) << fault;
    }
}

// Only the failures that mean "not between these files" give way to the copy
// through the buffer; any other is the stream's failure.
TEST(BinaryStreamFaults, kernelCopyFailingOtherwise_raisesItsErrorNumber) {
    ScratchFolder scratch;
    scratch.writeFile("source", kLarge);
    SystemCallFaults injected({.copyFails = EIO});
    const auto out = BinaryStream::Create(scratch.item("out"), true);
    const auto source = BinaryStream::Open(scratch.item("source"), false);
    try {
        out->CopyFrom(*source, kLarge.size());
        ADD_FAILURE() << "no IOException";
    } catch (const IOException& e) {
        EXPECT_EQ(e.ErrorNumber, PlatformErrorCodeBase + EIO);
    }
    EXPECT_EQ(injected.copyCalls(), 1);
}

}  // namespace
}  // namespace vx
