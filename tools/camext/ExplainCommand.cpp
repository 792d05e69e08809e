#include <stdio.h>

#include "Commands.h"

namespace camext {

int explainCommand(int, char**) {
    fprintf(stderr, "camext explain: not built yet\n");
    return 2;
}

}  // namespace camext
