/*
 * Host stand-in of the AIDL interface android.hardware.camera2.ICameraDeviceCallbacks (Android
 * 13) as the AIDL compiler emits it for C++: the callbacks a camera2 client receives from its
 * device. The camera server also uses its error codes when it tells any client of an error.
 * The host has no camera2 app on the other end of a binder, so the meta-interface (descriptor,
 * proxy) is left out; the callbacks are declared for host implementations.
 */
#ifndef AIDL_GENERATED_ANDROID_HARDWARE_CAMERA2_I_CAMERA_DEVICE_CALLBACKS_H_
#define AIDL_GENERATED_ANDROID_HARDWARE_CAMERA2_I_CAMERA_DEVICE_CALLBACKS_H_

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <camera/CameraMetadata.h>
#include <camera/CaptureResult.h>
#include <stdint.h>

#include <vector>

namespace android {

namespace hardware {

namespace camera2 {

class ICameraDeviceCallbacks : public ::android::IInterface {
public:
    enum : int32_t {
        ERROR_CAMERA_INVALID_ERROR = -1,
        ERROR_CAMERA_DISCONNECTED = 0,
        ERROR_CAMERA_DEVICE = 1,
        ERROR_CAMERA_SERVICE = 2,
        ERROR_CAMERA_REQUEST = 3,
        ERROR_CAMERA_RESULT = 4,
        ERROR_CAMERA_BUFFER = 5,
        ERROR_CAMERA_DISABLED = 6,
    };

    virtual ::android::binder::Status onDeviceError(
        int32_t errorCode,
        const ::android::hardware::camera2::impl::CaptureResultExtras& resultExtras) = 0;
    virtual ::android::binder::Status onDeviceIdle() = 0;
    virtual ::android::binder::Status onCaptureStarted(
        const ::android::hardware::camera2::impl::CaptureResultExtras& resultExtras,
        int64_t timestamp) = 0;
    virtual ::android::binder::Status onResultReceived(
        const ::android::CameraMetadata& result,
        const ::android::hardware::camera2::impl::CaptureResultExtras& resultExtras,
        const std::vector<::android::hardware::camera2::impl::PhysicalCaptureResultInfo>&
            physicalCaptureResultInfos) = 0;
    virtual ::android::binder::Status onPrepared(int32_t streamId) = 0;
    virtual ::android::binder::Status onRepeatingRequestError(int64_t lastFrameNumber,
                                                              int32_t repeatingRequestId) = 0;
    virtual ::android::binder::Status onRequestQueueEmpty() = 0;
};

}  // namespace camera2

}  // namespace hardware

}  // namespace android

#endif
