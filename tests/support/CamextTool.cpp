#include "support/CamextTool.h"

#include <stdlib.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>

namespace testsupport {

namespace {

std::string readAll(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace

std::string camextPath() {
    const char* dir = getenv("CAMEXT_BUILD_DIR");
    const std::string tool = std::string(dir != nullptr ? dir : CAMEXT_BUILD_DIR) + "/bin/camext";
    std::ifstream probe(tool);
    return probe ? tool : std::string();
}

ToolRun runCamext(const std::string& args, const std::string& scratchDir) {
    const std::string out = scratchDir + "/camext.out", err = scratchDir + "/camext.err";
    const std::string emulator = CAMEXT_EMULATOR;
    const std::string cmd = (emulator.empty() ? "" : emulator + " ") + "'" + camextPath() + "' " +
                            args + " >'" + out + "' 2>'" + err + "'";
    ToolRun r;
    const int raw = system(cmd.c_str());
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.out = readAll(out);
    r.err = readAll(err);
    return r;
}

}  // namespace testsupport
