#include "engine/packing/PackWriter.h"

#include <fcntl.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "engine/core/EngineFailure.h"
#include "engine/core/Interruption.h"
#include "engine/core/OwnedDescriptor.h"
#include "engine/packing/SourceFolders.h"
#include "runtime/files/FullCalls.h"
#include "runtime/files/SystemCalls.h"

namespace vx::engine {
namespace {

// A file of this size or more is copied in parts of its own instead of being
// gathered in memory with its neighbours.
constexpr uint64_t kLargeFileBytes = uint64_t{1} << 20;
// A run of small items is written out once it holds this much, which bounds
// the memory of each thread.
constexpr uint64_t kRunBytes = uint64_t{1} << 20;
constexpr std::size_t kRunItems = 256;
// Large files are copied in parts of this size, so that both threads share
// one file as well.
constexpr uint64_t kPartBytes = uint64_t{4} << 20;
// Each write hands the page cache at most this much. Larger writes make the
// kernel reach for larger blocks of memory, which it may first have to
// assemble where memory is fragmented or was handed back to a virtual
// machine's host: three files of 300 MB packed in 0.3 to 1.4 s, varying from
// run to run, in writes of 1 MiB or more (and in copies inside the kernel),
// and in 0.29 to 0.34 s in writes of 64 KiB.
constexpr std::size_t kWriteBytes = std::size_t{64} << 10;
constexpr int kThreads = 2;

// Items [first, end) from offset on; or, for a large file, the part of its
// contents from contentsFrom on, which for the first part begins with the
// record.
struct Piece {
    std::size_t first = 0;
    std::size_t end = 0;
    uint64_t offset = 0;
    bool part = false;
    uint64_t contentsFrom = 0;
    uint64_t contentsBytes = 0;
};

vxpkFormat::Record recordOf(const PlannedItem& item) {
    return {.name = String(item.name, nullptr),
            .parent = String(item.parent, nullptr),
            .type = item.isFolder ? vxpkFormat::kFolderType : vxpkFormat::kFileType,
            .length = static_cast<int32_t>(item.size)};
}

bool isLarge(const PlannedItem& item) {
    return !item.isFolder && !item.generated && item.size >= kLargeFileBytes;
}

// The pieces in package order; end becomes the size of the package.
std::vector<Piece> cutIntoPieces(const std::vector<PlannedItem>& items, uint64_t start,
                                 uint64_t& end) {
    std::vector<Piece> pieces;
    uint64_t offset = start;
    Piece run{.offset = start};
    uint64_t runBytes = 0;
    const auto closeRun = [&] {
        if (run.end > run.first) {
            pieces.push_back(run);
        }
        run = Piece{.first = run.end, .end = run.end, .offset = offset};
        runBytes = 0;
    };
    for (std::size_t index = 0; index < items.size(); ++index) {
        const PlannedItem& item = items[index];
        const uint64_t recordBytes = vxpkFormat::recordBytes(recordOf(item));
        if (isLarge(item)) {
            closeRun();
            for (uint64_t from = 0; from < item.size; from += kPartBytes) {
                pieces.push_back({.first = index,
                                  .end = index + 1,
                                  .offset = from == 0 ? offset : offset + recordBytes + from,
                                  .part = true,
                                  .contentsFrom = from,
                                  .contentsBytes = std::min(kPartBytes, item.size - from)});
            }
            offset += recordBytes + item.size;
            run = Piece{.first = index + 1, .end = index + 1, .offset = offset};
            continue;
        }
        run.end = index + 1;
        runBytes += recordBytes + item.size;
        offset += recordBytes + item.size;
        if (runBytes >= kRunBytes || run.end - run.first >= kRunItems) {
            closeRun();
        }
    }
    closeRun();
    end = offset;
    return pieces;
}

class PieceWriter {
public:
    PieceWriter(int out, const std::string& package, int top, const PackPlan& plan,
                WorkProgress& progress)
        : out_(out), package_(package), top_(top), plan_(plan), progress_(progress) {}

