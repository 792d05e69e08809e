/*
 * Legacy API1 hooks: the defaults that leave the server's own API1 behaviour unchanged. Chip
 * classes override the rules of their platform.
 */
#include <string.h>

#include "CameraServiceExtImpl.h"

namespace android {

namespace {
constexpr char kEngineerCameraPackage[] = "com.vantu.engineercamera";
}  // namespace

bool CameraServiceExtImpl::checkToTriggerAFOnceForAPI1(camera2::Parameters::focusMode_t, bool) {
    return false;
}

bool CameraServiceExtImpl::checkToAddPreviewCallbackForAPI1() {
    return false;
}

bool CameraServiceExtImpl::checkToSetParametersIgnoreErrorForAPI1(camera2::Parameters&,
                                                                  const String8&) {
    return false;
}

bool CameraServiceExtImpl::checkToForceTriggerFaceAEForAPI1() {
    return false;
}

void CameraServiceExtImpl::adjustPreviewSizeForAPI1(int&, int&) {}

void CameraServiceExtImpl::updatePreviewAndVideoSizeForAPI1(CameraParameters2&, int, Vector<Size>&,
                                                            int&, int&, Vector<Size>&, int&, int&) {
}

void CameraServiceExtImpl::updateFlashModeForAPI1(CameraParameters2&,
                                                  camera2::Parameters::flashMode_t&) {}

void CameraServiceExtImpl::getPictureSizeForAPI1(Vector<Size>&, std::function<long(Size)>, int) {}

void CameraServiceExtImpl::setPreviewFpsRangeForAPI1(int&, int&, int&, int&) {}

void CameraServiceExtImpl::adjustInvalidFpsForAPI1(int&, int&) {}

void CameraServiceExtImpl::adjustPreviewFpsForAPI1(int&, int&) {}

// Zero-shutter-lag is only for the maker's engineering camera, and only when it is the device's
// system camera.
bool CameraServiceExtImpl::checkUseZeroShutterLagForAPI1() {
    const String8 package = currentPackageName();
    return strcmp(package.string(), kEngineerCameraPackage) == 0 &&
           isSystemCameraPkgName(package.string());
}

bool CameraServiceExtImpl::checkIfAddSizeForAPI1(int, int, int, int) {
    return true;
}

void CameraServiceExtImpl::adjustFOVForAPI1(int, float*, float*, float, float, float, float, float) {
}

}  // namespace android
