// Runs the built simulator (camext) as a program, the way a camera engineer does, for the tests
// of its command-line tools.
#pragma once

#include <string>

namespace testsupport {

struct ToolRun {
    int status = -1;  // exit status; -1 when it did not exit normally
    std::string out;
    std::string err;
};

// The path of the built camext ($CAMEXT_BUILD_DIR/bin/camext); empty when it is not built.
std::string camextPath();

// Runs camext with `args` (already quoted for the shell), through the emulator that runs the
// tests themselves in a cross build. Its output goes through files under `scratchDir`.
ToolRun runCamext(const std::string& args, const std::string& scratchDir);

}  // namespace testsupport
