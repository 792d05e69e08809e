/*
 * Intelligent eviction, second half: the scan of the client slots, the FreeDom path and the
 * bounded waits for an occupant that is closing. Every sleep and timed wait goes through the
 * environment's clock, and none is made while a lock of the extension object is held, because
 * the occupant's disconnect runs afterDisconnect, which takes the slot and disconnect locks.
 */
#include "CameraServiceExtImpl.h"
#include "CameraServiceExtImpl_EvictionLog.h"
#include "CameraServiceExtImpl_EvictionRules.h"
#include "utils/Env.h"
#include "utils/VantuLog.h"

namespace android {

using namespace eviction;

namespace {

constexpr int kPollStepMs = 30;
// "android" waits for a closing occupant over ten sleeps, the IMS service over twenty.
constexpr int kSystemClientSleeps = 10;
constexpr int kImsSleeps = 20;
constexpr int kSystemCameraPauseMs = 300;
constexpr int kMtkImsBoundMs = 1500;
constexpr nsecs_t kFreeDomWaitNs = 600 * 1000000LL;

bool toBool(EvictionVerdict verdict) {
    return verdict == EvictionVerdict::kAdmit;
}

// Sleeps `sleeps` times 30 ms while a disconnect is in progress; true as soon as a test finds it
// over. The flag is not tested after the last sleep: a close that ends during it is not seen.
bool disconnectEndsWithin(const vantu::Relaxed<bool>& doingDisconnect, int sleeps) {
    for (int n = 1; n <= sleeps; ++n) {
        vantu::sleepMs(kPollStepMs);
        if (n < sleeps && !doingDisconnect) return true;
    }
    return false;
}

}  // namespace

int IntelligentEviction::pollWhile(const std::function<bool()>& busy, int stepMs, int boundMs) {
    int waited = 0;
    while (busy()) {
        if (waited >= boundMs || stepMs <= 0) return -1;
        vantu::sleepMs(stepMs);
        waited += stepMs;
    }
    return waited;
}

bool IntelligentEviction::occupantOf(CameraServiceExtImpl& ext, int slot, String8* occupant) {
    sp<CameraService::BasicClient> client = ext.promoteClient(slot);
    if (client == nullptr) return false;
    *occupant = CameraServiceExtImpl::clientPackageName(client);
    return true;
}

void IntelligentEviction::evictSlot(CameraServiceExtImpl& ext, int slot, bool notifyError) {
    sp<CameraService::BasicClient> client = ext.promoteClient(slot);
    if (client == nullptr) return;
    if (notifyError) {
        CameraServiceExtImpl::notifyErrorAndDisconnect(client);
    } else {
        client->disconnect();
    }
}

bool IntelligentEviction::scanSlots(const String8& packageName) {
    const char* const P = packageName.string();
    const bool systemClient = packageName == kSystemClient ||
                              (mRules.nativeClientDecidesOnSlot && isNativeClient(packageName));
    for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
        String8 occupant;
        if (!occupantOf(mExt, slot, &occupant)) continue;

        if (mRules.slotFirst) {
            const EvictionVerdict verdict = mRules.slotFirst(slot, packageName, occupant);
            if (verdict == EvictionVerdict::kNextSlot) continue;
            if (verdict != EvictionVerdict::kContinue) return toBool(verdict);
        }
        // The system's own clients decide on the first occupied slot alone.
        if (systemClient) return toBool(systemClientOnSlot(slot, packageName, occupant));

        bool straightToImsPoll = false;
        if (packageName == kQcomIms) {
            const EvictionVerdict verdict = imsOnSlot(slot, packageName, occupant);
            if (verdict != EvictionVerdict::kContinue) return toBool(verdict);
            straightToImsPoll = true;
        }
        if (!straightToImsPoll) {
            if (packageName == kAlwaysOn && mExt.isSystemCameraPkgName(occupant.string())) {
                if (EVICT_LOG_ON()) {
                    EVICT_LOG(1, "camera %d be occupied by %s, return busy for package %s", slot,
                              occupant.string(), P);
                }
                return false;
            }
            // The always-on service never keeps a camera from anyone else.
            if (occupant == kAlwaysOn) {
                if (EVICT_LOG_ON()) EVICT_LOG(1, "need disconnect[%d] %s", slot, occupant.string());
                evictSlot(mExt, slot, true);
                if (EVICT_LOG_ON()) EVICT_LOG(1, "disconnect[%d] %s end", slot, occupant.string());
            }
        }

        // The occupant may have left meanwhile (or been disconnected just above).
        if (!occupantOf(mExt, slot, &occupant)) continue;
        if (mRules.slotBeforeImsPoll) {
            const EvictionVerdict verdict = mRules.slotBeforeImsPoll(slot, packageName, occupant);
            if (verdict == EvictionVerdict::kNextSlot) continue;
            if (verdict != EvictionVerdict::kContinue) return toBool(verdict);
        }
        if (occupant == kMtkIms) {
            const int waited = pollWhile([this] { return bool(mExt.mDoingDisconnect); },
                                         kPollStepMs, kMtkImsBoundMs);
            if (waited >= 0) {
                if (EVICT_LOG_ON()) {
                    EVICT_LOG(1, "%s wait for %s close %d ms", P, occupant.string(), waited);
                }
                return true;
            }
            if (EVICT_LOG_ON()) {
                EVICT_LOG(1, "camera %d be occupied, return busy for package %s", slot, P);
            }
            return false;
        }
    }
    return true;
}

