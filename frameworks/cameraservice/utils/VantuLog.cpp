#include "utils/VantuLog.h"

#include <android/log.h>
#include <ctype.h>
#include <cutils/properties.h>
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <utils/CameraThreadState.h>

#include <atomic>

namespace {

constexpr size_t kLogBufferSize = 1024;
constexpr const char kExtLogTag[] = "VantuCameraService";

// The utility switch is a byte that several host threads read and write without a lock, as is
// the extension object's (declared in the header).
std::atomic<uint8_t> gUtilLogSwitch{0};
std::atomic<bool> gUtilLogSwitchRead{false};

void writeLine(int level, const char* tag, const char* format, va_list args) {
    char buffer[kLogBufferSize] = {};
    vsnprintf(buffer, sizeof(buffer), format, args);
    __android_log_write(level == 0 ? ANDROID_LOG_ERROR : ANDROID_LOG_INFO, tag, buffer);
}

bool propertyIsTrue(const char* name) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(name, value, "false");
    return strcmp(value, "true") == 0;
}

}  // namespace

namespace android {

std::atomic<uint8_t> gExtLogSwitch{0};

void log_print(int level, const char* format, ...) {
    if (format == nullptr || gExtLogSwitch.load(std::memory_order_relaxed) < level) return;
    va_list args;
    va_start(args, format);
    writeLine(level, kExtLogTag, format, args);
    va_end(args);
}

uint8_t readLogSwitchProperties() {
    return propertyIsTrue("persist.sys.assert.panic") ||
                   propertyIsTrue("persist.camera.assert.panic")
               ? 1
               : 0;
}

void setExtLogSwitch(uint8_t value) {
    gExtLogSwitch.store(value, std::memory_order_relaxed);
}

}  // namespace android

void log_print(int level, const char* format, ...) {
    if (format == nullptr || gUtilLogSwitch.load(std::memory_order_relaxed) < level) return;
    va_list args;
    va_start(args, format);
    writeLine(level, nullptr, format, args);
    va_end(args);
}

void initLogSwitch() {
    if (gUtilLogSwitchRead.exchange(true)) return;
    gUtilLogSwitch.store(android::readLogSwitchProperties(), std::memory_order_relaxed);
}

uint8_t getLogLevel() {
    return gUtilLogSwitch.load(std::memory_order_relaxed);
}

void clearLogFlag() {
    gUtilLogSwitchRead.store(false);
}

int cameraIdToInt(const android::String8& id) {
    const char* const begin = id.string();
    const char* const end = begin + id.length();
    // The ids the server passes per request and result are a few plain digits: read them
    // directly (nine digits cannot overflow), the rest goes through strtoll.
    if (begin < end && end - begin <= 9) {
        int value = 0;
        const char* digit = begin;
        while (digit < end && *digit >= '0' && *digit <= '9') value = value * 10 + (*digit++ - '0');
        if (digit == end) {
            errno = 0;
            return value;
        }
    }
    const char* text = begin;
    while (text < end && isspace(static_cast<unsigned char>(*text))) ++text;
    const int base = text[0] == '0' && (text[1] == 'x' || text[1] == 'X') ? 16 : 10;

    errno = 0;
    char* stop = nullptr;
    const long long value = strtoll(text, &stop, base);
    if (errno != 0) return -1;
    // A NUL inside the id ends strtoll early; the whole id must be the number.
    if (stop == text || stop != end) {
        errno = EINVAL;
        return -1;
    }
    // Ids below INT32_MIN are refused too, rather than wrapped into some other camera's id.
    if (value >= (1LL << 31) || value < -(1LL << 31)) {
        errno = ERANGE;
        return -1;
    }
    return static_cast<int>(value);
}

pid_t getCallingPid() {
    return android::CameraThreadState::getCallingPid();
}
