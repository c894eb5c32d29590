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

// A source that fails part way takes back what the copy wrote, so that the
// file and the position end where the copy began; a destination that fails
// keeps what reached it. Both the kernel copy and the one through the buffer.
TEST(BinaryStreamFaults, copyFailingPartWay_takesBackOnlyWhatAFailingSourceGave) {
    ScratchFolder scratch;
    scratch.writeFile("source", kLarge);
    const std::string head = "head";
    const struct {
        const char* where;
        Faults faults;
        int error;
        std::size_t kept;
    } cases[] = {
        {"source, kernel copy", {.copyFails = EIO, .copyBefore = 200000}, EIO, 4},
        {"source, through the buffer", {.readFailsAt = 200000, .copyFails = EXDEV}, EIO, 4},
        {"full disk, kernel copy", {.copyFails = ENOSPC, .copyBefore = 200000}, ENOSPC, 200004},
        {"quota, kernel copy", {.copyFails = EDQUOT, .copyBefore = 200000}, EDQUOT, 200004},
        {"file too large, kernel copy", {.copyFails = EFBIG, .copyBefore = 200000}, EFBIG, 200004},
        {"full disk, through the buffer",
         {.diskSpace = 150000, .copyFails = EXDEV},
         ENOSPC,
         150000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.where);
        SystemCallFaults injected(c.faults);
        const auto out = BinaryStream::Create(scratch.item("out"), true);
        out->Write(String(head, nullptr));
        const auto source = BinaryStream::Open(scratch.item("source"), false);
        try {
            out->CopyFrom(*source, kLarge.size());
            ADD_FAILURE() << "no IOException";
        } catch (const IOException& e) {
            EXPECT_EQ(e.ErrorNumber, FileErrorCode(c.error));
        }
        if (c.kept == head.size()) {
            EXPECT_EQ(out->Position(), head.size());
        }
        out->UseIOExceptions = false;
        out->Close();
        const std::string written = scratch.readFile("out");
        EXPECT_EQ(written.size(), c.kept);
        EXPECT_TRUE(written == (head + kLarge).substr(0, c.kept));
        EXPECT_GT(injected.injected(), 0);
    }
}

}  // namespace
}  // namespace vx
