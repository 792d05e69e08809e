#include "platform/CameraServiceExtImpl_sm6225.h"

#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

CameraServiceExtImpl_sm6225::CameraServiceExtImpl_sm6225() = default;

void CameraServiceExtImpl_sm6225::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    disableFrontCameraTouchAE(request, "lahaina", nullptr);
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_sm6225::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.beforeSwitch = [this](int, const String8&) {
        return preemptDisabled() ? EvictionVerdict::kAdmit : EvictionVerdict::kContinue;
    };
    rules.fold = EvictionRules::Fold::kChip;
    rules.chipFoldRule = [this](int id, const String8& packageName) {
        systemCameraTakesOver(id, packageName);
    };
    rules.benquAsViber = true;
    // Front and rear sensors share one GPIO port on these boards: the other camera cannot open
    // while one is held, so its occupant goes first. Placed after the always-on rule so that
    // the package rules still decide first.
    rules.slotBeforeImsPoll = [this, cameraId](int slot, const String8&, const String8&) {
        if (mDoingDisconnect || !getBool("isForceEviction", false, nullptr) ||
            mLastCameraId == cameraId) {
            return EvictionVerdict::kContinue;
        }
        if (UTIL_LOG_ON())
            UTIL_LOG(1, "front and rear camera with the same gpio port, force eviction");
        IntelligentEviction::evictSlot(*this, slot, true);
        return EvictionVerdict::kNextSlot;
    };
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_sm6225::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
