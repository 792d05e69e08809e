/*
 * Log lines of the eviction rule engine: the base writes through the extension object's logger,
 * the chip variants through the utility logger. Used inside IntelligentEviction's operations.
 */
#ifndef VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONLOG_H
#define VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONLOG_H

#include "utils/VantuLog.h"

#define EVICT_LOG_ON() SHARED_LOG_ON(mRules.utilLogger)
#define EVICT_LOG(level, fmt, ...) SHARED_LOG(mRules.utilLogger, level, fmt, ##__VA_ARGS__)

#endif  // VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONLOG_H
