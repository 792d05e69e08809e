// Plays checked-in fuzzer inputs through a target's LLVMFuzzerTestOneInput without libFuzzer, so
// every compiler and every sanitizer build replays the seed corpus and the kept regressions as an
// ordinary test. Each file is played whole and cut short at a few lengths, since a truncated input
// is the commonest kind of bad input.
//   <surface>_replay PATH...   (a PATH is a file or a folder of files)
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

bool readFile(const std::filesystem::path& path, std::vector<uint8_t>* out) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    out->assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return true;
}

// Plays the whole input and up to sixteen prefixes of it, each from its own copy so a read past
// the prefix is a sanitizer report rather than a read of the rest of the file.
size_t play(const std::vector<uint8_t>& bytes) {
    const size_t step = std::max<size_t>(1, bytes.size() / 16);
    size_t runs = 0;
    for (size_t len = 0; len < bytes.size(); len += step, ++runs) {
        std::vector<uint8_t> prefix(bytes.begin(), bytes.begin() + static_cast<long>(len));
        LLVMFuzzerTestOneInput(prefix.data(), prefix.size());
    }
    std::vector<uint8_t> whole(bytes);
    LLVMFuzzerTestOneInput(whole.data(), whole.size());
    return runs + 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&argc, &argv);
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path arg(argv[i]);
        std::error_code ec;
        if (std::filesystem::is_directory(arg, ec)) {
            for (const auto& entry : std::filesystem::directory_iterator(arg, ec)) {
                if (entry.is_regular_file()) files.push_back(entry.path());
            }
        } else if (std::filesystem::exists(arg, ec)) {
            files.push_back(arg);
        }
    }
    if (files.empty()) {
        fprintf(stderr, "%s: no input files in the given paths\n", argv[0]);
        return 2;
    }
    std::sort(files.begin(), files.end());
    size_t runs = 0;
    for (const auto& file : files) {
        std::vector<uint8_t> bytes;
        if (!readFile(file, &bytes)) {
            fprintf(stderr, "%s: cannot read %s\n", argv[0], file.c_str());
            return 2;
        }
        runs += play(bytes);
    }
    printf("%zu files, %zu inputs played\n", files.size(), runs);
    return 0;
}
