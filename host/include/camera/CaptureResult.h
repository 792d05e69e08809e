/*
 * Host stand-in of the camera client library's capture result types (Android 13): the extras
 * that identify a result or an error, a physical camera's part of a result, and a whole result.
 * Their parcel forms are the platform's.
 */
#ifndef ANDROID_HARDWARE_CAPTURERESULT_H
#define ANDROID_HARDWARE_CAPTURERESULT_H

#include <binder/Parcel.h>
#include <binder/Parcelable.h>
#include <camera/CameraMetadata.h>
#include <stdint.h>
#include <utils/LightRefBase.h>
#include <utils/RefBase.h>
#include <utils/String16.h>

#include <vector>

namespace android {

namespace hardware {
namespace camera2 {
namespace impl {

// Identifies the request, burst and frame a result or an error belongs to.
struct CaptureResultExtras : public android::Parcelable {
    int32_t requestId;
    int32_t burstId;
    int32_t afTriggerId;
    int32_t precaptureTriggerId;
    int64_t frameNumber;
    // How many partial results of this frame have been sent.
    int32_t partialResultCount;
    // The stream of a buffer error, or -1.
    int32_t errorStreamId;
    // The physical camera of a result error; empty for the logical camera.
    String16 errorPhysicalCameraId;
    int64_t lastCompletedRegularFrameNumber;
    int64_t lastCompletedReprocessFrameNumber;
    int64_t lastCompletedZslFrameNumber;

    // An invalid extras: requestId -1.
    CaptureResultExtras()
        : requestId(-1),
          burstId(0),
          afTriggerId(0),
          precaptureTriggerId(0),
          frameNumber(0),
          partialResultCount(0),
          errorStreamId(-1),
          errorPhysicalCameraId(),
          lastCompletedRegularFrameNumber(-1),
          lastCompletedReprocessFrameNumber(-1),
          lastCompletedZslFrameNumber(-1) {}

    CaptureResultExtras(int32_t reqId, int32_t bstId, int32_t afTrigId, int32_t precapTrigId,
                        int64_t frmNumber, int32_t partialResCnt, int32_t errId,
                        const String16& errPhysicalCameraId, int64_t lastCompletedRegularFrmNum,
                        int64_t lastCompletedReprocessFrmNum, int64_t lastCompletedZslFrmNum)
        : requestId(reqId),
          burstId(bstId),
          afTriggerId(afTrigId),
          precaptureTriggerId(precapTrigId),
          frameNumber(frmNumber),
          partialResultCount(partialResCnt),
          errorStreamId(errId),
          errorPhysicalCameraId(errPhysicalCameraId),
          lastCompletedRegularFrameNumber(lastCompletedRegularFrmNum),
          lastCompletedReprocessFrameNumber(lastCompletedReprocessFrmNum),
          lastCompletedZslFrameNumber(lastCompletedZslFrmNum) {}

    // True when the extras name a request (requestId >= 0).
    bool isValid();

    status_t readFromParcel(const android::Parcel* parcel) override;
    status_t writeToParcel(android::Parcel* parcel) const override;
};

// The metadata one physical camera of a logical camera produced for a result.
struct PhysicalCaptureResultInfo : public android::Parcelable {
    PhysicalCaptureResultInfo() : mPhysicalCameraId(), mPhysicalCameraMetadata() {}
    PhysicalCaptureResultInfo(const String16& cameraId, const CameraMetadata& cameraMetadata)
        : mPhysicalCameraId(cameraId), mPhysicalCameraMetadata(cameraMetadata) {}

    String16 mPhysicalCameraId;
    CameraMetadata mPhysicalCameraMetadata;

    status_t readFromParcel(const android::Parcel* parcel) override;
    status_t writeToParcel(android::Parcel* parcel) const override;
};

}  // namespace impl
}  // namespace camera2
}  // namespace hardware

using hardware::camera2::impl::CaptureResultExtras;
using hardware::camera2::impl::PhysicalCaptureResultInfo;

// One capture result: its metadata, the metadata of its physical cameras and its extras.
struct CaptureResult : public virtual LightRefBase<CaptureResult> {
    CameraMetadata mMetadata;
    std::vector<PhysicalCaptureResultInfo> mPhysicalMetadatas;
    CaptureResultExtras mResultExtras;

    CaptureResult();
    CaptureResult(const CaptureResult& otherResult);
    CaptureResult(CaptureResult&& captureResult);

    status_t readFromParcel(android::Parcel* parcel);
    status_t writeToParcel(android::Parcel* parcel) const;
};

}  // namespace android

#endif
