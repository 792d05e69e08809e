/*
 * Host stand-in of the AIDL-generated proxy of ICameraServiceListener: writes each callback as a
 * one-way transaction to the remote binder.
 */
#ifndef AIDL_GENERATED_ANDROID_HARDWARE_BP_CAMERA_SERVICE_LISTENER_H_
#define AIDL_GENERATED_ANDROID_HARDWARE_BP_CAMERA_SERVICE_LISTENER_H_

#include <android/hardware/ICameraServiceListener.h>
#include <binder/IBinder.h>
#include <binder/IInterface.h>

namespace android {

namespace hardware {

class BpCameraServiceListener : public ::android::BpInterface<ICameraServiceListener> {
public:
    explicit BpCameraServiceListener(const ::android::sp<::android::IBinder>& _aidl_impl);
    virtual ~BpCameraServiceListener() = default;

    ::android::binder::Status onStatusChanged(int32_t status,
                                              const ::android::String16& cameraId) override;
    ::android::binder::Status onPhysicalCameraStatusChanged(
        int32_t status, const ::android::String16& cameraId,
        const ::android::String16& physicalCameraId) override;
    ::android::binder::Status onTorchStatusChanged(int32_t status,
                                                   const ::android::String16& cameraId) override;
    ::android::binder::Status onTorchStrengthLevelChanged(const ::android::String16& cameraId,
                                                          int32_t newTorchStrength) override;
    ::android::binder::Status onCameraAccessPrioritiesChanged() override;
    ::android::binder::Status onCameraOpened(const ::android::String16& cameraId,
                                             const ::android::String16& clientPackageId) override;
    ::android::binder::Status onCameraClosed(const ::android::String16& cameraId) override;
};

}  // namespace hardware

}  // namespace android

#endif
