/*
 * Torch policy and shutter sound.
 */
#include <string.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// Verdicts of beforeSetTorchMode.
constexpr status_t kTorchAllowed = 0;
constexpr status_t kTorchRefusedForTest = 3;
constexpr status_t kTorchDisabledByPolicy = 4;

}  // namespace

status_t CameraServiceExtImpl::beforeSetTorchMode(const String8& cameraId, bool enabled) {
    char torch[PROPERTY_VALUE_MAX] = {0};
    property_get("persist.sys.vantu.camera.open.torch", torch, "1");
    if (strcmp(torch, "0") == 0 && getBool("feature_government_enalbe", true, nullptr)) {
        EXT_LOG(0, "camera.open.torch = 0 , torch disabled by policy, return.\n");
        return kTorchDisabledByPolicy;
    }

    // Test suites must not switch the torch of auxiliary cameras; ids 0 and 1 are never refused.
    const int id = cameraIdToInt(cameraId);
    if (id >= 2 && getBool("feature_cts_enable", true, nullptr) &&
        isCompatibilityTestPackage(String8(getAPKPackageName()).string())) {
        EXT_LOG(0, "torch disabled for camera id %s, return.", cameraId.string());
        return kTorchRefusedForTest;
    }

    if (mMotorManager != nullptr && getBool("motor_flash", true, nullptr)) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "%s, ctrl motor in torch mode %d", "beforeSetTorchMode", enabled ? 1 : 0);
        }
        mMotorManager->sendSocketToMotorServer(
            enabled ? MotorManager::CMD_TORCH_ON : MotorManager::CMD_TORCH_OFF, mFlashLightValue,
            id);
        // The next connect lowers the module the torch raised.
        mMotorTorchPending = enabled;
    }

    if (getBool("feature_torchpkg", false, nullptr)) notifyCameraMDM("Torch");
    return kTorchAllowed;
}

bool CameraServiceExtImpl::checkNotPlaySound() {
    if (!getBool("feature_sound_enable", true, nullptr)) return false;
    const String8 current = currentPackageName();
    if (!stringArrayHas("disable_camera_shutter_sound_app_list", current.string())) return false;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "disable camera shoutter sound white list pkgName: %s", current.string());
    }
    return true;
}

}  // namespace android
