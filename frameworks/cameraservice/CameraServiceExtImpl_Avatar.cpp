/*
 * The avatar (Zumio) feature's hooks.
 */
#include "CameraServiceExtImpl.h"

namespace android {

void CameraServiceExtImpl::overrideZumioFPS(CameraMetadata&) {}

bool CameraServiceExtImpl::sendZumioInitTagToHAL(const CameraMetadata&) {
    return false;
}

bool CameraServiceExtImpl::sendZumioJsonTagToHAL(const CameraMetadata&) {
    return false;
}

bool CameraServiceExtImpl::getZumioEnable() {
    return mZumioEnable;
}

bool CameraServiceExtImpl::getUpdateZumio() {
    return false;
}

}  // namespace android
