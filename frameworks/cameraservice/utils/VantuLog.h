/*
 * Levelled logging of the extension, and two small helpers that live beside it.
 *
 * Levels: 0 error (always written, ANDROID_LOG_ERROR), 1 information (written while the debug
 * switch is on, ANDROID_LOG_INFO), 2 verbose (never written: the switch is only ever 0 or 1).
 * The switch follows the properties "persist.sys.assert.panic" and "persist.camera.assert.panic":
 * on when either reads exactly "true".
 *
 * There are two switches with the same meaning: the extension object's (read by
 * android::log_print, set by the extension object on construction and on each beforeConnect) and
 * the utility one (read by the free log_print, set by initLogSwitch()).
 *
 * Write messages through the macros so that each line names its source position:
 *     EXT_LOG(0, "%s camera %d is busy", __func__, id);
 *     if (EXT_LOG_ON()) EXT_LOG(1, "%s ro.board.platform = %s", __func__, expensive());
 * EXT_LOG goes to android::log_print (tag "VantuCameraService"); UTIL_LOG to the free log_print
 * (no tag). Both prefix "%s: %d " with the file's base name and the line number.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_VANTULOG_H
#define VANTU_CAMERASERVICE_UTILS_VANTULOG_H

#include <stdint.h>
#include <sys/types.h>
#include <utils/String8.h>

#include <atomic>

namespace android {

// Writes one line under the tag "VantuCameraService" when the extension object's switch is at
// least `level`. Output longer than 1023 characters is cut.
void log_print(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// 1 when "persist.sys.assert.panic" or "persist.camera.assert.panic" is exactly "true", else 0.
uint8_t readLogSwitchProperties();
// The extension object's switch. Read inline: the per-frame hooks ask it before every line.
extern std::atomic<uint8_t> gExtLogSwitch;
void setExtLogSwitch(uint8_t value);
inline uint8_t getExtLogSwitch() {
    return gExtLogSwitch.load(std::memory_order_relaxed);
}

}  // namespace android

// Writes one line with no tag (the platform's default tag) when the utility switch is at least
// `level`. Output longer than 1023 characters is cut.
void log_print(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Reads the properties into the utility switch, once until clearLogFlag() is called.
void initLogSwitch();
// The utility switch.
uint8_t getLogLevel();
// Makes the next initLogSwitch() read the properties again.
void clearLogFlag();

// A camera id text as an int: leading white space skipped, "0x"/"0X" means hexadecimal. Returns
// -1 and sets errno (EINVAL: no digits or trailing text; ERANGE: 2^31 or more, or beyond 64 bits)
// when the text is not one clean number below 2^31.
int cameraIdToInt(const android::String8& id);

// The calling process of the current binder or hwbinder call (0 on a one-way binder call).
pid_t getCallingPid();

namespace android {
using ::cameraIdToInt;
using ::getCallingPid;
}  // namespace android

namespace android {
namespace vantu {

// The text after the last '/' of `path`.
constexpr const char* logBaseName(const char* path) {
    const char* base = path;
    for (const char* p = path; *p != '\0'; ++p) {
        if (*p == '/') base = p + 1;
    }
    return base;
}

}  // namespace vantu
}  // namespace android

#ifdef __FILE_NAME__
#define VANTU_LOG_FILE __FILE_NAME__
#else
#define VANTU_LOG_FILE (::android::vantu::logBaseName(__FILE__))
#endif

#define EXT_LOG(level, fmt, ...) \
    ::android::log_print((level), "%s: %d " fmt, VANTU_LOG_FILE, __LINE__, ##__VA_ARGS__)
#define UTIL_LOG(level, fmt, ...) \
    ::log_print((level), "%s: %d " fmt, VANTU_LOG_FILE, __LINE__, ##__VA_ARGS__)

// Call-site guards for information lines whose arguments cost something to compute.
#define EXT_LOG_ON() (::android::getExtLogSwitch() != 0)
#define UTIL_LOG_ON() (::getLogLevel() != 0)

// For code the base class and the chip variants share: the base writes through EXT_LOG, the
// variants through UTIL_LOG, chosen by `util` at run time.
#define SHARED_LOG_ON(util) ((util) ? UTIL_LOG_ON() : EXT_LOG_ON())
#define SHARED_LOG(util, level, fmt, ...)        \
    do {                                         \
        if (util) {                              \
            UTIL_LOG(level, fmt, ##__VA_ARGS__); \
        } else {                                 \
            EXT_LOG(level, fmt, ##__VA_ARGS__);  \
        }                                        \
    } while (0)

#endif  // VANTU_CAMERASERVICE_UTILS_VANTULOG_H
