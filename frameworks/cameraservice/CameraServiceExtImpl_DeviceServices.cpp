/*
 * Device services of the platform: thread scheduling class, pre-open notice, JPEG buffer sizing,
 * timestamps, and the provider events that end an always-on session.
 */
#include <limits.h>
#include <vendor/vantu/hardware/cameraextension/1.0/ICameraExtensionService.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {
constexpr char kVirtualCameraProvider[] = "virtual/0";
}  // namespace

void CameraServiceExtImpl::modifyWaitDuration(long&, long) {}

ssize_t CameraServiceExtImpl::calculateJpegBufferSize(long calculatedSize, long maxJpegBufferSize) {
    // Remosaic captures may need up to four times the maximum; wide, so four times a huge
    // maximum saturates instead of wrapping.
    long allowed = maxJpegBufferSize;
    if (getBool("feature_remosaic_enable", false, nullptr)) {
        if (maxJpegBufferSize > LONG_MAX / 4) {
            allowed = LONG_MAX;
        } else if (maxJpegBufferSize < LONG_MIN / 4) {
            allowed = LONG_MIN;
        } else {
            allowed = maxJpegBufferSize * 4;
        }
    }
    if (calculatedSize <= allowed) return calculatedSize;
    // An oversized buffer falls back to one maximum, not to the allowed size.
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: jpeg buffer size calculated is > maxJpeg bufferSize(%zd), clamping",
                __func__, static_cast<ssize_t>(maxJpegBufferSize));
    }
    return maxJpegBufferSize;
}

void CameraServiceExtImpl::updateUseMonoTimestamp(bool&, size_t) {}

bool CameraServiceExtImpl::isVirtualCameraProvider(const std::string& name) {
    return name == kVirtualCameraProvider;
}

void CameraServiceExtImpl::SetStaticUxthread(int) {}

void CameraServiceExtImpl::SetUxthread(unsigned int) {}

bool CameraServiceExtImpl::isWeChatRequestTimeOut() {
    return false;
}

void CameraServiceExtImpl::preOpenCamera() {
    if (EXT_LOG_ON()) EXT_LOG(1, "preOpenCamera");
}

bool CameraServiceExtImpl::checkFilterVideoTimestamp(bool) {
    return false;
}

void CameraServiceExtImpl::wakeCameraExtension() {
    using vendor::vantu::hardware::cameraextension::V1_0::ICameraExtensionService;
    if (EXT_LOG_ON()) EXT_LOG(1, "preOpenCamera");
    sp<ICameraExtensionService> service =
        ICameraExtensionService::tryGetService("cameraextensionservice");
    if (service == nullptr) {
        EXT_LOG(0, "connect cameraextensionservice fail");
        return;
    }
    // The answer is not used: the notice only lets the HAL get ready ahead of the open.
    hardware::Return<int32_t> ret = service->preOpenCamera(1);
    (void)ret.isOk();
}

// A re-enumeration or a death the server watches ends any always-on session.
status_t CameraServiceExtImpl::enumerateProviders() {
    gAONStatus = AON_CLOSING;
    closeAON();
    gAONStatus = AON_IDLE;
    return OK;
}

void CameraServiceExtImpl::binderDied(const wp<IBinder>&) {
    enumerateProviders();
}

}  // namespace android
