/*
 * Connect: admission of a client, the record of the current client and its identity.
 */
#include <inttypes.h>
#include <mediautils/BatteryNotifier.h>
#include <string.h>
#include <utils/CameraThreadState.h>
#include <vendor/vantu/hardware/cameraMDM/1.0/IVantuCameraMDM.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

using vendor::vantu::hardware::cameraMDM::V1_0::IVantuCameraMDM;

namespace {

// Verdicts of beforeConnect.
constexpr int32_t kAdmit = 0;
constexpr int32_t kDisabledByPolicy = 4;
constexpr int32_t kEvictionRefused = 7;

bool propertyIs(const char* name, const char* defaultValue, const char* expected) {
    char value[PROPERTY_VALUE_MAX] = {0};
    property_get(name, value, defaultValue);
    return strcmp(value, expected) == 0;
}

}  // namespace

int32_t CameraServiceExtImpl::beforeConnect(const String8& cameraId,
                                            const String16& clientPackageName,
                                            bool systemNativeClient) {
    // Debug properties take effect from the next connection on, without a restart.
    setExtLogSwitch(readLogSwitchProperties());

    // A normal client takes the camera from the always-on camera.
    if (gAONStatus == AON_OPEN) {
        gAONStatus = AON_CLOSING;
        closeAON();
    }
    gAONStatus = AON_NORMAL_CLIENT;

    if (propertyIs("persist.sys.vantu.camera.open.camera", "1", "0") &&
        getBool("feature_government_enalbe", true, nullptr)) {
        EXT_LOG(0, "camera.open.camera = 0, camera service not available, return.\n");
        return kDisabledByPolicy;
    }

    {
        std::lock_guard<std::mutex> lock(mClientNameLock);
        mClientComponentName = String8(clientPackageName);
    }
    // The server expects the bare package back in its own string.
    setActivityName(clientPackageName);
    const String8 packageName(clientPackageName);

    if (!systemNativeClient &&
        !customIntelligentEviction(cameraIdToInt(cameraId), clientPackageName)) {
        EXT_LOG(0, "%s Can't eviction by  %s", __func__, packageName.string());
        return kEvictionRefused;
    }

    if (stringArrayHas("skip_rus_check_list", packageName.string()) ||
        isSystemCameraPkgName(packageName.string())) {
        mApplyThirdPartySettings = false;
    }

    mTorchDisabled = propertyIs("persist.sys.vantu.camera.open.torch", "1", "0");

    if (getBool("feature_cameramdm", false, nullptr)) notifyCameraMDM(packageName.string());

    if (getBool("feature_fold_enable", false, nullptr)) {
        const uint64_t state = mDeviceState;
        char text[PROPERTY_VALUE_MAX] = {0};
        snprintf(text, sizeof(text), "%" PRIu64, state);
        property_set("vantu.camera.device.state", text);
        mDeviceStateChanged = false;
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: Set device state for 0x%" PRIx64, __func__, state);
    }
    return kAdmit;
}

void CameraServiceExtImpl::setActivityName(const String16& name) {
    const size_t length = name.size();
    const char16_t* text = name.string();
    size_t slash = 0;
    while (slash < length && text[slash] != u'/') ++slash;
    if (slash == 0 || slash >= length - 1) return;

    String16 package(text, slash);
    {
        std::lock_guard<std::mutex> lock(mClientNameLock);
        mActivityName = String8(text + slash + 1, length - slash - 1);
    }
    // The hook's argument is const in the contract, but the server passes its own string and
    // reads the bare package back from it.
    const_cast<String16&>(name) = package;
}

void CameraServiceExtImpl::setCurrentPackageName(const String16& packageName) {
    const String8 package(packageName);
    storeCurrentPackageName(package);
    property_set("vantu.camera.packname", package.string());
    setJsonPackageName(package.string());
    // Written a second time on purpose: readers that raced the configuration switch see it.
    property_set("vantu.camera.packname", package.string());
    if (EXT_LOG_ON()) EXT_LOG(1, "setCurrentPackageName %s", package.string());

    // The activity can be lost between beforeConnect and here when another client left in the
    // meantime; it is taken again from the component the server announced.
    std::lock_guard<std::mutex> lock(mClientNameLock);
    if (mActivityName != "NULL") return;
    const char* component = mClientComponentName.string();
    if (strncmp(component, package.string(), package.length()) != 0) return;
    const char* slash = strchr(component, '/');
    if (slash == nullptr) return;
    mActivityName = String8(slash + 1);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "error!mActivityName cleared unexpectedly! reset: %s.\n", mActivityName.string());
    }
}

