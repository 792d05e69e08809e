/*
 * Helpers shared by the unit tests: capture of the platform log, and a fresh temporary device
 * root with virtual time for each test.
 */
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <utils/Timers.h>

namespace testsupport {

struct LogLine {
    int priority;  // android_LogPriority
    std::string tag;
    std::string text;
};

// Captures every line written through liblog while it lives (process-wide; one at a time).
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    std::vector<LogLine> lines() const;
    // Lines whose text contains `needle`.
    size_t count(const std::string& needle) const;
    bool contains(const std::string& needle) const { return count(needle) > 0; }
    void clear();
    std::string dump() const;
};

// A temporary folder that is the device root while it lives; removed afterwards.
class TempDeviceRoot {
public:
    TempDeviceRoot();
    ~TempDeviceRoot();
    const std::string& path() const { return mPath; }
    // Writes `text` at device path `devicePath` ("/data/x" or "odm/etc/x"), creating folders.
    void writeFile(const std::string& devicePath, const std::string& text) const;
    std::string hostPath(const std::string& devicePath) const;

private:
    std::string mPath;
};

// Virtual time for the life of the object (wall and monotonic start values given).
class VirtualTime {
public:
    explicit VirtualTime(int64_t wallSeconds = 1700000000, nsecs_t monotonicNs = 1000000000LL);
    ~VirtualTime();
};

}  // namespace testsupport
