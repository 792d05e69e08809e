/*
 * The MediaTek family's disconnect bookkeeping.
 */
#include "platform/CameraServiceExtImpl_mtk.h"
#include "utils/VantuLog.h"

namespace android {

void CameraServiceExtImpl_mtk::afterDisconnect(String8 cameraId, String16 clientPackageName,
                                               sp<CameraService> /*service*/) {
    const int id = cameraIdToInt(cameraId);
    const String8 packageName(clientPackageName);

    if (mMotorManager != nullptr) {
        mMotorManager->handleMotor(true, MotorManager::CMD_DOWN, 0, cameraId, packageName);
    }
    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->uninit(id);

    resetDisconnectState(id, true);
    signalDisconnectWaiter(true);
    releaseFrameProcessing();
    resetAvatarState();

    clearLogFlag();
    if (UTIL_LOG_ON()) UTIL_LOG(1, "%s: camera ConnectStatus is disconnect", __func__);
}

}  // namespace android
