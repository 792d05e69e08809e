/*
 * SM8350's avatar session tags: its HAL renders the avatar that the frame-processing engine
 * prepares, so the avatar manager's tags reach it.
 */
#include "platform/CameraServiceExtImpl_sm8350.h"

namespace android {

bool CameraServiceExtImpl_sm8350::sendZumioInitTagToHAL(const CameraMetadata& sessionParams) {
    if (mZumioManager == nullptr) return false;
    return mZumioManager->sendInitTagToHAL(sessionParams, mVendorId);
}

bool CameraServiceExtImpl_sm8350::sendZumioJsonTagToHAL(const CameraMetadata& sessionParams) {
    if (mZumioManager == nullptr) return false;
    return mZumioManager->sendJsonTagToHAL(sessionParams, mVendorId);
}

bool CameraServiceExtImpl_sm8350::getUpdateZumio() {
    return mZumioManager != nullptr && mZumioManager->getUpdateZumio();
}

}  // namespace android
