/*
 * Log lines of the eviction rule engine: the base writes through the extension object's logger,
 * the chip variants through the utility logger. Used inside IntelligentEviction's operations.
 */
#ifndef VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONLOG_H
#define VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONLOG_H

#include "utils/VantuLog.h"

#define EVICT_LOG_ON() (mRules.utilLogger ? UTIL_LOG_ON() : EXT_LOG_ON())
#define EVICT_LOG(level, fmt, ...)               \
    do {                                         \
        if (mRules.utilLogger) {                 \
            UTIL_LOG(level, fmt, ##__VA_ARGS__); \
        } else {                                 \
            EXT_LOG(level, fmt, ##__VA_ARGS__);  \
        }                                        \
    } while (0)

#endif  // VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONLOG_H
