#include "support/TestSupport.h"

#include <android/log.h>
#include <stdlib.h>
#include <string.h>

#include <filesystem>
#include <fstream>

#include "hostctl/HostEnv.h"

namespace testsupport {

namespace {

std::mutex gLock;
std::vector<LogLine>* gLines = nullptr;

// Debian's liblog (Android 10) passes the logger the line's attributes and its text apart.
void captureLogger(const struct __android_logger_data* data, const char* message) {
    std::lock_guard<std::mutex> g(gLock);
    if (gLines == nullptr) return;
    gLines->push_back({data->priority, data->tag ? data->tag : "", message ? message : ""});
}

}  // namespace

LogCapture::LogCapture() {
    {
        std::lock_guard<std::mutex> g(gLock);
        gLines = new std::vector<LogLine>();
    }
    // Outside gLock: liblog calls the logger under its own lock, which then takes gLock.
    __android_log_set_logger(captureLogger);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
    std::lock_guard<std::mutex> g(gLock);
    delete gLines;
    gLines = nullptr;
}

std::vector<LogLine> LogCapture::lines() const {
    std::lock_guard<std::mutex> g(gLock);
    return gLines ? *gLines : std::vector<LogLine>();
}

size_t LogCapture::count(const std::string& needle) const {
    size_t n = 0;
    for (const auto& l : lines()) {
        if (l.text.find(needle) != std::string::npos) ++n;
    }
    return n;
}

void LogCapture::clear() {
    std::lock_guard<std::mutex> g(gLock);
    if (gLines) gLines->clear();
}

std::string LogCapture::dump() const {
    std::string out;
    for (const auto& l : lines()) {
        out += std::to_string(l.priority) + "/" + l.tag + ": " + l.text + "\n";
    }
    return out;
}

TempDeviceRoot::TempDeviceRoot() {
    char tmpl[] = "/tmp/camext-root-XXXXXX";
    const char* p = mkdtemp(tmpl);
    mPath = p ? p : "/tmp";
    hostctl::setDeviceRoot(mPath);
}

TempDeviceRoot::~TempDeviceRoot() {
    hostctl::setDeviceRoot("/");
    std::error_code ec;
    std::filesystem::remove_all(mPath, ec);
}

std::string TempDeviceRoot::hostPath(const std::string& devicePath) const {
    return devicePath.empty() || devicePath[0] != '/' ? mPath + "/" + devicePath
                                                      : mPath + devicePath;
}

void TempDeviceRoot::writeFile(const std::string& devicePath, const std::string& text) const {
    std::string p = hostPath(devicePath);
    std::filesystem::create_directories(std::filesystem::path(p).parent_path());
    std::ofstream(p, std::ios::binary) << text;
}

VirtualTime::VirtualTime(int64_t wallSeconds, nsecs_t monotonicNs) {
    hostctl::useVirtualTime(wallSeconds, monotonicNs);
}

VirtualTime::~VirtualTime() {
    hostctl::setScheduler(nullptr);
    hostctl::useRealTime();
}

}  // namespace testsupport
