#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "runtime/BinaryStream.h"
#include "runtime/FileErrorCode.h"
#include "runtime/FolderItem.h"
#include "runtime/TextEncoding.h"
#include "support/ChildProcess.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using test::ScratchFolder;

std::string bytesOf(const String& s) {
    return std::string(s.bytes());
}
String raw(std::string_view bytes) {
    return String(bytes, nullptr);
}

// The ErrorNumber of the IOException that action raises, or -1 if none.
template <class Action>
int64_t ioErrorOf(Action&& action) {
    try {
        action();
    } catch (const IOException& e) {
        return e.ErrorNumber;
    }
    return -1;
}

TEST(BinaryStream, createAndOpen_failAsTheirCallersExpect) {
    ScratchFolder scratch;
    scratch.writeFile("existing", "old bytes");
    EXPECT_THROW(BinaryStream::Create(nullptr, false), NilObjectException);
    EXPECT_THROW(BinaryStream::Create(nullptr, true), NilObjectException);
    EXPECT_THROW(BinaryStream::Open(nullptr, false), NilObjectException);

    EXPECT_EQ(ioErrorOf([&] { BinaryStream::Create(scratch.item("existing"), false); }), 104);
    EXPECT_EQ(scratch.readFile("existing"), "old bytes");

    const auto missing = scratch.item("missing");
    EXPECT_EQ(ioErrorOf([&] { BinaryStream::Open(missing, false); }),
              PlatformErrorCodeBase + ENOENT);
    EXPECT_EQ(missing->LastErrorCode(), PlatformErrorCodeBase + ENOENT);

    const auto replaced = BinaryStream::Create(scratch.item("existing"), true);
    EXPECT_EQ(replaced->Length(), 0u);
    EXPECT_TRUE(replaced->UseIOExceptions);
    EXPECT_FALSE(scratch.item("existing")->OpenAsBinaryFile(false)->UseIOExceptions);

    scratch.makeFolder("locked");
    ::chmod(scratch.path("locked").c_str(), 0755);
    EXPECT_EQ(test::RunInChild([&] {
                  return std::to_string(
                      ioErrorOf([&] { BinaryStream::Create(scratch.item("locked/new"), true); }));
              }),
              "102");
}

struct TypedCase {
    std::function<void(BinaryStream&)> write;
    std::function<bool(BinaryStream&)> readsBack;
    std::string bigEndian;
};

template <class T>
TypedCase typed(void (BinaryStream::*write)(T), T (BinaryStream::*read)(),
                std::type_identity_t<T> value, std::string bigEndian) {
    return {[=](BinaryStream& s) { (s.*write)(value); },
            [=](BinaryStream& s) { return (s.*read)() == value; }, std::move(bigEndian)};
}

TEST(BinaryStream, typedValues_haveTheBytesOfTheirByteOrder) {
    ScratchFolder scratch;
    using S = BinaryStream;
    const TypedCase cases[] = {
        typed(&S::WriteInt32, &S::ReadInt32, 1, std::string("\0\0\0\1", 4)),
        typed(&S::WriteInt32, &S::ReadInt32, -2, "\xff\xff\xff\xfe"),
        typed(&S::WriteInt8, &S::ReadInt8, -1, "\xff"),
        typed(&S::WriteUInt8, &S::ReadUInt8, 200, "\xc8"),
        typed(&S::WriteInt16, &S::ReadInt16, 0x0102, "\x01\x02"),
        typed(&S::WriteUInt16, &S::ReadUInt16, 0xfedc, "\xfe\xdc"),
        typed(&S::WriteUInt32, &S::ReadUInt32, 0x89abcdef, "\x89\xab\xcd\xef"),
        typed(&S::WriteInt64, &S::ReadInt64, -0x0102030405060708,
              "\xfe\xfd\xfc\xfb\xfa\xf9\xf8\xf8"),
        typed(&S::WriteUInt64, &S::ReadUInt64, ~0ull, std::string(8, '\xff')),
        typed(&S::WriteBoolean, &S::ReadBoolean, true, "\x01"),
        typed(&S::WriteSingle, &S::ReadSingle, 1.5f, std::string("\x3f\xc0\0\0", 4)),
        typed(&S::WriteDouble, &S::ReadDouble, -2.0, std::string("\xc0\0\0\0\0\0\0\0", 8)),
        typed(&S::WriteCurrency, &S::ReadCurrency, 12.3456,
              std::string("\0\0\0\0\0\x01\xe2\x40", 8)),
    };
    for (const bool little : {false, true}) {
        for (std::size_t i = 0; i < std::size(cases); ++i) {
            const auto stream = BinaryStream::Create(scratch.item("value"), true);
            stream->LittleEndian = little;
            cases[i].write(*stream);
            stream->Position(0);
            EXPECT_TRUE(cases[i].readsBack(*stream)) << i << " little " << little;
            stream->Close();
            std::string expected = cases[i].bigEndian;
            if (little) {
                std::reverse(expected.begin(), expected.end());
            }
            EXPECT_EQ(scratch.readFile("value"), expected) << i << " little " << little;
        }
    }
}

