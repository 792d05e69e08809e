// Installs the fake frame-processing library in the shape a test asks for. A missing entry
// point is taken out of the dynamic symbol table of the copy (its name is emptied), so dlsym
// fails on it exactly as on a library built without it, while one build serves every shape.
#include <dlfcn.h>
#include <elf.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "hostctl/Services.h"

namespace hostctl {

namespace {

constexpr char kFakeName[] = "libfake_algoprocess.so";

bool fail(std::string* error, const std::string& why) {
    if (error) *error = why;
    return false;
}

// The fake is built next to this library (build/lib/).
std::string fakePath() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&fakePath), &info) == 0 || info.dli_fname == nullptr) {
        return kFakeName;
    }
    return (std::filesystem::path(info.dli_fname).parent_path() / kFakeName).string();
}

template <typename T>
bool readAt(const std::vector<uint8_t>& image, uint64_t offset, T* out) {
    if (offset > image.size() || image.size() - offset < sizeof(T)) return false;
    memcpy(out, image.data() + offset, sizeof(T));
    return true;
}

// Empties the names of the defined dynamic symbols in `names`; every one must be found.
bool hideSymbols(std::vector<uint8_t>* image, std::set<std::string> names, std::string* error) {
    Elf64_Ehdr eh;
    if (!readAt(*image, 0, &eh) || memcmp(eh.e_ident, ELFMAG, SELFMAG) != 0 ||
        eh.e_ident[EI_CLASS] != ELFCLASS64 || eh.e_ident[EI_DATA] != ELFDATA2LSB ||
        eh.e_shentsize != sizeof(Elf64_Shdr)) {
        return fail(error, "the fake library is not a 64-bit little-endian ELF file");
    }
    for (uint16_t i = 0; i < eh.e_shnum && !names.empty(); ++i) {
        Elf64_Shdr symtab, strtab;
        if (!readAt(*image, eh.e_shoff + uint64_t{i} * sizeof(Elf64_Shdr), &symtab)) break;
        if (symtab.sh_type != SHT_DYNSYM || symtab.sh_entsize != sizeof(Elf64_Sym)) continue;
        if (!readAt(*image, eh.e_shoff + uint64_t{symtab.sh_link} * sizeof(Elf64_Shdr), &strtab) ||
            strtab.sh_offset > image->size() || image->size() - strtab.sh_offset < strtab.sh_size) {
            break;
        }
        const char* strings = reinterpret_cast<const char*>(image->data() + strtab.sh_offset);
        for (uint64_t k = 0; k < symtab.sh_size / sizeof(Elf64_Sym); ++k) {
            const uint64_t at = symtab.sh_offset + k * sizeof(Elf64_Sym);
            Elf64_Sym sym;
            if (!readAt(*image, at, &sym)) break;
            if (sym.st_shndx == SHN_UNDEF || sym.st_name >= strtab.sh_size) continue;
            const std::string name(strings + sym.st_name,
                                   strnlen(strings + sym.st_name, strtab.sh_size - sym.st_name));
            if (names.erase(name) == 0) continue;
            // Offset 0 of a string table is the empty string: no lookup matches it.
            sym.st_name = 0;
            memcpy(image->data() + at, &sym, sizeof(sym));
        }
    }
    if (!names.empty()) return fail(error, "the fake library does not export " + *names.begin());
    return true;
}

}  // namespace

const std::vector<std::string>& apsEntryPoints() {
    static const std::vector<std::string> kNames = {"createAPSInstance",
                                                    "destoryAPSInstance",
                                                    "initAPS",
                                                    "uninitAPS",
                                                    "addPreviewFrameToAPS",
                                                    "APSProcessCaptureFrames",
                                                    "hardwarewbufferMemcpy",
                                                    "isAPSFeatureSupport"};
    return kNames;
}

bool installApsLibrary(const std::string& hostPath, const ApsLibraryShape& shape,
                       std::string* error) {
    for (const auto& name : shape.missing) {
        const auto& all = apsEntryPoints();
        if (std::find(all.begin(), all.end(), name) == all.end()) {
            return fail(error, "\"" + name + "\" is not an entry point of the library");
        }
    }
    const std::string source = fakePath();
    std::ifstream in(source, std::ios::binary);
    if (!in) return fail(error, "the fake library " + source + " is not built");
    std::vector<uint8_t> image((std::istreambuf_iterator<char>(in)),
                               std::istreambuf_iterator<char>());
    if (!hideSymbols(&image, std::set<std::string>(shape.missing.begin(), shape.missing.end()),
                     error)) {
        return false;
    }

    std::error_code ec;
    const std::filesystem::path target(hostPath);
    if (target.has_parent_path()) std::filesystem::create_directories(target.parent_path(), ec);
    // Written beside and renamed, so a process that still maps the old file keeps it intact.
    const std::string temp = hostPath + ".tmp" + std::to_string(getpid());
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(image.data()),
                  static_cast<std::streamsize>(image.size()));
        if (!out) return fail(error, "cannot write " + temp);
    }
    std::filesystem::rename(temp, target, ec);
    if (ec) {
        std::filesystem::remove(temp, ec);
        return fail(error, "cannot write " + hostPath);
    }

    std::ofstream answers(hostPath + ".answers", std::ios::trunc);
    answers << "engine=" << (shape.engineSucceeds ? 1 : 0) << "\n";
    for (const auto& f : shape.features)
        answers << "feature." << f.first << "=" << f.second << "\n";
    if (!answers) return fail(error, "cannot write " + hostPath + ".answers");
    return true;
}

}  // namespace hostctl
