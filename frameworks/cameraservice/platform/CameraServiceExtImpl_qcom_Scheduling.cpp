/*
 * Scheduling and buffer hooks of the Snapdragon chips: the thread UX class (through the
 * performance HAL, or the thread's own kernel file), display sync, the pre-open notice, video
 * timestamp filtering and JPEG buffer sizing.
 */
#include <stdio.h>

#include "platform/CameraServiceExtImpl_qcom.h"
#include "platform/CameraServiceExtImpl_sm4350.h"
#include "platform/CameraServiceExtImpl_sm6225.h"
#include "platform/CameraServiceExtImpl_sm7250.h"
#include "platform/CameraServiceExtImpl_sm8250.h"
#include "platform/CameraServiceExtImpl_sm8350.h"
#include "platform/CameraServiceExtImpl_sm8450.h"
#include "platform/CameraServiceExtImpl_sm8550.h"
#include "utils/Env.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr uint32_t kBoostClass = 136;
constexpr uint32_t kBoostClass8450 = 129;

// "disableDisplaySync" (default true) is the answer itself: the key reads as the reverse of its
// effect, as the configuration files define it.
bool displaySyncFromConfig() {
    const bool allow = getBool("disableDisplaySync", true, nullptr);
    if (!allow) EXT_LOG(0, "allowDisplaySync is false");
    return allow;
}

}  // namespace

void CameraServiceExtImpl_qcom::SetStaticUxthread(int value) {
    char path[96];
    snprintf(path, sizeof(path), "/proc/%d/task/%d/ux_state", static_cast<int>(vantu::processId()),
             static_cast<int>(vantu::threadId()));
    FILE* file = fopen(vantu::devicePath(path).c_str(), "w");
    if (file == nullptr) return;
    fprintf(file, "%d\n", value);
    fclose(file);
}

ssize_t CameraServiceExtImpl_qcom::calculateJpegBufferSize(long calculatedSize,
                                                           long maxJpegBufferSize) {
    if (EXT_LOG_ON()) {
        // The number ahead of the text is the maximum the server offered.
        EXT_LOG(1, "%s: %d don't need change jpeg buffer size: %zd", __func__,
                static_cast<int>(maxJpegBufferSize), static_cast<ssize_t>(calculatedSize));
    }
    return calculatedSize;
}

void CameraServiceExtImpl_sm4350::SetUxthread(unsigned int enable) {
    mUxThreads.apply(enable, kBoostClass, nullptr);
}

bool CameraServiceExtImpl_sm4350::allowDisplaySync() {
    return displaySyncFromConfig();
}

void CameraServiceExtImpl_sm6225::SetUxthread(unsigned int enable) {
    mUxThreads.apply(enable, kBoostClass, nullptr);
}

bool CameraServiceExtImpl_sm6225::allowDisplaySync() {
    return displaySyncFromConfig();
}

void CameraServiceExtImpl_sm7250::SetUxthread(unsigned int enable) {
    mUxThreads.apply(enable, kBoostClass, &mPerformance);
}

bool CameraServiceExtImpl_sm7250::checkFilterVideoTimestamp(bool enable) {
    return isSystemCameraPkgName(String8(getAPKPackageName()).string()) &&
           getBool("needFixFilterIssue", false, nullptr) && enable;
}

void CameraServiceExtImpl_sm8250::SetUxthread(unsigned int enable) {
    mUxThreads.apply(enable, kBoostClass, &mPerformance);
}

void CameraServiceExtImpl_sm8250::preOpenCamera() {
    wakeCameraExtension();
}

bool CameraServiceExtImpl_sm8250::checkFilterVideoTimestamp(bool enable) {
    return isSystemCameraPkgName(String8(getAPKPackageName()).string()) &&
           getBool("needFixFilterIssue", false, nullptr) && enable;
}

void CameraServiceExtImpl_sm8350::preOpenCamera() {
    wakeCameraExtension();
}

void CameraServiceExtImpl_sm8450::SetUxthread(unsigned int enable) {
    mUxThreads.apply(enable, kBoostClass8450, &mPerformance);
}

bool CameraServiceExtImpl_sm8450::allowDisplaySync() {
    return false;
}

void CameraServiceExtImpl_sm8450::preOpenCamera() {
    wakeCameraExtension();
}

void CameraServiceExtImpl_sm8550::preOpenCamera() {
    wakeCameraExtension();
}

}  // namespace android
