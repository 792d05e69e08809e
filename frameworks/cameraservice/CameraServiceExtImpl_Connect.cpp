/*
 * Connect and disconnect: admission of a client, the record of the current client, and the
 * clean-up when it leaves.
 */
#include "CameraServiceExtImpl.h"

namespace android {

int32_t CameraServiceExtImpl::beforeConnect(const String8&, const String16&, bool) {
    return 0;
}

bool CameraServiceExtImpl::afterConnect(const String8&, const String16&, bool,
                                        sp<CameraService::BasicClient>, void*, unsigned long, int) {
    return true;
}

void CameraServiceExtImpl::setCurrentPackageName(const String16&) {}

void CameraServiceExtImpl::setActivityName(const String16&) {}

bool CameraServiceExtImpl::beforeDisconnect(bool, bool, const String8&) {
    return true;
}

void CameraServiceExtImpl::afterDisconnect(String8, String16, sp<CameraService>) {}

void CameraServiceExtImpl::onClientChange(String8, const sp<CameraService::BasicClient>&, bool) {}

void CameraServiceExtImpl::notifyDeviceStateChange(uint64_t) {}

}  // namespace android
