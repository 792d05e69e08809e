// camext run [--json] [--lib PATH] FILE...: plays scenario files through the built library.
#include <stdio.h>
#include <string.h>

#include <string>
#include <vector>

#include "Commands.h"
#include "sim/Runner.h"

namespace camext {

namespace {

void runUsage(FILE* out) {
    fprintf(out,
            "usage: camext run [--json] [--lib PATH] [--trace OUT.json] FILE.json [FILE.json ...]\n"
            "  --json            one JSON record per step on stdout\n"
            "  --lib PATH        the extension library to load (default: %s)\n"
            "  --trace OUT.json  also write the sessions as a trace for Perfetto's UI\n"
            "                    (ui.perfetto.dev) or chrome://tracing, on virtual time\n"
            "exit status: 0 every expectation held, 1 one failed, 2 a file is malformed\n",
            CAMEXT_LIB_DIR "/libcameraserviceext.so");
}

}  // namespace

int runCommand(int argc, char** argv) {
    sim::RunOptions options;
    options.libPath = CAMEXT_LIB_DIR "/libcameraserviceext.so";
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (!strcmp(arg, "--json")) {
            options.json = true;
        } else if (!strcmp(arg, "--lib")) {
            if (i + 1 >= argc) {
                fprintf(stderr, "camext run: --lib needs a path\n");
                return 2;
            }
            options.libPath = argv[++i];
        } else if (!strcmp(arg, "--trace")) {
            if (i + 1 >= argc) {
                fprintf(stderr, "camext run: --trace needs a file\n");
                return 2;
            }
            options.tracePath = argv[++i];
        } else if (!strncmp(arg, "--trace=", 8)) {
            options.tracePath = arg + 8;
        } else if (!strncmp(arg, "--lib=", 6)) {
            options.libPath = arg + 6;
        } else if (!strcmp(arg, "-h") || !strcmp(arg, "--help")) {
            runUsage(stdout);
            return 0;
        } else if (arg[0] == '-' && arg[1] != '\0') {
            fprintf(stderr, "camext run: unknown option '%s'\n", arg);
            runUsage(stderr);
            return 2;
        } else {
            files.push_back(arg);
        }
    }
    if (files.empty()) {
        runUsage(stderr);
        return 2;
    }
    return sim::runFiles(files, options, stdout);
}

}  // namespace camext
