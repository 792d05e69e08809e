/*
 * Torch policy and shutter sound.
 */
#include "CameraServiceExtImpl.h"

namespace android {

status_t CameraServiceExtImpl::beforeSetTorchMode(const String8&, bool) {
    return OK;
}

bool CameraServiceExtImpl::checkNotPlaySound() {
    return false;
}

}  // namespace android
