// The checks of `camext lint`: what in a feature configuration file the library would ignore,
// refuse or read differently from what its author meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ConfigScanner.h"

namespace camext {

struct LintFinding {
    int line;
    bool error;  // false: a warning (advice; the file still does what it says)
    std::string message;
};

// Findings for a scanned document, ordered by line.
std::vector<LintFinding> lintConfig(const JsonNode& root);

// The known key nearest to `name` in spelling, or nullptr when none is near enough to be the
// key that was meant.
const char* suggestConfigKey(std::string_view name);

}  // namespace camext
