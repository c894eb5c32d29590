// Packs one folder with the program's own packer, for the benchmark script:
//   vxpack_bench SOURCE TARGET
// Log lines go to standard output, as they would go to the window; the exit
// status says whether the build ended with its last line.
#include <cstdio>

#include "container/vxPacker.h"

namespace {

class StandardOutputLog : public vx::LogReceiver {
public:
    void log(const vx::String& text) override {
        std::fwrite(text.bytes().data(), 1, text.byteLength(), stdout);
        std::fputc('\n', stdout);
        finished = text == "BUILD DONE...";
    }
    bool finished = false;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s SOURCE TARGET\n", argv[0]);
        return 2;
    }
    using namespace vx;
    const auto log = New<StandardOutputLog>();
    vxPacker::folder = New<FolderItem>(String(argv[1]), FolderItem::PathModeNative);
    vxPacker::target = New<FolderItem>(String(argv[2]), FolderItem::PathModeNative);
    vxPacker::name = "Bench";
    vxPacker::uid = "bench";
    vxPacker::owner = log;
    vxPacker::build();
    return log->finished ? 0 : 1;
}
