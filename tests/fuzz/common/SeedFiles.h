/*
 * The main of a seed writer: `<tool> --write DIR` writes each named seed as DIR/<name>.bin, the
 * checked-in corpus of a fuzz target.
 */
#pragma once

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fuzzworld {

// `seeds` is a sequence of (name, encoder) pairs; `bytesOf(encoder)` gives a seed's bytes.
template <typename Seeds, typename BytesOf>
int writeSeedFiles(int argc, char** argv, const Seeds& seeds, BytesOf bytesOf) {
    if (argc != 3 || strcmp(argv[1], "--write") != 0) {
        fprintf(stderr, "usage: %s --write DIR\n", argv[0]);
        return 2;
    }
    std::error_code ec;
    std::filesystem::create_directories(argv[2], ec);
    for (const auto& seed : seeds) {
        const std::string path = std::string(argv[2]) + "/" + seed.first + ".bin";
        std::ofstream out(path, std::ios::binary);
        const std::vector<uint8_t>& bytes = bytesOf(seed.second);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        if (!out) {
            fprintf(stderr, "%s: cannot write %s\n", argv[0], path.c_str());
            return 1;
        }
    }
    return 0;
}

}  // namespace fuzzworld
