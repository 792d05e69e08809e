#include "platform/CameraServiceExtImpl_mtk.h"

#include <utils/CameraThreadState.h>

#include "CameraServiceExtImpl_EvictionRules.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

CameraServiceExtImpl_mtk::CameraServiceExtImpl_mtk() {
    mGetTemperatureEnable = getBool("feature_get_temperature_enable", false, nullptr);
}

bool CameraServiceExtImpl_mtk::customIntelligentEviction(int cameraId,
                                                         const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.exactTestPackages = true;
    rules.fold = EvictionRules::Fold::kChip;
    rules.chipFoldRule = [this](int id, const String8& packageName) {
        frontRearSwitchRule(id, packageName);
    };
    rules.alwaysOnYieldsToNativeClients = true;
    rules.waitForEachFreeDomDisconnect = true;
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_mtk::frontRearSwitchRule(int cameraId, const String8& packageName) {
    if (packageName != currentPackageName()) return;
    if (isPrivilegedApp(CameraThreadState::getCallingUid())) return;
    // Summed wide: ids come from the server unchecked.
    const int64_t sum = static_cast<int64_t>(mLastCameraId) + cameraId;
    if (sum % 2 == 0) return;
    if (UTIL_LOG_ON()) {
        UTIL_LOG(1, "%s open front and rear camera,set FreeDom Eviction mode",
                 "customIntelligentEviction");
    }
    mFreeDomEviction = true;
}

bool CameraServiceExtImpl_mtk::IsNewRequestThermalTemp(bool force) {
    return force;
}

void CameraServiceExtImpl_mtk::updatethermaltemp(CameraMetadata&) {}

}  // namespace android
