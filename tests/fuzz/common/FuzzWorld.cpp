#include "common/FuzzWorld.h"

#include <android/log.h>
#include <hostctl/HostEnv.h>
#include <hostctl/Properties.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace fuzzworld {

namespace {

std::string gRoot;

void discardLog(const struct __android_logger_data*, const char*) {}

}  // namespace

void quietLogs() {
    __android_log_set_logger(discardLog);
    hostctl::setProperty("persist.camera.assert.panic", "true");
}

void useDeviceRoot() {
    if (!gRoot.empty()) return;
    char tmpl[] = "/tmp/camext-fuzz-XXXXXX";
    const char* dir = mkdtemp(tmpl);
    if (dir == nullptr) abort();
    gRoot = dir;
    hostctl::setDeviceRoot(gRoot);
    atexit([] {
        std::error_code ec;
        std::filesystem::remove_all(gRoot, ec);
    });
}

std::string hostPath(const char* devicePath) {
    useDeviceRoot();
    while (*devicePath == '/') ++devicePath;
    return gRoot + "/" + devicePath;
}

void writeDeviceFile(const char* devicePath, const void* data, size_t size) {
    const std::filesystem::path path(hostPath(devicePath));
    std::error_code ec;
    std::filesystem::create_directories(path.parent_path(), ec);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    if (!out) abort();
}

void removeDeviceFile(const char* devicePath) {
    std::error_code ec;
    std::filesystem::remove(hostPath(devicePath), ec);
}

std::vector<std::string> quotedStrings(const std::string& text, size_t max, size_t maxLength) {
    std::vector<std::string> found;
    size_t i = 0;
    while (found.size() < max) {
        const size_t open = text.find('"', i);
        if (open == std::string::npos) break;
        size_t close = open + 1;
        while (close < text.size() && text[close] != '"') close += text[close] == '\\' ? 2 : 1;
        if (close >= text.size()) break;
        std::string s = text.substr(open + 1, close - open - 1);
        if (s.size() <= maxLength && s.find('\0') == std::string::npos) found.push_back(s);
        i = close + 1;
    }
    return found;
}

FILE* nullStream() {
    static FILE* sink = fopen("/dev/null", "w");
    if (sink == nullptr) abort();
    return sink;
}

}  // namespace fuzzworld

// The parser targets' start-up: quiet logs and the device root. A target that needs more
// defines its own, which takes the place of this weak one.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    fuzzworld::quietLogs();
    fuzzworld::useDeviceRoot();
    return 0;
}
