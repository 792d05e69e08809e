#include "platform/CameraServiceExtImpl_sm4350.h"

#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr char kDuo[] = "com.google.android.apps.tachyon";

}  // namespace

CameraServiceExtImpl_sm4350::CameraServiceExtImpl_sm4350() = default;

void CameraServiceExtImpl_sm4350::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    disableFrontCameraTouchAE(request, "holi", nullptr);
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_sm4350::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.beforeSwitch = [this](int, const String8& packageName) {
        if (evictionLimited(packageName) || isCtsCamera() || preemptDisabled()) {
            return EvictionVerdict::kAdmit;
        }
        return EvictionVerdict::kContinue;
    };
    rules.fold = EvictionRules::Fold::kChip;
    rules.chipFoldRule = [this](int id, const String8& packageName) {
        systemCameraTakesOver(id, packageName);
    };
    rules.alwaysOnYieldsToNativeClients = true;
    rules.nativeClientDecidesOnSlot = true;
    rules.systemCameraRefusesAtOnce = true;
    // Duo's call does not take the camera from the system camera; the other package rules do
    // not concern Duo, so the rule stands first on the slot.
    rules.slotFirst = [this](int slot, const String8& packageName, const String8& occupant) {
        if (packageName != kDuo || !isSystemCameraPkgName(occupant.string())) {
            return EvictionVerdict::kContinue;
        }
        UTIL_LOG(0, "camera %d be occupied by %s, return busy for pkg %s", slot, occupant.string(),
                 packageName.string());
        return EvictionVerdict::kRefuse;
    };
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_sm4350::limitAPI2Size(const String16&, const char*, CameraMetadata*) {}

void CameraServiceExtImpl_sm4350::limit3rdAPPSizeListFor6375(CameraMetadata*, const char*,
                                                             const String16&) {}

void CameraServiceExtImpl_sm4350::skipItsTest(CameraMetadata*) {}

}  // namespace android
