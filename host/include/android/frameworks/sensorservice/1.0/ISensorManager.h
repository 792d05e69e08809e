/*
 * Host stand-in of the generated <android/frameworks/sensorservice/1.0/ISensorManager.h>: the
 * sensors service, instance "default". Methods with two results take a callback, as hidl-gen
 * writes them. The direct-report channels (ashmem and gralloc) are left out: they need shared
 * memory handles that no host client uses.
 */
#ifndef HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_ISENSORMANAGER_H
#define HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_ISENSORMANAGER_H

#include <android/frameworks/sensorservice/1.0/IEventQueue.h>
#include <android/frameworks/sensorservice/1.0/IEventQueueCallback.h>
#include <android/frameworks/sensorservice/1.0/types.h>
#include <android/hardware/sensors/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>

#include <functional>

namespace android {
namespace frameworks {
namespace sensorservice {
namespace V1_0 {

struct ISensorManager : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(ISensorManager)

    using getSensorList_cb = std::function<void(
        const ::android::hardware::hidl_vec<::android::hardware::sensors::V1_0::SensorInfo>& list,
        Result result)>;
    virtual ::android::hardware::Return<void> getSensorList(getSensorList_cb _hidl_cb) = 0;

    // NOT_EXIST (and an empty SensorInfo) when the device has no sensor of that type.
    using getDefaultSensor_cb = std::function<void(
        const ::android::hardware::sensors::V1_0::SensorInfo& sensor, Result result)>;
    virtual ::android::hardware::Return<void> getDefaultSensor(
        ::android::hardware::sensors::V1_0::SensorType type, getDefaultSensor_cb _hidl_cb) = 0;

    // BAD_VALUE (and a null queue) for a null callback.
    using createEventQueue_cb =
        std::function<void(const ::android::sp<IEventQueue>& queue, Result result)>;
    virtual ::android::hardware::Return<void> createEventQueue(
        const ::android::sp<IEventQueueCallback>& callback, createEventQueue_cb _hidl_cb) = 0;
};

}  // namespace V1_0
}  // namespace sensorservice
}  // namespace frameworks
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_ISENSORMANAGER_H
