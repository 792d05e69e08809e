/*
 * The avatar (Zumio) feature's hooks: the frame rate of requests while the avatar is shown, and
 * the feature's switches. The session tags go through the avatar manager on the chips whose HAL
 * renders the avatar (see the chip classes).
 */
#include <cutils/properties.h>
#include <stdlib.h>
#include <system/camera_metadata.h>

#include "CameraServiceExtImpl.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr int32_t kDefaultZumioFps = 15;

}  // namespace

// While the avatar is shown the engine renders it at a fixed rate, so the request asks the
// sensor for exactly that rate.
void CameraServiceExtImpl::overrideZumioFPS(CameraMetadata& request) {
    if (mZumioManager == nullptr || !mZumioManager->getZumioUsed()) return;
    char value[PROPERTY_VALUE_MAX];
    property_get("debug.camera.zumio.targetfps", value, "15");
    int32_t targetFps = static_cast<int32_t>(strtol(value, nullptr, 10));
    // A debug value that is no rate falls back to the default rather than stalling the sensor.
    if (targetFps <= 0 || targetFps > 480) targetFps = kDefaultZumioFps;

    camera_metadata_entry_t entry = request.find(ANDROID_CONTROL_AE_TARGET_FPS_RANGE);
    if (entry.count < 2 || entry.type != TYPE_INT32) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: fail to find aeTargetFPSRange", __func__);
        return;
    }
    const int32_t minFps = entry.data.i32[0];
    const int32_t maxFps = entry.data.i32[1];
    if (EXT_LOG_ON()) EXT_LOG(1, "%s: fps range %d %d for %d", __func__, minFps, maxFps, targetFps);
    if (minFps == targetFps && maxFps == targetFps) return;

    const int32_t range[2] = {targetFps, targetFps};
    if (EXT_LOG_ON()) EXT_LOG(1, "%s:update fps range %d %d", __func__, range[0], range[1]);
    if (request.update(ANDROID_CONTROL_AE_TARGET_FPS_RANGE, range, 2) != OK) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: fail to update fps range", __func__);
        return;
    }
    if (EXT_LOG_ON()) EXT_LOG(1, "%s: success to update fps range", __func__);
}

bool CameraServiceExtImpl::sendZumioInitTagToHAL(const CameraMetadata&) {
    return false;
}

bool CameraServiceExtImpl::sendZumioJsonTagToHAL(const CameraMetadata&) {
    return false;
}

bool CameraServiceExtImpl::getZumioEnable() {
    return mZumioEnable;
}

bool CameraServiceExtImpl::getUpdateZumio() {
    return false;
}

}  // namespace android
