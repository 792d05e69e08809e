#include "platform/CameraServiceExtImpl_qcom.h"

#include <string>
#include <vector>

#include "utils/Env.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr int kPollStepMs = 30;
constexpr int kOccupiedBoundMs = 1500;
constexpr int kSystemCameraGraceMs = 1000;

}  // namespace

CameraServiceExtImpl_qcom::CameraServiceExtImpl_qcom() = default;

void CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                   uint32_t frameNumber) {
    applyThirdPartyFlashAfFixes(request);
    CameraServiceExtImpl::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_qcom::isListed(const char* key, const String8& packageName) {
    return stringArrayHas(key, packageName.string(), nullptr);
}

bool CameraServiceExtImpl_qcom::evictionLimited(const String8& packageName) {
    return getBool("Limit_Intelligent_Eviction", false, packageName.string()) ||
           getBool("Limit_Intelligent_Eviction", false, currentPackageName().string());
}

bool CameraServiceExtImpl_qcom::preemptDisabled() {
    return !getBool("feature_preempt_enable", true, currentPackageName().string());
}

void CameraServiceExtImpl_qcom::systemCameraTakesOver(int, const String8& packageName) {
    const String8 current = currentPackageName();
    if (!isSystemCameraPkgName(packageName.string()) || isSystemCameraPkgName(current.string())) {
        return;
    }
    if (UTIL_LOG_ON()) {
        UTIL_LOG(1, "The camera now is used by %s, it will be evicted by %s", current.string(),
                 packageName.string());
    }
    mFreeDomEviction = true;
}

EvictionVerdict CameraServiceExtImpl_qcom::occupiedDurationRule(int slot, const String8& packageName,
                                                                const String8& occupant) {
    if (!isListed("enable_occupied_duration_list", packageName)) return EvictionVerdict::kContinue;
    if (mDoingDisconnect) {
        return waitForClosingOccupant(slot, packageName, occupant, kOccupiedBoundMs);
    }
    if (isSystemCameraPkgName(occupant.string())) {
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "camera %d(%s) be occupied, wait for sometime", slot, occupant.string());
        }
        vantu::sleepMs(kSystemCameraGraceMs);
        return EvictionVerdict::kAdmit;
    }
    return EvictionVerdict::kContinue;
}

EvictionVerdict CameraServiceExtImpl_qcom::waitForClosingOccupant(int slot,
                                                                  const String8& packageName,
                                                                  const String8& occupant,
                                                                  int boundMs) {
    const int waited = IntelligentEviction::pollWhile([this] { return bool(mDoingDisconnect); },
                                                      kPollStepMs, boundMs);
    if (waited < 0) {
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "camera %d be occupied, return busy for package %s", slot,
                     packageName.string());
        }
        return EvictionVerdict::kRefuse;
    }
    if (UTIL_LOG_ON()) {
        UTIL_LOG(1, "%s wait for %s close %d ms", packageName.string(), occupant.string(), waited);
    }
    return EvictionVerdict::kAdmit;
}

void CameraServiceExtImpl_qcom::useFaceUnlockAwareRules(EvictionRules* rules) {
    rules->utilLogger = true;
    rules->afterTestExemption = [](int, const String8& packageName) {
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "%s, pkg_name:%s, isFaceUnlockService %d", "customIntelligentEviction",
                     packageName.string(), eviction::isNativeClient(packageName) ? 1 : 0);
        }
        return EvictionVerdict::kContinue;
    };
    rules->fold = EvictionRules::Fold::kChip;
    rules->chipFoldRule = [this](int, const String8& packageName) {
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "packname is %s, mFreeDomEviction is %d", packageName.string(),
                     mFreeDomEviction ? 1 : 0);
        }
    };
    rules->alwaysOnYieldsToNativeClients = true;
    rules->nativeClientDecidesOnSlot = true;
}

}  // namespace android
