// Extracts one package with the program's own reader, for the benchmark script:
//   vxextract_bench PACKAGE
// The tree goes into a new folder of the temporary folder (TMPDIR), as it does
// for the user; messages go to standard error. The exit status says whether
// the extraction gave a result.
#include <cstdio>

#include "container/vxpkFile.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s PACKAGE\n", argv[0]);
        return 2;
    }
    using namespace vx;
    const auto file = vxpkFile::open(New<FolderItem>(String(argv[1]), FolderItem::PathModeNative));
    return file != nullptr ? 0 : 1;
}
