/*
 * Host stand-in of the generated <android/frameworks/sensorservice/1.0/IEventQueueCallback.h>:
 * what a client implements to receive the events of its event queue. The sensors service calls
 * it on its own callback thread.
 */
#ifndef HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_IEVENTQUEUECALLBACK_H
#define HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_IEVENTQUEUECALLBACK_H

#include <android/hardware/sensors/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>

namespace android {
namespace frameworks {
namespace sensorservice {
namespace V1_0 {

struct IEventQueueCallback : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(IEventQueueCallback)

    // oneway: the service does not wait for the client.
    virtual ::android::hardware::Return<void> onEvent(
        const ::android::hardware::sensors::V1_0::Event& event) = 0;
};

}  // namespace V1_0
}  // namespace sensorservice
}  // namespace frameworks
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_FRAMEWORKS_SENSORSERVICE_V1_0_IEVENTQUEUECALLBACK_H
