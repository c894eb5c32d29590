// Makes the trees the packing benchmark reads, the same bytes for the same
// seed on every machine:
//   make_tree many DIR   about 20,000 files of 200 B to 40 KB in 1,500 folders
//   make_tree big DIR    three files of 300 MB
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr uint64_t kSeed = 20240611;

void writeRandomFile(const fs::path& path, uint64_t size, std::mt19937_64& random) {
    std::vector<uint64_t> block(8192);
    std::ofstream out(path, std::ios::binary);
    while (size > 0) {
        for (auto& word : block) {
            word = random();
        }
        const uint64_t chunk = std::min<uint64_t>(size, block.size() * sizeof(uint64_t));
        out.write(reinterpret_cast<const char*>(block.data()), static_cast<std::streamsize>(chunk));
        size -= chunk;
    }
}

std::string numbered(const char* prefix, int number) {
    char name[32];
    std::snprintf(name, sizeof name, "%s%05d", prefix, number);
    return name;
}

void makeMany(const fs::path& root, std::mt19937_64& random) {
    constexpr int kFolders = 1500;
    constexpr int kFiles = 20000;
    std::vector<fs::path> folders = {root};
    for (int i = 1; i < kFolders; ++i) {
        // Choosing among the newer folders more often gives a tree several levels deep.
        const auto newer = std::uniform_int_distribution<std::size_t>(folders.size() / 2,
                                                                      folders.size() - 1)(random);
        const auto any = std::uniform_int_distribution<std::size_t>(0, folders.size() - 1)(random);
        folders.push_back(folders[random() % 4 == 0 ? any : newer] / numbered("dir", i));
        fs::create_directories(folders.back());
    }
    // Sizes spread evenly on a log scale between 200 B and 40 KB.
    std::uniform_real_distribution<double> logSize(std::log(200.0), std::log(40960.0));
    for (int i = 0; i < kFiles; ++i) {
        const fs::path& folder = folders[random() % folders.size()];
        writeRandomFile(folder / (numbered("file", i) + ".dat"),
                        static_cast<uint64_t>(std::exp(logSize(random))), random);
    }
}

void makeBig(const fs::path& root, std::mt19937_64& random) {
    fs::create_directories(root);
    for (int i = 0; i < 3; ++i) {
        writeRandomFile(root / numbered("big", i), uint64_t{300} << 20, random);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s many|big DIR\n", argv[0]);
        return 2;
    }
    const std::string kind = argv[1];
    std::mt19937_64 random(kSeed);
    if (kind == "many") {
        makeMany(argv[2], random);
    } else if (kind == "big") {
        makeBig(argv[2], random);
    } else {
        std::fprintf(stderr, "unknown tree %s\n", argv[1]);
        return 2;
    }
    return 0;
}