EvictionVerdict IntelligentEviction::systemClientOnSlot(int slot, const String8& packageName,
                                                        const String8& occupant) {
    const char* const P = packageName.string();
    if (occupant == kAlwaysOn) {
        if (EVICT_LOG_ON()) EVICT_LOG(1, "aon camera %d(%s) be opened", slot, occupant.string());
        return EvictionVerdict::kAdmit;
    }
    if (mExt.mDoingDisconnect) {
        if (disconnectEndsWithin(mExt.mDoingDisconnect, kSystemClientSleeps)) {
            if (EVICT_LOG_ON()) {
                EVICT_LOG(1, "wait for camera %d close complete, %s connect it", slot, P);
            }
            return EvictionVerdict::kAdmit;
        }
    } else if (mExt.isSystemCameraPkgName(occupant.string())) {
        if (mRules.systemCameraRefusesAtOnce) {
            if (EVICT_LOG_ON()) {
                EVICT_LOG(
                    1, "camera %d(%s) is used by system camera, not allow occupied by faceunlock",
                    slot, occupant.string());
            }
            return EvictionVerdict::kRefuse;
        }
        if (EVICT_LOG_ON()) {
            EVICT_LOG(1, "camera %d(%s) be occupied, wait for sometime", slot, occupant.string());
        }
        vantu::sleepMs(kSystemCameraPauseMs);
    }
    if (EVICT_LOG_ON()) EVICT_LOG(1, "camera %d be occupied, return busy for package %s", slot, P);
    return EvictionVerdict::kRefuse;
}

// A video call meeting Viber: Viber gets a short time to finish closing, otherwise the call is
// refused rather than tearing down the other app's call.
EvictionVerdict IntelligentEviction::imsOnSlot(int slot, const String8& packageName,
                                               const String8& occupant) {
    const bool viberLike = occupant == kViber || (mRules.benquAsViber && occupant == kWuta);
    if (!viberLike) return EvictionVerdict::kContinue;
    if (mRules.imsWaitForViber) {
        const EvictionVerdict verdict = mRules.imsWaitForViber(slot, packageName, occupant);
        return verdict == EvictionVerdict::kAdmit ? verdict : EvictionVerdict::kRefuse;
    }
    if (mExt.mDoingDisconnect && disconnectEndsWithin(mExt.mDoingDisconnect, kImsSleeps)) {
        if (EVICT_LOG_ON()) {
            EVICT_LOG(1, "wait for camera %d close complete, %s connect it", slot,
                      packageName.string());
        }
        return EvictionVerdict::kAdmit;
    }
    if (EVICT_LOG_ON()) {
        EVICT_LOG(1, "camera %d be occupied, return busy for package %s", slot,
                  packageName.string());
    }
    return EvictionVerdict::kRefuse;
}

bool IntelligentEviction::freeDomEviction(const String8& packageName) {
    // A video call is never evicted by the messaging app; FreeDom mode stays armed.
    if (packageName == kMessaging) {
        for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
            String8 occupant;
            if (!occupantOf(mExt, slot, &occupant) || occupant != kQcomIms) continue;
            if (EVICT_LOG_ON()) {
                EVICT_LOG(1, "packageName %s clientPackageName %s", packageName.string(),
                          occupant.string());
            }
            return false;
        }
    }
    // FreeDom mode serves exactly one decision: a connect racing this one on another camera
    // finds it consumed and goes through the package rules.
    if (!mExt.mFreeDomEviction.exchange(false)) return scanSlots(packageName);

    for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
        sp<CameraService::BasicClient> client = mExt.promoteClient(slot);
        if (client == nullptr) continue;
        if (EVICT_LOG_ON()) EVICT_LOG(1, "FreeDom Eviction mode, need disconnect[%d]", slot);
        if (mRules.waitForEachFreeDomDisconnect) {
            Mutex::Autolock lock(mExt.mDisconnectLock);
            mExt.mDisconnectWaitPending = true;
        }
        CameraServiceExtImpl::notifyErrorAndDisconnect(client);
        client.clear();
        waitForDisconnect();
    }
    return true;
}

// afterDisconnect clears mDisconnectWaitPending and signals under mDisconnectLock, and the mark
// is tested under the same lock before each wait, so a signal cannot fall between the test and
// the wait: a disconnect that finished first leaves the mark clear and nothing is waited for.
void IntelligentEviction::waitForDisconnect() {
    Mutex::Autolock lock(mExt.mDisconnectLock);
    if (!mExt.mDisconnectWaitPending) return;
    const nsecs_t deadline = vantu::monotonicNs() + kFreeDomWaitNs;
    status_t result = OK;
    while (mExt.mDisconnectWaitPending) {
        const nsecs_t remaining = deadline - vantu::monotonicNs();
        if (remaining <= 0) {
            result = TIMED_OUT;
            break;
        }
        result = mExt.mDisconnectCondition.waitRelative(mExt.mDisconnectLock, remaining);
        if (result != OK) break;
    }
    // Nobody waits any more: a disconnect finishing later has nothing to signal.
    mExt.mDisconnectWaitPending = false;
    if (result != OK) EVICT_LOG(0, "waitRelative result %d", -result);
}

}  // namespace android
