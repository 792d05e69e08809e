// The transaction fuzzer's seeds.
//   transact_fuzz_seeds --write DIR   writes one file per seed, the fuzzer's starting corpus
//   transact_fuzz_seeds --replay      plays every seed, every prefix of it, and its payload
//                                     taken as raw parcel bytes, through the fuzzer's checks
#include <stdio.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "TransactHarness.h"

namespace {

// Offset of the parcel-form byte: after four u32 fields and the world byte.
constexpr size_t kFormOffset = 17;

int writeSeeds(const std::string& dir) {
    std::error_code ec;
    std::filesystem::create_directories(dir, ec);
    const auto seeds = transactfuzz::seedInputs();
    for (size_t i = 0; i < seeds.size(); ++i) {
        const std::string path = dir + "/seed-" + std::to_string(i);
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char*>(seeds[i].data()),
                  static_cast<std::streamsize>(seeds[i].size()));
        if (!out) {
            fprintf(stderr, "cannot write %s\n", path.c_str());
            return 1;
        }
    }
    printf("%zu seeds in %s\n", seeds.size(), dir.c_str());
    return 0;
}

int replay() {
    size_t runs = 0;
    for (std::vector<uint8_t> seed : transactfuzz::seedInputs()) {
        for (size_t len = 0; len <= seed.size(); ++len, ++runs) {
            transactfuzz::runOne(seed.data(), len);
        }
        if (seed.size() > kFormOffset) {
            seed[kFormOffset] = 0;
            transactfuzz::runOne(seed.data(), seed.size());
            ++runs;
        }
    }
    printf("%zu inputs played\n", runs);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && strcmp(argv[1], "--write") == 0) return writeSeeds(argv[2]);
    if (argc == 2 && strcmp(argv[1], "--replay") == 0) return replay();
    fprintf(stderr, "usage: %s --write DIR | --replay\n", argv[0]);
    return 2;
}
