// camext: the simulator and the configuration tools of the camera-service extension.
#include <stdio.h>
#include <string.h>

#include "Commands.h"

namespace {

void usage(FILE* out) {
    fprintf(out,
            "usage:\n"
            "  camext run [--json] FILE.json [FILE.json ...]   play scenarios through the library\n"
            "  camext lint fwk_config.json                      check a feature configuration file\n"
            "  camext explain --package PKG [--config FILE]     every key's value for PKG\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !strcmp(argv[1], "-h") || !strcmp(argv[1], "--help")) {
        usage(argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    // Each command sees its own arguments, argv[0] being the command name.
    if (!strcmp(argv[1], "run")) return camext::runCommand(argc - 1, argv + 1);
    if (!strcmp(argv[1], "lint")) return camext::lintCommand(argc - 1, argv + 1);
    if (!strcmp(argv[1], "explain")) return camext::explainCommand(argc - 1, argv + 1);
    fprintf(stderr, "camext: unknown command '%s'\n", argv[1]);
    usage(stderr);
    return 2;
}