bool CameraServiceExtImpl::afterConnect(const String8& cameraId, const String16& clientPackageName,
                                        bool systemNativeClient,
                                        sp<CameraService::BasicClient> client, void* device,
                                        unsigned long vendorId, int apiLevel) {
    mApiLevel = apiLevel;
    const int id = cameraIdToInt(cameraId);
    const String8 packageName(clientPackageName);

    if (device != nullptr && !systemNativeClient) {
        customSaveIntelligentEviction(id, clientPackageName);
        if (id >= 0) storeClient(id, client);
        if (mAuthAppManager != nullptr) {
            // The caller's identity, also when a native client opened the camera over hwbinder.
            mAuthAppManager->checkAuthResult(CameraThreadState::getCallingPid(),
                                             CameraThreadState::getCallingUid(), packageName,
                                             device);
        }
    }

    if (mMotorManager != nullptr) {
        if (id != 1) {
            if (EXT_LOG_ON()) EXT_LOG(1, "%s, in motor_socket  %d", __func__, id);
            // A torch switch raised the module; the camera now in use lowers its torch mode.
            if (mMotorTorchPending) {
                mMotorManager->sendSocketToMotorServer(MotorManager::CMD_TORCH_OFF,
                                                       mFlashLightValue, id);
                mMotorTorchPending = false;
            }
        }
        mMotorManager->checkToReadRusFile();
        if (id == 1) mMotorManager->updateIfCtrlMotorInConfigStream(packageName, id);
    }

    // Only mt6779 limits third-party sizes at connect; elsewhere the chip rules do it later.
    char platform[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.board.platform", platform, "0");
    if (strncmp(platform, "mt6779", 6) == 0) {
        if (mApplyThirdPartySettings) {
            if (mMotorManager != nullptr) {
                mMotorManager->checkIfLimitSize(packageName, id);
            } else {
                mApplyThirdPartySettings = true;
            }
        }
    } else {
        mApplyThirdPartySettings = true;
    }

    mAeAfDebug = propertyIs("persist.vendor.camera.debugaeaf", "0", "1") &&
                 getBool("feature_3a_enable", true, nullptr);

    mMotorReleasePending = false;
    mConnectStatus = true;
    const uint64_t oldVendorId = mVendorId;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: packname(%s) open camera %s, vendor_id %" PRIu64 " => %lu", __func__,
                packageName.string(), cameraId.string(), oldVendorId, vendorId);
    }
    mVendorId = vendorId;

    if (mMagneticSensorManager != nullptr) mMagneticSensorManager->init(packageName);
    return true;
}

// Camera use counts in the platform's battery statistics, except for the system's own clients.
void CameraServiceExtImpl::onClientChange(String8 cameraId,
                                          const sp<CameraService::BasicClient>& client, bool added) {
    if (client == nullptr) return;
    if (strncmp(currentPackageName().string(), "android", 7) == 0) return;
    BatteryNotifier& notifier = BatteryNotifier::getInstance();
    if (added) {
        notifier.noteStartCamera(cameraId, client->getClientUid());
    } else {
        notifier.noteStopCamera(cameraId, client->getClientUid());
    }
}

void CameraServiceExtImpl::notifyDeviceStateChange(uint64_t state) {
    if (!getBool("feature_fold_enable", false, nullptr)) return;
    if (state != mDeviceState) mDeviceStateChanged = true;
    mDeviceState = state;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s: New device state for 0x%" PRIx64, __func__, state);
}

void CameraServiceExtImpl::notifyCameraMDM(const char* who) {
    // The policy service is optional: getService would wait forever for one declared in the
    // device manifest but not running, inside an app's open or torch call.
    sp<IVantuCameraMDM> mdm = IVantuCameraMDM::tryGetService(kDefaultInstanceName);
    if (mdm == nullptr) return;
    // The policy service only takes note; its answer changes nothing here.
    mdm->notifyCameraPackage(who).isOk();
}

}  // namespace android
