/*
 * Static characteristics shaping: what test suites and third-party apps see of a camera's size
 * lists and ranges.
 */
#include "CameraServiceExtImpl.h"

namespace android {

status_t CameraServiceExtImpl::getCameraCharacteristics(const String16&, CameraMetadata*) {
    return OK;
}

void CameraServiceExtImpl::filterSurfaceConfig(int&, int&) {}

void CameraServiceExtImpl::limitExposureTimeRangeForIts(CameraMetadata*) {}

void CameraServiceExtImpl::limitSizeListForCtsVerifier(CameraMetadata*, const String16&) {}

void CameraServiceExtImpl::limitSize(const String16&, CameraMetadata*) {}

void CameraServiceExtImpl::limitSizeListForCts(CameraMetadata*, const String16&) {}

void CameraServiceExtImpl::limitSize(int, int, CameraMetadata*, bool) {}

void CameraServiceExtImpl::updateHFRBatchSizeForCts(CameraMetadata*) {}

}  // namespace android
