/*
 * App classification: the maker's system camera, privileged apps of other makers, compatibility
 * test apps and everything else.
 */
#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"

namespace android {

bool CameraServiceExtImpl::isPrivilegedApp(int) {
    return false;
}

bool CameraServiceExtImpl::isSystemCameraUid(int) {
    return false;
}

bool CameraServiceExtImpl::isCtsCamera() {
    return false;
}

bool CameraServiceExtImpl::isCtsCamera(const char*) {
    return false;
}

bool CameraServiceExtImpl::isEnableFwkTimer() {
    return getBool("feature_enable_fwk_timer", true, nullptr);
}

void CameraServiceExtImpl::clearNonCTSClient(const String16&) {}

bool CameraServiceExtImpl::isMultiWinCameraSupport() {
    return mIsMultiWinCameraSupport;
}

bool CameraServiceExtImpl::isSystemCameraPkgName(const char*) {
    return false;
}

bool CameraServiceExtImpl::is3rdPartyAppPrivileged(String16) {
    return false;
}

}  // namespace android
