// Runs build/bin/camext as a user would, for the simulator's own tests.
#pragma once

#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <string>
#include <vector>

namespace simtest {

struct CamextRun {
    int status = -1;
    std::string out;
};

inline std::string buildDir() {
    const char* env = getenv("CAMEXT_BUILD_DIR");
    return env && *env ? env : CAMEXT_BUILD_DIR;
}

inline std::string simFile(const std::string& name) {
    return std::string(CAMEXT_SOURCE_DIR) + "/tests/sim/" + name;
}

// Runs camext with `args` (shell words), stdout and stderr together unless `args` redirects.
inline CamextRun camext(const std::string& args) {
    // In a cross build camext runs through the same emulator as the tests.
    const std::string emulator = CAMEXT_EMULATOR;
    const std::string cmd =
        (emulator.empty() ? "" : emulator + " ") + buildDir() + "/bin/camext " + args + " 2>&1";
    CamextRun r;
    FILE* p = popen(cmd.c_str(), "r");
    if (p == nullptr) return r;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof(buf), p)) > 0) r.out.append(buf, n);
    const int status = pclose(p);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

// A scenario written to a temporary file for the life of the object.
class TempScenario {
public:
    explicit TempScenario(const std::string& text) {
        char tmpl[] = "/tmp/camext-sim-XXXXXX.json";
        const int fd = mkstemps(tmpl, 5);
        mPath = tmpl;
        if (fd >= 0) {
            const ssize_t written = write(fd, text.data(), text.size());
            (void)written;
            close(fd);
        }
    }
    ~TempScenario() { unlink(mPath.c_str()); }
    const std::string& path() const { return mPath; }

private:
    std::string mPath;
};

inline std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) out.push_back(l);
    return out;
}

inline bool contains(const std::string& text, const std::string& needle) {
    return text.find(needle) != std::string::npos;
}

// Whether one line holds all the needles, in order.
inline bool lineWith(const std::string& text, const std::vector<std::string>& needles) {
    for (const auto& l : lines(text)) {
        size_t at = 0;
        bool all = true;
        for (const auto& n : needles) {
            at = l.find(n, at);
            if (at == std::string::npos) {
                all = false;
                break;
            }
            at += n.size();
        }
        if (all) return true;
    }
    return false;
}

}  // namespace simtest
