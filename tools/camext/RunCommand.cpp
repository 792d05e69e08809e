#include <stdio.h>

#include "Commands.h"

namespace camext {

int runCommand(int, char**) {
    fprintf(stderr, "camext run: not built yet\n");
    return 2;
}

}  // namespace camext
