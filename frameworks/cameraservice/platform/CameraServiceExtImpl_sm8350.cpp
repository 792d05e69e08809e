#include "platform/CameraServiceExtImpl_sm8350.h"

#include "utils/JsonParser.h"
#include "utils/RequestSwitches.h"
#include "utils/VantuLog.h"

namespace android {

CameraServiceExtImpl_sm8350::CameraServiceExtImpl_sm8350() {
    mGetTemperatureEnable = getBool("feature_get_temperature_enable", false, nullptr);
}

void CameraServiceExtImpl_sm8350::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    mThermalRequestCounter = frameNumber;
    disableFrontCameraTouchAE(request, "lahaina", nullptr);
    if (mGetTemperatureEnable) updatethermaltemp(request);
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_sm8350::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.beforeSwitch = [this](int, const String8& packageName) {
        return evictionLimited(packageName) ? EvictionVerdict::kAdmit : EvictionVerdict::kContinue;
    };
    rules.benquAsViber = true;
    // Face unlock does not take a camera the system camera holds; the base rules would let the
    // server's eviction decide, so this one stands first on the slot.
    rules.slotFirst = [this](int slot, const String8& packageName, const String8& occupant) {
        if (!eviction::isNativeClient(packageName) || !isSystemCameraPkgName(occupant.string()) ||
            !getBool("faceunlock_eviction_enable", false, nullptr)) {
            return EvictionVerdict::kContinue;
        }
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "camera %d(%s) be opend, can't use (%s),so skip connet", slot,
                     occupant.string(), packageName.string());
        }
        return EvictionVerdict::kRefuse;
    };
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

bool CameraServiceExtImpl_sm8350::isConnectIgnoreApp(const char*) {
    return false;
}

}  // namespace android