    // Fills pieces in turn until none is left or one has failed; the failure
    // of the earliest piece is kept.
    void work(const std::vector<Piece>& pieces);
    void raiseFailure() const {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

private:
    void writeRun(const Piece& piece, SourceFolders& folders, std::string& buffer);
    void writePart(const Piece& piece, SourceFolders& folders, std::string& buffer);
    int openFile(const PlannedItem& item, SourceFolders& folders) const;
    // Writes the bytes of items from first on, or of a part of first.
    void writeAt(std::size_t first, const char* data, std::size_t count, uint64_t offset) const;
    [[noreturn]] void failWrite(std::size_t first, uint64_t written, int error) const;

    int out_;
    const std::string& package_;
    int top_;
    const PackPlan& plan_;
    WorkProgress& progress_;
    std::mutex mutex_;
    // The kernel lets one write into a file at a time and makes a second
    // writer spin for its turn, burning a processor; taking turns here, the
    // waiting thread sleeps. Gathering a run of small files needs no turn.
    std::mutex outputTurn_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> failed_ = false;
    std::size_t failedPiece_ = 0;
    std::exception_ptr failure_;
};

void PieceWriter::work(const std::vector<Piece>& pieces) {
    SourceFolders folders(top_, plan_.items);
    std::string buffer;
    while (!failed_) {
        const std::size_t index = next_++;
        if (index >= pieces.size()) {
            return;
        }
        const Piece& piece = pieces[index];
        try {
            StopIfInterrupted();
            if (piece.part) {
                writePart(piece, folders, buffer);
            } else {
                writeRun(piece, folders, buffer);
            }
        } catch (...) {
            const std::lock_guard lock(mutex_);
            if (!failure_ || index < failedPiece_) {
                failure_ = std::current_exception();
                failedPiece_ = index;
            }
            failed_ = true;
        }
    }
}

// A write of the items from first on failed after written bytes: the
// failure names the item that it failed in.
[[noreturn]] void PieceWriter::failWrite(std::size_t first, uint64_t written, int error) const {
    std::size_t index = first;
    uint64_t end = vxpkFormat::recordBytes(recordOf(plan_.items[index])) + plan_.items[index].size;
    while (end <= written && index + 1 < plan_.items.size()) {
        ++index;
        end += vxpkFormat::recordBytes(recordOf(plan_.items[index])) + plan_.items[index].size;
    }
    throw EngineFailure(FailureKind::kSystem, plan_.items[index].relative + " into " + package_ +
                                                  ": " + std::strerror(error));
}

void PieceWriter::writeAt(std::size_t first, const char* data, std::size_t count,
                          uint64_t offset) const {
    const FullResult written = writeFullyAt(out_, data, count, offset, kWriteBytes);
    if (written.error != 0) {
        failWrite(first, written.bytes, written.error);
    }
}

int PieceWriter::openFile(const PlannedItem& item, SourceFolders& folders) const {
    // Non-blocking, so that something swapped in for a file since the walk
    // cannot hold the command up; it is refused by the checks below.
    const int fd = systemCalls.openat(folders.handle(item.folder), item.name.c_str(),
                                      O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0);
    if (fd < 0) {
        failSystem(item.relative, errno);
    }
    struct stat info;
    if (systemCalls.fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) ||
        static_cast<uint64_t>(info.st_size) != item.size) {
        systemCalls.close(fd);
        failUnacceptable(item.relative, "changed while it was packed");
    }
    return fd;
}

// Reads count bytes at offset of fd to data; a file that gives fewer has
// changed since the walk.
void readContents(const PlannedItem& item, int fd, char* data, std::size_t count, uint64_t offset) {
    const FullResult read = readFullyAt(fd, data, count, offset);
    if (read.error != 0) {
        failSystem(item.relative, read.error);
    }
    if (read.bytes < count) {
        failUnacceptable(item.relative, "changed while it was packed");
    }
}

void PieceWriter::writeRun(const Piece& piece, SourceFolders& folders, std::string& buffer) {
    buffer.clear();
    uint64_t bytes = 0;
    for (std::size_t index = piece.first; index < piece.end; ++index) {
        const PlannedItem& item = plan_.items[index];
        vxpkFormat::appendRecord(buffer, recordOf(item));
        if (item.generated) {
            buffer += *item.generated;
        } else if (!item.isFolder) {
            const OwnedDescriptor file(openFile(item, folders));
            const std::size_t at = buffer.size();
            buffer.resize(at + item.size);
            readContents(item, file.fd(), buffer.data() + at, item.size, 0);
        }
        bytes += item.size;
    }
    {
        const std::lock_guard turn(outputTurn_);
        writeAt(piece.first, buffer.data(), buffer.size(), piece.offset);
    }
    const std::lock_guard lock(mutex_);
    progress_.advance(bytes, piece.end - piece.first);
}

void PieceWriter::writePart(const Piece& piece, SourceFolders& folders, std::string& buffer) {
    const PlannedItem& item = plan_.items[piece.first];
    const OwnedDescriptor file(openFile(item, folders));
    // The whole part in one turn: handing the turn over between blocks costs
    // more than reading a block while the other thread writes saves.
    std::unique_lock turn(outputTurn_);
    uint64_t out = piece.offset;
    if (piece.contentsFrom == 0) {
        buffer.clear();
        vxpkFormat::appendRecord(buffer, recordOf(item));
        writeAt(piece.first, buffer.data(), buffer.size(), out);
        out += buffer.size();
    }
    buffer.resize(kWriteBytes);
    for (uint64_t done = 0; done < piece.contentsBytes;) {
        StopIfInterrupted();
        const auto count =
            static_cast<std::size_t>(std::min<uint64_t>(kWriteBytes, piece.contentsBytes - done));
        readContents(item, file.fd(), buffer.data(), count, piece.contentsFrom + done);
        writeAt(piece.first, buffer.data(), count, out + done);
        done += count;
    }
    turn.unlock();
    const std::lock_guard lock(mutex_);
    progress_.advance(piece.contentsBytes, piece.contentsFrom == 0 ? 1 : 0);
}

}  // namespace

void WritePackage(int out, const std::string& source, const std::string& package,
                  const PackPlan& plan, const vxpkFormat::Header& header, WorkProgress& progress) {
    std::string head;
    vxpkFormat::appendHeader(head, header);
    const OwnedDescriptor top(
        systemCalls.openat(AT_FDCWD, source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
    if (top.fd() < 0) {
        failSystem(source, errno);
    }
    const FullResult written = writeFullyAt(out, head.data(), head.size(), 0);
    if (written.error != 0) {
        failSystem(package, written.error);
    }
    uint64_t size = 0;
    const std::vector<Piece> pieces = cutIntoPieces(plan.items, head.size(), size);
    // The whole package's blocks at once: the file system allocates them in
    // one go instead of page by page as the copies arrive, and a disk too
    // small for the package says so before anything is read. Where it cannot
    // be done, the writes allocate as usual.
    const int reserved = size > 0 ? systemCalls.fallocate(out, 0, 0, static_cast<off_t>(size)) : 0;
    if (reserved != 0 && errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL) {
        failSystem(package, errno);
    }
    PieceWriter writer(out, package, top.fd(), plan, progress);
    std::vector<std::thread> helpers;
    for (int i = 1; i < kThreads; ++i) {
        helpers.emplace_back([&] { writer.work(pieces); });
    }
    writer.work(pieces);
    for (auto& helper : helpers) {
        helper.join();
    }
    writer.raiseFailure();
}

}  // namespace vx::engine
