#include "platform/CameraServiceExtImpl_sm8450.h"

#include "utils/JsonParser.h"
#include "utils/RequestSwitches.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr char kWeChat[] = "com.tencent.mm";
constexpr char kKwai[] = "com.kwai.m2u";
constexpr int kKwaiBoundMs = 1500;

}  // namespace

CameraServiceExtImpl_sm8450::CameraServiceExtImpl_sm8450() {
    mGetTemperatureEnable = getBool("feature_get_temperature_enable", false, nullptr);
}

void CameraServiceExtImpl_sm8450::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    mThermalRequestCounter = frameNumber;
    disableFrontCameraTouchAE(request, "lahaina", nullptr);
    if (mGetTemperatureEnable) updatethermaltemp(request);
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

CameraServiceExtImpl_sm8450::~CameraServiceExtImpl_sm8450() {
    mPerformance.clear();
}

bool CameraServiceExtImpl_sm8450::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    // WeChat on a camera its explorer mask covers shares the camera with the occupant through
    // the cost override (OverrideCost), so no package rule may take the camera or refuse it.
    rules.afterTestExemption = [this, cameraId](int, const String8& packageName) {
        if (getBool("feature_explorer_enable", false, nullptr) && packageName == kWeChat &&
            isSupportExplorer(String8::format("%d", cameraId), packageName)) {
            return EvictionVerdict::kAdmit;
        }
        return EvictionVerdict::kContinue;
    };
    // Kwai switches cameras by closing and at once reopening: its own closing session finishes
    // first (1500 ms at most) so the reopen does not fail as busy. Other occupants meet the
    // base rules.
    rules.slotFirst = [this](int slot, const String8& packageName, const String8& occupant) {
        if (packageName != kKwai || occupant != packageName || !mDoingDisconnect) {
            return EvictionVerdict::kContinue;
        }
        return waitForClosingOccupant(slot, packageName, occupant, kKwaiBoundMs);
    };
    // A listed app gives a closing occupant time to finish, and an idle system camera a second,
    // once the package rules up to the always-on service have run.
    rules.slotBeforeImsPoll = [this](int slot, const String8& packageName, const String8& occupant) {
        return occupiedDurationRule(slot, packageName, occupant);
    };
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_sm8450::limit3rdAPPSizeListFor8450(CameraMetadata*) {}

}  // namespace android
