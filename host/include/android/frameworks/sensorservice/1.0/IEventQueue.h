/*
 * Host stand-in of the generated <android/frameworks/sensorservice/1.0/IEventQueue.h>: a
 * client's queue of sensor events, created by ISensorManager::createEventQueue.
 */
#ifndef HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_IEVENTQUEUE_H
#define HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_IEVENTQUEUE_H

#include <android/frameworks/sensorservice/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>
#include <stdint.h>

namespace android {
namespace frameworks {
namespace sensorservice {
namespace V1_0 {

struct IEventQueue : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(IEventQueue)

    // Starts delivering events of the sensor to the queue's callback.
    virtual ::android::hardware::Return<Result> enableSensor(int32_t sensorHandle,
                                                             int32_t samplingPeriodUs,
                                                             int64_t maxBatchReportLatencyUs) = 0;
    virtual ::android::hardware::Return<Result> disableSensor(int32_t sensorHandle) = 0;
};

}  // namespace V1_0
}  // namespace sensorservice
}  // namespace frameworks
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_IEVENTQUEUE_H
