#include <stdio.h>

#include "Commands.h"

namespace camext {

int lintCommand(int, char**) {
    fprintf(stderr, "camext lint: not built yet\n");
    return 2;
}

}  // namespace camext
