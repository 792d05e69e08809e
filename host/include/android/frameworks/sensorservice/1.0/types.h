/*
 * Host stand-in of the generated <android/frameworks/sensorservice/1.0/types.h>.
 */
#ifndef HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_TYPES_H
#define HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_TYPES_H

#include <stdint.h>

namespace android {
namespace frameworks {
namespace sensorservice {
namespace V1_0 {

// Result codes of the sensors service (not those of the sensors HAL).
enum class Result : int32_t {
    OK = 0,
    NOT_EXIST = 1,
    NO_MEMORY = 2,
    NO_INIT = 3,
    PERMISSION_DENIED = 4,
    BAD_VALUE = 5,
    INVALID_OPERATION = 6,
    UNKNOWN_ERROR = 7,
};

}  // namespace V1_0
}  // namespace sensorservice
}  // namespace frameworks
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_TYPES_H
