/*
 * Device services of the platform: thread scheduling class, pre-open notice, JPEG buffer sizing,
 * timestamps, and the provider events that end an always-on session.
 */
#include "CameraServiceExtImpl.h"
#include "utils/VantuLog.h"

namespace android {

namespace {
constexpr char kVirtualCameraProvider[] = "virtual/0";
}  // namespace

void CameraServiceExtImpl::modifyWaitDuration(long&, long) {}

ssize_t CameraServiceExtImpl::calculateJpegBufferSize(long calculatedSize, long) {
    return calculatedSize;
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
