#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "runtime/files/BinaryStream.h"
#include "runtime/files/FileErrorCode.h"
#include "runtime/files/FolderItem.h"
#include "runtime/text/TextEncoding.h"
#include "support/ChildProcess.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using test::ScratchFolder;

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

    ::chmod(scratch.makeFolder("locked").c_str(), 0755);
    EXPECT_EQ(test::RunInChild([&] {
                  return std::to_string(
                      ioErrorOf([&] { BinaryStream::Create(scratch.item("locked/new"), true); }));
              }),
              "102");
}

// Writes value through write, then gives whether read brings it back.
template <class T>
std::function<bool(BinaryStream&)> roundTrip(void (BinaryStream::*write)(T),
                                             T (BinaryStream::*read)(),
                                             std::type_identity_t<T> value) {
    return [=](BinaryStream& s) {
        (s.*write)(value);
        s.Position(0);
        return (s.*read)() == value;
    };
}

TEST(BinaryStream, typedValues_haveTheBytesOfTheirByteOrder) {
    ScratchFolder scratch;
    using S = BinaryStream;
    const std::pair<std::function<bool(S&)>, std::string> cases[] = {
        {roundTrip(&S::WriteInt32, &S::ReadInt32, 1), std::string("\0\0\0\1", 4)},
        {roundTrip(&S::WriteInt32, &S::ReadInt32, -2), "\xff\xff\xff\xfe"},
        {roundTrip(&S::WriteInt8, &S::ReadInt8, -1), "\xff"},
        {roundTrip(&S::WriteUInt8, &S::ReadUInt8, 200), "\xc8"},
        {roundTrip(&S::WriteInt16, &S::ReadInt16, 0x0102), "\x01\x02"},
        {roundTrip(&S::WriteUInt16, &S::ReadUInt16, 0xfedc), "\xfe\xdc"},
        {roundTrip(&S::WriteUInt32, &S::ReadUInt32, 0x89abcdef), "\x89\xab\xcd\xef"},
        {roundTrip(&S::WriteInt64, &S::ReadInt64, -0x0102030405060708),
         "\xfe\xfd\xfc\xfb\xfa\xf9\xf8\xf8"},
        {roundTrip(&S::WriteUInt64, &S::ReadUInt64, ~0ull), std::string(8, '\xff')},
        {roundTrip(&S::WriteBoolean, &S::ReadBoolean, true), "\x01"},
        {roundTrip(&S::WriteSingle, &S::ReadSingle, 1.5f), std::string("\x3f\xc0\0\0", 4)},
        {roundTrip(&S::WriteDouble, &S::ReadDouble, -2.0), std::string("\xc0\0\0\0\0\0\0\0", 8)},
        {roundTrip(&S::WriteCurrency, &S::ReadCurrency, 12.3456),
         std::string("\0\0\0\0\0\x01\xe2\x40", 8)},
    };
    for (const bool little : {false, true}) {
        for (const auto& [readsBack, bigEndian] : cases) {
            const auto stream = BinaryStream::Create(scratch.item("value"), true);
            stream->LittleEndian = little;
            EXPECT_TRUE(readsBack(*stream)) << testing::PrintToString(bigEndian) << little;
            stream->Close();
            EXPECT_EQ(scratch.readFile("value"),
                      little ? std::string(bigEndian.rbegin(), bigEndian.rend()) : bigEndian);
        }
    }
}