TEST(BinaryStream, pascalStrings_countBytesUnsignedAndCutAt255) {
    ScratchFolder scratch;
    const auto stream = BinaryStream::Create(scratch.item("p"), true);
    const std::string long300(300, 'x');
    const std::string utf8 = "\xc3\xa9t\xc3\xa9";
    stream->WritePString("");
    stream->WritePString(raw(std::string(200, '\x80')));
    stream->WritePString(raw(long300));
    stream->WritePString(raw(utf8));
    stream->Position(0);
    EXPECT_EQ(bytesOf(stream->ReadPString()), "");
    EXPECT_EQ(bytesOf(stream->ReadPString()), std::string(200, '\x80'));
    const String cut = stream->ReadPString(Encodings::UTF8);
    EXPECT_EQ(bytesOf(cut), long300.substr(0, 255));
    EXPECT_EQ(cut.encoding(), Encodings::UTF8);
    EXPECT_EQ(bytesOf(stream->ReadPString()), utf8);
    EXPECT_TRUE(stream->EOF_());
    EXPECT_EQ(bytesOf(stream->ReadPString()), "");
    stream->Close();
    EXPECT_EQ(scratch.readFile("p").size(), 1 + 201 + 256 + 6u);
}

TEST(BinaryStream, readAtTheEnd_isShortForBytesAndAFailureForValues) {
    ScratchFolder scratch;
    std::string all;
    for (int b = 0; b < 256; ++b) {
        all += static_cast<char>(b);
    }
    scratch.writeFile("bytes", all);
    const auto stream = BinaryStream::Open(scratch.item("bytes"), false);
    EXPECT_EQ(stream->Read(-5, nullptr).byteLength(), 0u);
    EXPECT_EQ(stream->Read(0, nullptr).byteLength(), 0u);
    EXPECT_EQ(stream->Position(), 0u);
    const String got = stream->Read(1000, Encodings::ASCII);
    EXPECT_EQ(bytesOf(got), all);
    EXPECT_EQ(got.encoding(), Encodings::ASCII);
    EXPECT_TRUE(stream->EOF_());

    stream->Position(254);
    EXPECT_EQ(ioErrorOf([&] { stream->ReadInt32(); }), EndOfStreamErrorCode);
    stream->UseIOExceptions = false;
    stream->Position(255);
    EXPECT_EQ(stream->ReadInt16(), 0);
    EXPECT_TRUE(stream->ReadError());
    stream->Position(65);
    EXPECT_EQ(stream->ReadUInt8(), 65);
    EXPECT_EQ(stream->LastErrorCode(), 0);
    stream->Write("x");
    EXPECT_EQ(stream->LastErrorCode(), PlatformErrorCodeBase + EBADF);
    EXPECT_TRUE(stream->WriteError());

    scratch.writeFile("empty", "");
    EXPECT_TRUE(BinaryStream::Open(scratch.item("empty"), false)->EOF_());
}

