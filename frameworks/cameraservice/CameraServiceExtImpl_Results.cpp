/*
 * Corrections of results for apps that misbehave with this platform's AE and AF state machines,
 * and the stamping of results into meta buffers.
 */
#include "CameraServiceExtImpl.h"

namespace android {

bool CameraServiceExtImpl::beforeMetadataSendToApp(CaptureResult* result, uint32_t,
                                                   camera3::CaptureOutputStates&) {
    if (result != nullptr) parseResult(result->mMetadata);
    return false;
}

void CameraServiceExtImpl::UpdateParamForSpecial3rdIssue(const camera_metadata*, uint32_t) {}

void CameraServiceExtImpl::printAeAfTriggerForDebug(const camera_metadata*, uint32_t) {}

void CameraServiceExtImpl::printAeAfStateForDebug(CaptureResult*, uint32_t) {}

void CameraServiceExtImpl::forbid3rdPartyAppReconfigureStream(bool&) {}

bool CameraServiceExtImpl::IsRejectStopPreview() {
    return mRejectStopPreview;
}

void CameraServiceExtImpl::setTransformForThirdApp(const CameraMetadata&, camera3::StreamSet&) {}

void CameraServiceExtImpl::getTransformForThirdApp(int&, int) {}

}  // namespace android
