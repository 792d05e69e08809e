#include "platform/CameraServiceExtImpl_sm8250.h"

#include <limits.h>
#include <stdint.h>

namespace android {

namespace {

// Five seconds do not fit a 32-bit long, the server's duration type on 32-bit ARM.
constexpr int64_t kSystemCameraExtraWaitNs = 5000000000LL;

}  // namespace

CameraServiceExtImpl_sm8250::CameraServiceExtImpl_sm8250() = default;

void CameraServiceExtImpl_sm8250::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    disableFrontCameraTouchAE(request, "lahaina", "com.twinax.camera");
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

CameraServiceExtImpl_sm8250::~CameraServiceExtImpl_sm8250() {
    mPerformance.clear();
}

bool CameraServiceExtImpl_sm8250::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    useFaceUnlockAwareRules(&rules);
    // A listed app gives a closing occupant time to finish, and an idle system camera a second,
    // once the package rules up to the always-on service have run.
    rules.slotBeforeImsPoll = [this](int slot, const String8& packageName, const String8& occupant) {
        return occupiedDurationRule(slot, packageName, occupant);
    };
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_sm8250::modifyWaitDuration(long& duration, long defaultDuration) {
    if (!isSystemCameraPkgName(String8(getAPKPackageName()).string())) return;
    // Summed in 64 bits and held to what a long can carry back.
    const int64_t base = defaultDuration;
    const int64_t wanted =
        base > INT64_MAX - kSystemCameraExtraWaitNs ? INT64_MAX : base + kSystemCameraExtraWaitNs;
    duration = wanted > LONG_MAX ? LONG_MAX : static_cast<long>(wanted);
}

void CameraServiceExtImpl_sm8250::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