TEST(BinaryStream, pascalStrings_countBytesUnsignedAndCutAt255) {
    ScratchFolder scratch;
    const auto stream = BinaryStream::Create(scratch.item("p"), true);
    const std::string high(200, '\x80'), long300(300, 'x'), utf8 = "\xc3\xa9t\xc3\xa9";
    for (const std::string& text : {std::string(), high, long300, utf8}) {
        stream->WritePString(String(text, nullptr));
    }
    stream->Position(0);
    EXPECT_EQ(stream->ReadPString().bytes(), "");
    EXPECT_EQ(stream->ReadPString().bytes(), high);
    const String cut = stream->ReadPString(Encodings::UTF8);
    EXPECT_EQ(cut.bytes(), long300.substr(0, 255));
    EXPECT_EQ(cut.encoding(), Encodings::UTF8);
    EXPECT_EQ(stream->ReadPString().bytes(), utf8);
    EXPECT_TRUE(stream->EOF_());
    EXPECT_EQ(stream->ReadPString().bytes(), "");
    stream->Close();
    EXPECT_EQ(scratch.readFile("p").size(), 1 + 201 + 256 + 6u);
}

TEST(BinaryStream, readAtTheEnd_isShortForBytesAndAFailureForValues) {
    ScratchFolder scratch;
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    scratch.writeFile("bytes", all);
    const auto stream = BinaryStream::Open(scratch.item("bytes"), false);
    EXPECT_EQ(stream->Read(-5, nullptr).byteLength(), 0u);
    EXPECT_EQ(stream->Read(0, nullptr).byteLength(), 0u);
    EXPECT_EQ(stream->Position(), 0u);
    const String got = stream->Read(1000, Encodings::ASCII);
    EXPECT_EQ(got.bytes(), all);
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
                    const std::string data(size, static_cast<char>('a' + step % 26));
                    stream->Write(String(data, nullptr));
                    model.resize(std::max<std::size_t>(model.size(), position + size), '\0');
                    model.replace(position, size, data);
                    position += size;
                    break;
                }
                case 1: {
                    const std::string expected =
                        position < model.size() ? model.substr(position, size) : "";
                    ASSERT_EQ(stream->Read(static_cast<int64_t>(size), nullptr).bytes(), expected);
                    position += expected.size();
                    break;
                }
                case 2:
                    stream->Position(position = random() % (model.size() + 10));
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
    const auto code = std::to_string(PlatformErrorCodeBase + EFBIG);
    const std::tuple<std::size_t, std::size_t, bool, std::string> cases[] = {
        {50, 100, true, "close " + code},
        {2000, 1000, true, "write " + code},
        {50, 100, false, "none " + code},
    };
    for (const auto& [pieces, pieceSize, raises, outcome] : cases) {
        const auto writeAndClose = [&] {
            const auto stream = BinaryStream::Create(scratch.item("limited"), true);
            stream->UseIOExceptions = raises;
            std::string operation = "write ";
            try {
                for (std::size_t i = 0; i < pieces; ++i) {
                    stream->Write(String(std::string(pieceSize, 'z'), nullptr));
                }
                operation = "close ";
                stream->Close();
            } catch (const IOException& e) {
                return operation + std::to_string(e.ErrorNumber);
            }
            return "none " + std::to_string(stream->LastErrorCode());
        };
        EXPECT_EQ(test::RunInChild(writeAndClose, {.unprivileged = false, .fileSizeLimit = 4096}),
                  outcome)
            << pieces << "x" << pieceSize;
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
        auto& content = contents.emplace_back(sizes[i], '\0');
        std::generate(content.begin(), content.end(), [&] { return static_cast<char>(random()); });
        file += "\x02n" + std::to_string(i) + content;
    }
    const std::string shm = "/dev/shm/vx-copy-" + std::to_string(::getpid());
    std::ofstream(shm, std::ios::binary).write(file.data(), static_cast<long>(file.size()));
    for (const std::string& sourcePath : {scratch.writeFile("source", file), shm}) {
        const auto source = BinaryStream::Open(
            New<FolderItem>(String(std::string_view(sourcePath), nullptr), 3), false);
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            SCOPED_TRACE(sourcePath + " piece " + std::to_string(i));
            // Appended rather than "n" + ...: GCC 12 at -O3 warns falsely
            // (-Wrestrict) on a literal inserted before a temporary string.
            EXPECT_EQ(source->ReadPString().bytes(), std::string("n").append(std::to_string(i)));
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
