/*
 * Disconnect: what a client leaves behind is cleared, the feature managers stop, and an eviction
 * waiting for this disconnect is woken.
 */
#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

bool CameraServiceExtImpl::beforeDisconnect(bool fromDisconnectAll, bool keepMetaStream,
                                            const String8& cameraId) {
    // The server asks on behalf of disconnect-all only while that transaction runs.
    if (fromDisconnectAll && !mDisconnectClients) return false;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s ", "beforeDisconnect");
    if (!keepMetaStream) {
        setDoingDisconnect(true);
        const int id = cameraIdToInt(cameraId);
        if (returnMetaBuffer(id, -1)) {
            std::lock_guard<std::mutex> table(mMetaStreamInfosLock);
            mMetaStreamInfos.removeItem(id);
        }
    }
    return true;
}

void CameraServiceExtImpl::afterDisconnect(String8 cameraId, String16 clientPackageName,
                                           sp<CameraService> service) {
    const int id = cameraIdToInt(cameraId);
    const String8 packageName(clientPackageName);

    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->uninit(id);

    if (mMotorManager != nullptr && id >= 0) {
        if (mMotorReleasePending && id != 1) {
            mMotorManager->sendSocketToMotorServer(MotorManager::CMD_FLASH_OFF,
                                                   packageName.string(), id);
            mMotorReleasePending = false;
        }
        if (MotorManager::mIsOpenCameraUpMotor) {
            mMotorManager->sendSocketToMotorServer(MotorManager::CMD_DOWN, packageName.string(), id);
            MotorManager::mIsOpenCameraUpMotor = false;
        }
    }

    resetDisconnectState(id, false);

    // An auxiliary camera held the flash unit; the main camera's torch is free again. The
    // server's own torch status entry point records it and tells the torch listeners.
    if (getBool("feature_flash_enable", true, nullptr) && id >= 2 && service != nullptr) {
        service->onTorchStatusChanged(String8("0"), TorchModeStatus::AVAILABLE_OFF);
    }

    signalDisconnectWaiter(false);
    resetAvatarState();
    releaseFrameProcessing();

    if (gAONStatus != AON_NORMAL_CLIENT) {
        EXT_LOG(0, "%s:AON status need close AON", __func__);
        gAONStatus = AON_CLOSING;
        closeAON();
    }
    gAONStatus = AON_IDLE;

    clearLogFlag();
    if (EXT_LOG_ON()) EXT_LOG(1, "%s: camera ConnectStatus is disconnect", __func__);
}

void CameraServiceExtImpl::resetDisconnectState(int cameraId, bool utilLogger) {
    mDisconnectClients = false;
    setDoingDisconnect(false);
    mConnectStatus = false;

    // The identity stays published while another client still holds a camera; the slot of the
    // leaving client itself (same package, same camera) is dropped only below.
    const String8 current = currentPackageName();
    bool clientsRemain = false;
    for (int id = 0; id < kMaxCameraSlots; ++id) {
        sp<CameraService::BasicClient> client = promoteClient(id);
        if (client == nullptr) continue;
        const String8 other = clientPackageName(client);
        const bool otherCamera = id != cameraId;
        if (other != current || otherCamera) {
            if (SHARED_LOG_ON(utilLogger)) {
                SHARED_LOG(utilLogger, 1, "%s, new packageName: %s, more camera id: %d",
                           "afterDisconnect", other.string(), otherCamera ? 1 : 0);
            }
            clientsRemain = true;
        }
    }
    if (!clientsRemain) {
        property_set("vantu.camera.packname", "");
        {
            std::lock_guard<std::mutex> lock(mClientNameLock);
            mCurrentPackageName = "NULL";
            mClientNameGeneration.fetch_add(1, std::memory_order_release);
            mActivityName = "NULL";
        }
        setAPKPackageName(String16("NULL"));
        mVendorId = static_cast<uint64_t>(-1);
    }

    if (mApplyThirdPartySettings && mMotorManager != nullptr) {
        mMotorManager->resetThirdAppParameters();
    }
    dropClient(cameraId);
}

// The waiter arms mDisconnectWaitPending and tests it under mDisconnectLock before it waits, so
// clearing it here under the same lock cannot fall between its test and its wait.
void CameraServiceExtImpl::signalDisconnectWaiter(bool utilLogger) {
    Mutex::Autolock lock(mDisconnectLock);
    if (!mDisconnectWaitPending) return;
    SHARED_LOG(utilLogger, 1, "%s, signal", "afterDisconnect");
    mDisconnectCondition.signal();
    mDisconnectWaitPending = false;
}

void CameraServiceExtImpl::resetAvatarState() {
    if (mZumioManager == nullptr) return;
    mSupportAps2Zumio = 0;
    mZumioManager->setAvatarInfo(String8("NULL"));
    mZumioManager->setZumioEnable(false, false);
}

void CameraServiceExtImpl::releaseFrameProcessing() {
    if (mApsInterface != nullptr) mApsInterface->uninit();
}

}  // namespace android
