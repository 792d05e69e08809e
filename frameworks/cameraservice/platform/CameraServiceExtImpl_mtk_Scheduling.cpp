/*
 * Scheduling and buffer hooks of the MediaTek chips: JPEG buffer sizing, monotonic timestamps
 * for one app, and on MT6983 the thread UX class and the pre-open notice.
 */
#define LOG_TAG "VantuCameraService"

#include <log/log.h>
#include <string.h>

#include "platform/CameraServiceExtImpl_mt6983.h"
#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

namespace {
constexpr char kMonoTimestampApp[] = "com.duowan.mobile";
// Software-read bits (0x3) and the texture bit (0x100) of the consumer usage.
constexpr size_t kMonoTimestampUsage = 0x103;
constexpr uint32_t kBoostClass = 136;
}  // namespace

ssize_t CameraServiceExtImpl_mtk::calculateJpegBufferSize(long calculatedSize,
                                                          long maxJpegBufferSize) {
    return CameraServiceExtImpl::calculateJpegBufferSize(calculatedSize, maxJpegBufferSize);
}

void CameraServiceExtImpl_mtk::updateUseMonoTimestamp(bool& useMonoTimestamp, size_t consumerUsage) {
    const String8 package = currentPackageName();
    if (strncmp(package.string(), kMonoTimestampApp, strlen(kMonoTimestampApp)) != 0) return;
    if ((consumerUsage & kMonoTimestampUsage) != 0) useMonoTimestamp = true;
    ALOGD("%s, com.duowan.mobile use mono timestamp mUseMonoTimestamp = %d ", __func__,
          useMonoTimestamp ? 1 : 0);
}

void CameraServiceExtImpl_mt6983::SetUxthread(unsigned int enable) {
    mUxThreads.apply(enable, kBoostClass, nullptr);
}

void CameraServiceExtImpl_mt6983::preOpenCamera() {
    wakeCameraExtension();
}

}  // namespace android
