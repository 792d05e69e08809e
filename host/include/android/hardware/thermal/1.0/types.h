/*
 * Host stand-in of the generated <android/hardware/thermal/1.0/types.h>.
 */
#ifndef HIDL_GENERATED_ANDROID_HARDWARE_THERMAL_V1_0_TYPES_H
#define HIDL_GENERATED_ANDROID_HARDWARE_THERMAL_V1_0_TYPES_H

#include <hidl/HidlSupport.h>
#include <stdint.h>

namespace android {
namespace hardware {
namespace thermal {
namespace V1_0 {

enum class TemperatureType : int32_t {
    UNKNOWN = -1,
    CPU = 0,
    GPU = 1,
    BATTERY = 2,
    SKIN = 3,
};

enum class CoolingType : uint32_t {
    FAN_RPM = 0,
};

// Degrees Celsius; unknown thresholds are NaN.
struct Temperature final {
    TemperatureType type = TemperatureType::UNKNOWN;
    ::android::hardware::hidl_string name;
    float currentValue = 0;
    float throttlingThreshold = 0;
    float shutdownThreshold = 0;
    float vrThrottlingThreshold = 0;
};

struct CoolingDevice final {
    CoolingType type = CoolingType::FAN_RPM;
    ::android::hardware::hidl_string name;
    float currentValue = 0;
};

struct CpuUsage final {
    ::android::hardware::hidl_string name;
    uint64_t active = 0;
    uint64_t total = 0;
    bool isOnline = false;
};

enum class ThermalStatusCode : uint32_t {
    SUCCESS = 0,
    FAILURE = 1,
};

struct ThermalStatus final {
    ThermalStatusCode code = ThermalStatusCode::SUCCESS;
    ::android::hardware::hidl_string debugMessage;
};

}  // namespace V1_0
}  // namespace thermal
}  // namespace hardware
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_HARDWARE_THERMAL_V1_0_TYPES_H
