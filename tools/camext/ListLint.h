// The checks of `camext lint` for the downloadable lists under /data/.camera/: the two XML lists
// (recognised by their "filter-conf" root, or by being XML at all) and "updateInfo" (by its name).
#pragma once

#include <stdio.h>

#include <string>

namespace camext {

// Lints `file` (its contents in `text`) when it is one of the lists: prints the findings and
// returns the exit status (0 clean, 1 faults found, 2 not well-formed). Returns -1 when the file
// is not a list, so that the caller checks it as a feature configuration. Findings go to `out`,
// a file that is not well-formed is reported on `err`.
int lintListFile(const char* file, const std::string& text, FILE* out = stdout, FILE* err = stderr);

}  // namespace camext
