/*
 * The pop-up module's commands that follow capture requests: the module holds the front camera
 * (id 1) and a flash of its own, both driven by the motor service (MotorManager).
 */
#include <system/camera_metadata.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/RequestSwitches.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// The entry's first byte, or -1 when the request does not carry it.
int readByte(const camera_metadata* settings, uint32_t tag) {
    camera_metadata_ro_entry_t entry;
    if (find_camera_metadata_ro_entry(settings, tag, &entry) != 0 || entry.count == 0) return -1;
    return entry.data.u8[0];
}

}  // namespace

// The rule, per request:
// - a request of camera 1 while the module is down raises it (1);
// - a request of another camera while the module is up and camera 1 has no client any more
//   lowers it (0): the front camera stopped without its close lowering the module;
// - with "motor_flash" (default false) the module flash follows the request: on (3) when the AE
//   mode is ON_ALWAYS_FLASH, or when the AE leaves the flash to the app (OFF or ON) and the flash
//   mode is SINGLE or TORCH; off (2) for any other mode. A request carrying neither mode keeps
//   the flash as it is. Each command goes out once per change, and the module flash that is on
//   is turned off when its client disconnects (mMotorReleasePending).
void CameraServiceExtImpl::applyMotorRequestRules(const camera_metadata* settings, int id) {
    if (mMotorManager == nullptr) return;
    if (id < 0) return;
    if (id == 1 && !MotorManager::mIsOpenCameraUpMotor) {
        mMotorManager->sendSocketToMotorServer(MotorManager::CMD_UP, currentPackageName().string(),
                                               id);
        MotorManager::mIsOpenCameraUpMotor = true;
    } else if (id != 1 && MotorManager::mIsOpenCameraUpMotor && promoteClient(1) == nullptr) {
        mMotorManager->sendSocketToMotorServer(MotorManager::CMD_DOWN,
                                               currentPackageName().string(), id);
        MotorManager::mIsOpenCameraUpMotor = false;
    }

    if (settings == nullptr || !vantu::requestSwitches().motorFlash) return;
    const int aeMode = readByte(settings, ANDROID_CONTROL_AE_MODE);
    const int flashMode = readByte(settings, ANDROID_FLASH_MODE);
    if (aeMode < 0 && flashMode < 0) return;
    bool flashOn;
    if (aeMode == ANDROID_CONTROL_AE_MODE_ON_ALWAYS_FLASH) {
        flashOn = true;
    } else if (aeMode < 0 || aeMode == ANDROID_CONTROL_AE_MODE_OFF ||
               aeMode == ANDROID_CONTROL_AE_MODE_ON) {
        flashOn = flashMode == ANDROID_FLASH_MODE_SINGLE || flashMode == ANDROID_FLASH_MODE_TORCH;
    } else {
        flashOn = false;
    }
    if (flashOn == mMotorReleasePending) return;
    mMotorManager->sendSocketToMotorServer(
        flashOn ? MotorManager::CMD_FLASH_ON : MotorManager::CMD_FLASH_OFF,
        currentPackageName().string(), id);
    mMotorReleasePending = flashOn;
}

}  // namespace android
