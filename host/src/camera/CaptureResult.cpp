// Capture result types and their parcel forms.
#define LOG_TAG "Camera-CaptureResult"

#include "camera/CaptureResult.h"

#include <log/log.h>

#include <utility>

namespace android {

namespace hardware {
namespace camera2 {
namespace impl {

bool CaptureResultExtras::isValid() {
    return requestId >= 0;
}

status_t CaptureResultExtras::readFromParcel(const android::Parcel* parcel) {
    if (parcel == nullptr) {
        ALOGE("%s: Null parcel", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = OK;
    bool physicalCameraIdPresent = false;
    if ((res = parcel->readInt32(&requestId)) != OK || (res = parcel->readInt32(&burstId)) != OK ||
        (res = parcel->readInt32(&afTriggerId)) != OK ||
        (res = parcel->readInt32(&precaptureTriggerId)) != OK ||
        (res = parcel->readInt64(&frameNumber)) != OK ||
        (res = parcel->readInt32(&partialResultCount)) != OK ||
        (res = parcel->readInt32(&errorStreamId)) != OK ||
        (res = parcel->readBool(&physicalCameraIdPresent)) != OK) {
        ALOGE("%s: Failed to read capture result extras: %d", __FUNCTION__, res);
        return res;
    }
    if (physicalCameraIdPresent) {
        String16 cameraId;
        if ((res = parcel->readString16(&cameraId)) != OK) {
            ALOGE("%s: Failed to read camera id: %d", __FUNCTION__, res);
            return res;
        }
        errorPhysicalCameraId = cameraId;
    }
    if ((res = parcel->readInt64(&lastCompletedRegularFrameNumber)) != OK ||
        (res = parcel->readInt64(&lastCompletedReprocessFrameNumber)) != OK ||
        (res = parcel->readInt64(&lastCompletedZslFrameNumber)) != OK) {
        ALOGE("%s: Failed to read last completed frame numbers: %d", __FUNCTION__, res);
        return res;
    }
    return OK;
}

status_t CaptureResultExtras::writeToParcel(android::Parcel* parcel) const {
    if (parcel == nullptr) {
        ALOGE("%s: Null parcel", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = OK;
    if ((res = parcel->writeInt32(requestId)) != OK || (res = parcel->writeInt32(burstId)) != OK ||
        (res = parcel->writeInt32(afTriggerId)) != OK ||
        (res = parcel->writeInt32(precaptureTriggerId)) != OK ||
        (res = parcel->writeInt64(frameNumber)) != OK ||
        (res = parcel->writeInt32(partialResultCount)) != OK ||
        (res = parcel->writeInt32(errorStreamId)) != OK) {
        return res;
    }
    if (errorPhysicalCameraId.size() > 0) {
        if ((res = parcel->writeBool(true)) != OK ||
            (res = parcel->writeString16(errorPhysicalCameraId)) != OK) {
            ALOGE("%s: Failed to write physical camera id: %d", __FUNCTION__, res);
            return res;
        }
    } else if ((res = parcel->writeBool(false)) != OK) {
        return res;
    }
    if ((res = parcel->writeInt64(lastCompletedRegularFrameNumber)) != OK ||
        (res = parcel->writeInt64(lastCompletedReprocessFrameNumber)) != OK ||
        (res = parcel->writeInt64(lastCompletedZslFrameNumber)) != OK) {
        return res;
    }
    return OK;
}

status_t PhysicalCaptureResultInfo::readFromParcel(const android::Parcel* parcel) {
    if (parcel == nullptr) {
        ALOGE("%s: Null parcel", __FUNCTION__);
        return BAD_VALUE;
    }
    mPhysicalCameraId = String16();
    mPhysicalCameraMetadata.clear();
    status_t res = OK;
    if ((res = parcel->readString16(&mPhysicalCameraId)) != OK) {
        ALOGE("%s: Failed to read camera id: %d", __FUNCTION__, res);
        return res;
    }
    if ((res = mPhysicalCameraMetadata.readFromParcel(parcel)) != OK) {
        ALOGE("%s: Failed to read metadata from parcel: %d", __FUNCTION__, res);
        return res;
    }
    return OK;
}

status_t PhysicalCaptureResultInfo::writeToParcel(android::Parcel* parcel) const {
    if (parcel == nullptr) {
        ALOGE("%s: Null parcel", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = OK;
    if ((res = parcel->writeString16(mPhysicalCameraId)) != OK) {
        ALOGE("%s: Failed to write physical camera ID to parcel: %d", __FUNCTION__, res);
        return res;
    }
    if ((res = mPhysicalCameraMetadata.writeToParcel(parcel)) != OK) {
        ALOGE("%s: Failed to write physical camera metadata to parcel: %d", __FUNCTION__, res);
        return res;
    }
    return OK;
}

}  // namespace impl
}  // namespace camera2
}  // namespace hardware

CaptureResult::CaptureResult() : mMetadata(), mResultExtras() {}

CaptureResult::CaptureResult(const CaptureResult& otherResult)
    : mMetadata(otherResult.mMetadata),
      mPhysicalMetadatas(otherResult.mPhysicalMetadatas),
      mResultExtras(otherResult.mResultExtras) {}

CaptureResult::CaptureResult(CaptureResult&& captureResult)
    : mMetadata(std::move(captureResult.mMetadata)),
      mPhysicalMetadatas(std::move(captureResult.mPhysicalMetadatas)),
      mResultExtras(captureResult.mResultExtras) {}

status_t CaptureResult::readFromParcel(android::Parcel* parcel) {
    if (parcel == nullptr) {
        ALOGE("%s: parcel is null", __FUNCTION__);
        return BAD_VALUE;
    }
    mMetadata.clear();
    mPhysicalMetadatas.clear();

    status_t res = mMetadata.readFromParcel(parcel);
    if (res != OK) {
        ALOGE("%s: Failed to read metadata from parcel: %d", __FUNCTION__, res);
        return res;
    }
    int32_t physicalMetadataCount = 0;
    if ((res = parcel->readInt32(&physicalMetadataCount)) != OK) {
        ALOGE("%s: Failed to read the physical metadata count from parcel: %d", __FUNCTION__, res);
        return res;
    }
    if (physicalMetadataCount < 0) {
        ALOGE("%s: Invalid physical metadata count from parcel: %d", __FUNCTION__,
              physicalMetadataCount);
        return BAD_VALUE;
    }
    for (int32_t i = 0; i < physicalMetadataCount; i++) {
        PhysicalCaptureResultInfo info;
        if ((res = info.readFromParcel(parcel)) != OK) {
            return res;
        }
        mPhysicalMetadatas.push_back(std::move(info));
    }
    if ((res = mResultExtras.readFromParcel(parcel)) != OK) {
        ALOGE("%s: Failed to read result extras from parcel: %d", __FUNCTION__, res);
        return res;
    }
    return OK;
}

status_t CaptureResult::writeToParcel(android::Parcel* parcel) const {
    if (parcel == nullptr) {
        ALOGE("%s: parcel is null", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = mMetadata.writeToParcel(parcel);
    if (res != OK) {
        ALOGE("%s: Failed to write metadata to parcel: %d", __FUNCTION__, res);
        return res;
    }
    if ((res = parcel->writeInt32(static_cast<int32_t>(mPhysicalMetadatas.size()))) != OK) {
        return res;
    }
    for (const auto& physicalMetadata : mPhysicalMetadatas) {
        if ((res = physicalMetadata.writeToParcel(parcel)) != OK) {
            return res;
        }
    }
    if ((res = mResultExtras.writeToParcel(parcel)) != OK) {
        ALOGE("%s: Failed to write result extras to parcel: %d", __FUNCTION__, res);
        return res;
    }
    return OK;
}

}  // namespace android
