/*
 * Hooks that belong to a feature manager: each forwards when the manager exists and otherwise
 * answers the neutral value (OK, false or nothing), so a switched-off feature changes nothing.
 */
#include "CameraServiceExtImpl.h"

namespace android {

void CameraServiceExtImpl::initCameraInfos(sp<CameraProviderManager> manager) {
    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->initCameraInfos(manager);
}

status_t CameraServiceExtImpl::addListener(const sp<hardware::ICameraServiceListener>& listener) {
    if (mMagneticSensorManager == nullptr) return OK;
    return mMagneticSensorManager->addListener(listener);
}

status_t CameraServiceExtImpl::removeListener(const sp<hardware::ICameraServiceListener>& listener) {
    if (mMagneticSensorManager == nullptr) return OK;
    return mMagneticSensorManager->removeListener(listener);
}

bool CameraServiceExtImpl::returnOutputBuffers(camera3::CaptureOutputStates& states,
                                               const camera3::camera_stream_buffer* outputBuffers,
                                               size_t numBuffers,
                                               const camera3::InFlightRequest& request,
                                               long timestamp, bool timestampIncreasing) {
    if (mApsInterface == nullptr) return false;
    return mApsInterface->returnOutputBuffers(states, outputBuffers, numBuffers, request, timestamp,
                                              timestampIncreasing);
}

bool CameraServiceExtImpl::sendCaptureResult(
    camera3::CaptureOutputStates& states, CameraMetadata& pendingMetadata,
    CaptureResultExtras& resultExtras, CameraMetadata& collectedPartialResult, uint32_t frameNumber,
    bool reprocess, bool zslStillCapture, bool rotateAndCropAuto,
    const std::set<std::string>& cameraIdsWithZoom,
    const std::vector<PhysicalCaptureResultInfo>& physicalMetadatas, long requestTimeNs) {
    if (mApsInterface == nullptr) return false;
    return mApsInterface->sendCaptureResult(
        states, pendingMetadata, resultExtras, collectedPartialResult, frameNumber, reprocess,
        zslStillCapture, rotateAndCropAuto, cameraIdsWithZoom, physicalMetadatas, requestTimeNs);
}

bool CameraServiceExtImpl::checkToRemoveInFlightReqest(camera3::CaptureOutputStates& states,
                                                       size_t index) {
    if (mApsInterface == nullptr) return false;
    return mApsInterface->checkToRemoveInFlightReqest(states, index);
}

void CameraServiceExtImpl::parseResult(CameraMetadata& result) {
    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->parseResult(result);
}

void CameraServiceExtImpl::setTorchIntensity(CameraMetadata& request, uint32_t requestCount) {
    if (mMagneticSensorManager != nullptr) {
        mMagneticSensorManager->setTorchIntensity(request, requestCount);
    }
}

void CameraServiceExtImpl::checkNeedEnableMagneticSensor() {
    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->checkNeedEnableMagneticSensor();
}

bool CameraServiceExtImpl::isTorchIntensityChanged() {
    if (mMagneticSensorManager == nullptr) return false;
    return mMagneticSensorManager->isTorchIntensityChanged();
}

}  // namespace android
