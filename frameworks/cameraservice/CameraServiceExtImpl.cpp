/*
 * Construction of the extension object, the module state created with it, and the small client
 * state helpers that other hooks share.
 */
#include "CameraServiceExtImpl.h"

#include <android/hardware/camera2/ICameraDeviceCallbacks.h>
#include <string.h>
#include <unistd.h>

#include "features/aon/IAONHECallbacks.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

char CamSubDeV[kAONMaxSubDevices][kAONSubDevPathSize];
vantu::Relaxed<uint16_t> CamFrontIndex{kAONNoFrontCamera};
vantu::Relaxed<int32_t> gAONStatus{AON_IDLE};
sp<IAONHECallbacks> mAONHECallback;

const char kDefaultInstanceName[] = "default";
const String16 kSystemCameraPermission("android.permission.SYSTEM_CAMERA");

CameraServiceExtImpl::CameraServiceExtImpl() {
    setExtLogSwitch(readLogSwitchProperties());
    if (EXT_LOG_ON()) EXT_LOG(1, "CameraServiceExtImpl started (pid=%d)", getpid());
    initJsonParser(kFwkConfigPath);

    // The managers read their feature switches, so they come after the configuration.
    mAuthAppManager = AuthAppManager::getInstance();
    mApsInterface = APSInterface::getInstance(this);
    mZumioManager = ZumioManager::getInstance();
    mMotorManager = MotorManager::getInstance(this);
    mMagneticSensorManager = MagnecticSensorManager::getInstance(this);

    // The read-only property only names the property that holds the flash-light state.
    char flashLightProperty[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.system.camera.flashlight", flashLightProperty, "0");
    memset(mFlashLightValue, 0, sizeof(mFlashLightValue));
    property_get(flashLightProperty, mFlashLightValue, "0");

    mIsMultiWinCameraSupport = getBool("feature_multiwin_camera_support", false, nullptr);
    mZumioEnable = getBool("feature_zumio_enable", false, nullptr);
    if (EXT_LOG_ON()) EXT_LOG(1, "APS2Zumio mZumioEnable %d", mZumioEnable);

    memset(CamSubDeV, 0, sizeof(CamSubDeV));
    CamFrontIndex = kAONNoFrontCamera;
}

CameraServiceExtImpl::~CameraServiceExtImpl() {
    // The managers outlive this object: they must not reach it once it is gone.
    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->releaseOwner(this);
    if (mMotorManager != nullptr) mMotorManager->releaseOwner(this);
    if (mApsInterface != nullptr) mApsInterface->releaseOwner(this);
    mMagneticSensorManager.clear();
    mMotorManager.clear();
    mZumioManager.clear();
    mApsInterface.clear();
    mAuthAppManager.clear();
}

void CameraServiceExtImpl::setDoingDisconnect(bool doing) {
    mDoingDisconnect = doing;
}

void CameraServiceExtImpl::setAPKPackageName(String16 packageName) {
    Mutex::Autolock lock(mAPKPackageNameLock);
    mAPKPackageName = packageName;
}

String16 CameraServiceExtImpl::getAPKPackageName() {
    Mutex::Autolock lock(mAPKPackageNameLock);
    return mAPKPackageName;
}

bool CameraServiceExtImpl::isFoldingDevice() {
    return getBool("feature_fold_enable", false, nullptr);
}

String8 CameraServiceExtImpl::currentPackageName() const {
    std::lock_guard<std::mutex> lock(mClientNameLock);
    return mCurrentPackageName;
}

String8 CameraServiceExtImpl::currentActivityName() const {
    std::lock_guard<std::mutex> lock(mClientNameLock);
    return mActivityName;
}

sp<CameraService::BasicClient> CameraServiceExtImpl::promoteClient(int cameraId) {
    if (!isSlotId(cameraId)) return nullptr;
    std::lock_guard<std::mutex> lock(mClientSlotsLock);
    return mClientSlots[cameraId].promote();
}

void CameraServiceExtImpl::storeClient(int cameraId, const sp<CameraService::BasicClient>& client) {
    if (!isSlotId(cameraId)) return;
    std::lock_guard<std::mutex> lock(mClientSlotsLock);
    mClientSlots[cameraId] = client;
}

void CameraServiceExtImpl::dropClient(int cameraId) {
    if (!isSlotId(cameraId)) return;
    std::lock_guard<std::mutex> lock(mClientSlotsLock);
    mClientSlots[cameraId].clear();
}

String8 CameraServiceExtImpl::clientPackageName(const sp<CameraService::BasicClient>& client) {
    return client != nullptr ? String8(client->getPackageName()) : String8();
}

void CameraServiceExtImpl::notifyErrorAndDisconnect(const sp<CameraService::BasicClient>& client) {
    if (client == nullptr) return;
    // ERROR_CAMERA_DISCONNECTED with empty result extras, as the server reports an eviction.
    client->notifyError(hardware::camera2::ICameraDeviceCallbacks::ERROR_CAMERA_DISCONNECTED,
                        CaptureResultExtras());
    client->disconnect();
}

}  // namespace android
