/*
 * Intelligent eviction: whether a connecting client may go ahead, must wait for a closing
 * occupant, evicts occupants first, or is refused as busy. This file holds the hooks and the
 * rules that run before the slot scan; the scan, the FreeDom path and the waits are in
 * CameraServiceExtImpl_EvictionWait.cpp.
 */
#include <string.h>

#include "CameraServiceExtImpl.h"
#include "CameraServiceExtImpl_EvictionLog.h"
#include "CameraServiceExtImpl_EvictionRules.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace eviction {

bool isNativeClient(const String8& packageName) {
    return strncmp(packageName.string(), kNativeClientPrefix, strlen(kNativeClientPrefix)) == 0;
}

}  // namespace eviction

using namespace eviction;

bool CameraServiceExtImpl::customIntelligentEviction(int cameraId,
                                                     const String16& clientPackageName) {
    static const EvictionRules kBaseRules;
    return IntelligentEviction(*this, kBaseRules).decide(cameraId, String8(clientPackageName));
}

bool CameraServiceExtImpl::customSaveIntelligentEviction(int cameraId,
                                                         const String16& clientPackageName) {
    const String8 packageName(clientPackageName);
    if (!getBool("feature_evication_enable", true, packageName.string())) return true;
    // A native client (face unlock) or a listed package must not block the next app: the next
    // eviction disconnects whatever is open.
    if (getBool("isFreeDomEvictionPackge", false, packageName.string()) ||
        isNativeClient(packageName)) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "set FreeDom Eviction for %s in connect", packageName.string());
        }
        mFreeDomEviction = true;
    }
    mLastCameraId = cameraId;
    return true;
}

bool CameraServiceExtImpl::isSupportExplorer(const String8& cameraId, const String8& packageName) {
    if (!getBool("feature_explorer_enable", false, nullptr)) return false;
    const int id = cameraIdToInt(cameraId);
    const uint32_t mask =
        static_cast<uint32_t>(getInt("supportExplorerCameraMask", 0, packageName.string()));
    EXT_LOG(2, "%s support explorer's camera mask is 0x%x", __func__, mask);
    // Ids of 32 and more wrap onto the 32 bits of the mask.
    if (id < 0 || mask == 0 || ((mask >> (id % 32)) & 1u) == 0) return false;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s cameraId %d support explorer", __func__, id);
    return true;
}

int CameraServiceExtImpl::OverrideCost(const String8& cameraId, const String8& packageName,
                                       int cost) {
    if (!getBool("feature_explorer_enable", false, nullptr)) return cost;
    if (!isSupportExplorer(cameraId, packageName) && !isSystemCameraPkgName(packageName.string())) {
        return cost;
    }
    const int overridden = getInt("explorer_override_cost", cost, nullptr);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s cameraId %d Cost is %d", __func__, cameraIdToInt(cameraId), overridden);
    }
    return overridden;
}

bool IntelligentEviction::decide(int cameraId, const String8& packageName) {
    const char* const P = packageName.string();
    if (EVICT_LOG_ON()) EVICT_LOG(1, "%s want to connect camera%d", P, cameraId);

    if (mRules.beforeSwitch) {
        const EvictionVerdict verdict = mRules.beforeSwitch(cameraId, packageName);
        if (verdict != EvictionVerdict::kContinue) return verdict == EvictionVerdict::kAdmit;
    }
    if (!getBool("feature_evication_enable", true, P)) return true;
    if (testPackageExempt(packageName)) return true;
    if (mRules.afterTestExemption) {
        const EvictionVerdict verdict = mRules.afterTestExemption(cameraId, packageName);
        if (verdict != EvictionVerdict::kContinue) return verdict == EvictionVerdict::kAdmit;
    }

    char systemCamera[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.system.camera.name", systemCamera, "");
    switch (mRules.fold) {
        case EvictionRules::Fold::kBase:
            baseFoldRule(cameraId, packageName, String8(systemCamera));
            break;
        case EvictionRules::Fold::kChip:
            if (mRules.chipFoldRule) mRules.chipFoldRule(cameraId, packageName);
            break;
        case EvictionRules::Fold::kNone:
            break;
    }
    if (EVICT_LOG_ON()) EVICT_LOG(1, "mFreeDomEviction = %d", mExt.mFreeDomEviction ? 1 : 0);

    if (!systemCameraRule(packageName)) {
        const EvictionVerdict verdict = alwaysOnRule(packageName);
        if (verdict != EvictionVerdict::kContinue) return verdict == EvictionVerdict::kAdmit;
    }

    if (!mExt.mFreeDomEviction) return scanSlots(packageName);
    return freeDomEviction(packageName);
}

bool IntelligentEviction::testPackageExempt(const String8& packageName) {
    const char* const P = packageName.string();
    if (mRules.exactTestPackages) {
        return strcmp(P, kCtsPackage) == 0 || strcmp(P, kCtsVerifierPackage) == 0;
    }
    // Without the switch test packages get no exemption at all.
    return getBool("feature_cts_enable", true, nullptr) && isCompatibilityTestPackage(P);
}

// On a foldable, the outer-screen system camera (camera 4) hands over to an app opening the
// front camera: the app's eviction must clear every occupant. An IMS call stays protected from
// the messaging app.
void IntelligentEviction::baseFoldRule(int cameraId, const String8& packageName,
                                       const String8& systemCamera) {
    if (!getBool("feature_fold_enable", false, nullptr)) return;
    const String8 current = mExt.currentPackageName();
    if (EVICT_LOG_ON()) {
        EVICT_LOG(1, "The camera now is used by %s, it will be evicted by %s", current.string(),
                  packageName.string());
    }
    if (cameraId == 1 && packageName != systemCamera && current == systemCamera &&
        mExt.mLastCameraId == 4) {
        mExt.mFreeDomEviction = true;
    }
    if (packageName == kMessaging && current == kQcomIms) mExt.mFreeDomEviction = false;
}

// The system camera takes the cameras of every other app; its own other sessions stay. True
// when the rule applied (the always-on rule is then skipped).
bool IntelligentEviction::systemCameraRule(const String8& packageName) {
    if (!mExt.isSystemCameraPkgName(packageName.string())) return false;
    const bool connected = mExt.mConnectStatus;
    if (!connected || mExt.mDoingDisconnect) return false;
    if (EVICT_LOG_ON()) {
        EVICT_LOG(1, "packname is %s, ConnectStatus is %d", packageName.string(), connected);
    }
    for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
        String8 occupant;
        if (!occupantOf(mExt, slot, &occupant)) continue;
        if (mExt.isSystemCameraPkgName(occupant.string())) continue;
        evictSlot(mExt, slot, false);
    }
    return true;
}

// The always-on service gets a camera only from the system's own clients; an app keeps it.
EvictionVerdict IntelligentEviction::alwaysOnRule(const String8& packageName) {
    if (packageName != kAlwaysOn || !mExt.mConnectStatus) return EvictionVerdict::kContinue;
    for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
        String8 occupant;
        if (!occupantOf(mExt, slot, &occupant)) continue;
        const bool yields = occupant == kSystemClient ||
                            (mRules.alwaysOnYieldsToNativeClients && isNativeClient(occupant));
        return yields ? EvictionVerdict::kAdmit : EvictionVerdict::kRefuse;
    }
    return EvictionVerdict::kContinue;
}

}  // namespace android