// Random writes, reads, seeks and resizes against a plain string holding what
// the file should hold: the buffer must never let the two disagree.
TEST(BinaryStream, mixedOperations_matchAModelOfTheFile) {
    ScratchFolder scratch;
    std::mt19937 random(20240611);
    for (int round = 0; round < 10; ++round) {
        const auto stream = BinaryStream::Create(scratch.item("model"), true);
        std::string model;
        uint64_t position = 0;
        for (int step = 0; step < 150; ++step) {
            const auto size =
                static_cast<std::size_t>(random() % 3 == 0 ? random() % 300000 : random() % 64);
            switch (random() % 5) {
                case 0: {
                    std::string data(size, static_cast<char>('a' + step % 26));
                    stream->Write(raw(data));
                    if (model.size() < position + size) {
                        model.resize(position + size, '\0');
                    }
                    model.replace(position, size, data);
                    position += size;
                    break;
                }
                case 1: {
                    const std::string expected =
                        position < model.size() ? model.substr(position, size) : "";
                    ASSERT_EQ(bytesOf(stream->Read(static_cast<int64_t>(size), nullptr)), expected);
                    position += expected.size();
                    break;
                }
                case 2:
                    position = random() % (model.size() + 10);
                    stream->Position(position);
                    break;
                case 3:
                    model.resize(random() % (model.size() + 1000), '\0');
                    stream->Length(model.size());
                    break;
                default:
                    ASSERT_EQ(stream->Length(), model.size());
                    ASSERT_EQ(stream->EOF_(), position >= model.size());
            }
            ASSERT_EQ(stream->Position(), position);
        }
        stream->Close();
        ASSERT_EQ(scratch.readFile("model"), model) << "round " << round;
    }
}

TEST(BinaryStream, writeBeyondTheFileSizeLimit_raisesFromWriteOrClose) {
    ScratchFolder scratch;
    struct Case {
        std::size_t pieces;
        std::size_t pieceSize;
        bool raises;
        std::string failingOperation;
    };
    const auto code = std::to_string(PlatformErrorCodeBase + EFBIG);
    for (const Case& c :
         {Case{50, 100, true, "close " + code}, Case{2000, 1000, true, "write " + code},
          Case{50, 100, false, "none " + code}}) {
        const std::string outcome = test::RunInChild(
            [&] {
                const auto stream = BinaryStream::Create(scratch.item("limited"), true);
                stream->UseIOExceptions = c.raises;
                const String piece = raw(std::string(c.pieceSize, 'z'));
                std::string operation = "write ";
                try {
                    for (std::size_t i = 0; i < c.pieces; ++i) {
                        stream->Write(piece);
                    }
                    operation = "close ";
                    stream->Close();
                } catch (const IOException& e) {
                    return operation + std::to_string(e.ErrorNumber);
                }
                return "none " + std::to_string(stream->LastErrorCode());
            },
            {.unprivileged = false, .fileSizeLimit = 4096});
        EXPECT_EQ(outcome, c.failingOperation) << c.pieces << "x" << c.pieceSize;
    }
}

// Runs of contents of many sizes, each behind a field that names it, as a
// reader meets them: some lie whole in what the source has read ahead, some
// begin there and end beyond it, some are larger than its buffer. The copy in
// /dev/shm lies on another file system, where the kernel copy gives way to the
// copy through the buffer.
TEST(BinaryStream, copyFrom_betweenReadsOfOneSource_placesExactlyTheSourceBytes) {
    ScratchFolder scratch;
    const std::vector<std::size_t> sizes = {0, 1, 300, 131071, 131072, 131073, 5, 3000000, 0, 9};
    std::mt19937 random(7);
    std::string file;
    std::vector<std::string> contents;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        file += "\x02n" + std::to_string(i);
        contents.emplace_back(sizes[i], '\0');
        for (auto& c : contents.back()) {
            c = static_cast<char>(random());
        }
        file += contents.back();
    }
    const std::string shm = "/dev/shm/vx-copy-" + std::to_string(::getpid());
    std::ofstream(shm, std::ios::binary).write(file.data(), static_cast<long>(file.size()));
    for (const std::string& sourcePath : {scratch.writeFile("source", file), shm}) {
        const auto source = BinaryStream::Open(
            New<FolderItem>(String(std::string_view(sourcePath), nullptr), 3), false);
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            SCOPED_TRACE(sourcePath + " piece " + std::to_string(i));
            EXPECT_EQ(bytesOf(source->ReadPString()), "n" + std::to_string(i));
            const auto target = BinaryStream::Create(scratch.item("target"), true);
            target->WritePString("head");
            // The last copy asks for more than is left and gets only the rest.
            target->CopyFrom(*source, sizes[i] + (i + 1 == sizes.size() ? 100 : 0));
            target->WritePString("tail");
            EXPECT_EQ(target->Position(), 5 + sizes[i] + 5);
            target->Close();
            EXPECT_EQ(scratch.readFile("target"), "\x04head" + contents[i] + "\x04tail");
        }
        EXPECT_TRUE(source->EOF_());
    }
    ::unlink(shm.c_str());
}

}  // namespace
}  // namespace vx
