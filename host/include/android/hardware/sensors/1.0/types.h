/*
 * Host stand-in of the generated <android/hardware/sensors/1.0/types.h>: the sensor
 * description and the sensor event of android.hardware.sensors@1.0, as the sensors service
 * (android.frameworks.sensorservice@1.0) hands them to its clients. Values follow types.hal;
 * the generated toString helpers are left out.
 */
#ifndef HIDL_GENERATED_ANDROID_HARDWARE_SENSORS_V1_0_TYPES_H
#define HIDL_GENERATED_ANDROID_HARDWARE_SENSORS_V1_0_TYPES_H

#include <hidl/HidlSupport.h>
#include <stdint.h>

namespace android {
namespace hardware {
namespace sensors {
namespace V1_0 {

// The sensors HAL's own result codes (the sensors service has its own Result).
enum class Result : int32_t {
    OK = 0,
    PERMISSION_DENIED = -1,
    NO_MEMORY = -12,
    BAD_VALUE = -22,
    INVALID_OPERATION = -38,
};

enum class SensorType : int32_t {
    META_DATA = 0,
    ACCELEROMETER = 1,
    MAGNETIC_FIELD = 2,
    ORIENTATION = 3,
    GYROSCOPE = 4,
    LIGHT = 5,
    PRESSURE = 6,
    TEMPERATURE = 7,
    PROXIMITY = 8,
    GRAVITY = 9,
    LINEAR_ACCELERATION = 10,
    ROTATION_VECTOR = 11,
    RELATIVE_HUMIDITY = 12,
    AMBIENT_TEMPERATURE = 13,
    MAGNETIC_FIELD_UNCALIBRATED = 14,
    GAME_ROTATION_VECTOR = 15,
    GYROSCOPE_UNCALIBRATED = 16,
    SIGNIFICANT_MOTION = 17,
    STEP_DETECTOR = 18,
    STEP_COUNTER = 19,
    GEOMAGNETIC_ROTATION_VECTOR = 20,
    HEART_RATE = 21,
    TILT_DETECTOR = 22,
    WAKE_GESTURE = 23,
    GLANCE_GESTURE = 24,
    PICK_UP_GESTURE = 25,
    WRIST_TILT_GESTURE = 26,
    DEVICE_ORIENTATION = 27,
    POSE_6DOF = 28,
    STATIONARY_DETECT = 29,
    MOTION_DETECT = 30,
    HEART_BEAT = 31,
    DYNAMIC_SENSOR_META = 32,
    ADDITIONAL_INFO = 33,
    LOW_LATENCY_OFFBODY_DETECT = 34,
    ACCELEROMETER_UNCALIBRATED = 35,
    // Types from here on are the device maker's own.
    DEVICE_PRIVATE_BASE = 0x10000,
};

enum class SensorFlagBits : uint32_t {
    WAKE_UP = 1,
    CONTINUOUS_MODE = 0,
    ON_CHANGE_MODE = 2,
    ONE_SHOT_MODE = 4,
    SPECIAL_REPORTING_MODE = 6,
    DATA_INJECTION = 0x10,
    DYNAMIC_SENSOR = 0x20,
    ADDITIONAL_INFO = 0x40,
    DIRECT_CHANNEL_ASHMEM = 0x400,
    DIRECT_CHANNEL_GRALLOC = 0x800,
    MASK_REPORTING_MODE = 0xE,
    MASK_DIRECT_REPORT = 0x380,
    MASK_DIRECT_CHANNEL = 0xC00,
};

struct SensorInfo final {
    int32_t sensorHandle = 0;
    ::android::hardware::hidl_string name;
    ::android::hardware::hidl_string vendor;
    int32_t version = 0;
    SensorType type = SensorType::META_DATA;
    ::android::hardware::hidl_string typeAsString;
    float maxRange = 0;
    float resolution = 0;
    float power = 0;
    int32_t minDelay = 0;
    uint32_t fifoReservedEventCount = 0;
    uint32_t fifoMaxEventCount = 0;
    ::android::hardware::hidl_string requiredPermission;
    int32_t maxDelay = 0;
    uint32_t flags = 0;  // bitfield<SensorFlagBits>
};

enum class SensorStatus : int8_t {
    NO_CONTACT = -1,
    UNRELIABLE = 0,
    ACCURACY_LOW = 1,
    ACCURACY_MEDIUM = 2,
    ACCURACY_HIGH = 3,
};

struct Vec3 final {
    float x;
    float y;
    float z;
    SensorStatus status;
};

struct Vec4 final {
    float x;
    float y;
    float z;
    float w;
};

struct Uncal final {
    float x;
    float y;
    float z;
    float x_bias;
    float y_bias;
    float z_bias;
};

struct HeartRate final {
    float bpm;
    SensorStatus status;
};

enum class MetaDataEventType : uint32_t {
    META_DATA_FLUSH_COMPLETE = 1,
};

struct MetaData final {
    MetaDataEventType what;
};

struct DynamicSensorInfo final {
    bool connected;
    int32_t sensorHandle;
    ::android::hardware::hidl_array<uint8_t, 16> uuid;
};

enum class AdditionalInfoType : uint32_t {
    AINFO_BEGIN = 0,
    AINFO_END = 1,
    AINFO_UNTRACKED_DELAY = 0x10000,
    AINFO_INTERNAL_TEMPERATURE = 0x10001,
    AINFO_VEC3_CALIBRATION = 0x10002,
    AINFO_SENSOR_PLACEMENT = 0x10003,
    AINFO_SAMPLING = 0x10004,
    AINFO_CUSTOM_START = 0x10000000,
    AINFO_DEBUGGING_START = 0x40000000,
};

struct AdditionalInfo final {
    union Payload final {
        ::android::hardware::hidl_array<int32_t, 14> data_int32;
        ::android::hardware::hidl_array<float, 14> data_float;
    };

    AdditionalInfoType type;
    int32_t serial;
    Payload u;
};

// The value of an event, read through the member that fits the sensor's type. Custom sensor
// types (DEVICE_PRIVATE_BASE and above) report through `data`.
union EventPayload final {
    Vec3 vec3;
    Vec4 vec4;
    Uncal uncal;
    MetaData meta;
    float scalar;
    uint64_t stepCount;
    HeartRate heartRate;
    ::android::hardware::hidl_array<float, 15> pose6DOF;
    DynamicSensorInfo dynamic;
    AdditionalInfo additional;
    ::android::hardware::hidl_array<float, 16> data;
};

struct Event final {
    int64_t timestamp;  // ns, elapsedRealtimeNanos() base
    int32_t sensorHandle;
    SensorType sensorType;
    EventPayload u;
};

static_assert(sizeof(EventPayload) == 64, "EventPayload holds 16 floats");

}  // namespace V1_0
}  // namespace sensors
}  // namespace hardware
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_HARDWARE_SENSORS_V1_0_TYPES_H
