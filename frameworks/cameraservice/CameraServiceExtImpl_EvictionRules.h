/*
 * The intelligent-eviction rule set and how a chip's rule set differs from it.
 *
 * The base rule set runs in a fixed order: the eviction switch, the test-package exemption, the
 * fold rule, the system-camera rule, the always-on service rule, then either the scan of the 22
 * client slots or the FreeDom path. A chip class keeps that order and describes its differences
 * in an EvictionRules: switches for the family changes, and chip rules called at fixed points.
 */
#ifndef VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONRULES_H
#define VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONRULES_H

#include <utils/String8.h>

#include <functional>

#include "CameraServiceExtImpl.h"

namespace android {

// What a chip rule decided.
enum class EvictionVerdict {
    kContinue,  // no decision: the next rule runs
    kAdmit,     // the client may go ahead (true)
    kRefuse,    // the camera is busy for the client (false)
    kNextSlot,  // slot rules only: this slot is done, the scan goes on with the next one
};

struct EvictionRules {
    // Chip rule at a point before the slot scan: camera id and client package.
    using ClientRule = std::function<EvictionVerdict(int cameraId, const String8& packageName)>;
    // Chip rule on one occupied slot: slot, client package and occupant package.
    using SlotRule =
        std::function<EvictionVerdict(int slot, const String8& packageName, const String8& occupant)>;

    // The chip variants write their lines through the utility logger.
    bool utilLogger = false;
    // Test packages by exact name whatever "feature_cts_enable" says (MediaTek), instead of by
    // prefix while that switch holds.
    bool exactTestPackages = false;
    // What stands at the place of the fold rule.
    enum class Fold { kBase, kNone, kChip } fold = Fold::kBase;
    std::function<void(int cameraId, const String8& packageName)> chipFoldRule;
    // The always-on service also yields to a native client ("client.pid...").
    bool alwaysOnYieldsToNativeClients = false;
    // A native client ("client.pid...") decides on the first occupied slot as "android" does.
    bool nativeClientDecidesOnSlot = false;
    // In that decision, a system-camera occupant refuses at once (no 300 ms pause).
    bool systemCameraRefusesAtOnce = false;
    // The IMS service treats "com.benqu.wuta" as it treats Viber.
    bool benquAsViber = false;
    // Each FreeDom disconnect waits (600 ms at most) until afterDisconnect has run.
    bool waitForEachFreeDomDisconnect = false;

    // Chip rules: before the eviction switch, after the test-package exemption, first on each
    // occupied slot, and on each slot just before the MediaTek IMS poll.
    ClientRule beforeSwitch;
    ClientRule afterTestExemption;
    SlotRule slotFirst;
    SlotRule slotBeforeImsPoll;
    // Replaces the IMS service's wait for a Viber occupant (20 x 30 ms) when set.
    SlotRule imsWaitForViber;
};

// One eviction decision of the extension object `ext` under `rules`.
class IntelligentEviction {
public:
    IntelligentEviction(CameraServiceExtImpl& ext, const EvictionRules& rules)
        : mExt(ext), mRules(rules) {}

    // True: the client may connect (the server's own eviction follows); false: busy.
    bool decide(int cameraId, const String8& packageName);

    // Sleeps `stepMs` at a time while `busy()` holds, testing before the first sleep and after
    // each one. Returns the milliseconds slept, or -1 when still busy once `boundMs` are slept.
    static int pollWhile(const std::function<bool()>& busy, int stepMs, int boundMs);
    // The package of the live client in `slot` into `occupant`; false when the slot is empty,
    // its client has died, or `slot` is not a slot.
    static bool occupantOf(CameraServiceExtImpl& ext, int slot, String8* occupant);
    // Error notification (optional) and disconnect of the client in `slot`, if it still lives.
    static void evictSlot(CameraServiceExtImpl& ext, int slot, bool notifyError);

private:
    bool testPackageExempt(const String8& packageName);
    void baseFoldRule(int cameraId, const String8& packageName, const String8& systemCamera);
    bool systemCameraRule(const String8& packageName);
    EvictionVerdict alwaysOnRule(const String8& packageName);
    bool scanSlots(const String8& packageName);
    EvictionVerdict systemClientOnSlot(int slot, const String8& packageName,
                                       const String8& occupant);
    EvictionVerdict imsOnSlot(int slot, const String8& packageName, const String8& occupant);
    bool freeDomEviction(const String8& packageName);
    void waitForDisconnect();

    CameraServiceExtImpl& mExt;
    const EvictionRules& mRules;
};

// Package names with a fixed role in the rules.
namespace eviction {
constexpr char kSystemClient[] = "android";
constexpr char kNativeClientPrefix[] = "client.pid";
constexpr char kAlwaysOn[] = "com.aiunit.aon";
constexpr char kQcomIms[] = "org.codeaurora.ims";
constexpr char kMtkIms[] = "com.mediatek.ims";
constexpr char kMessaging[] = "com.android.mms";
constexpr char kViber[] = "com.viber.voip";
constexpr char kWuta[] = "com.benqu.wuta";
constexpr char kCtsPackage[] = "android.camera.cts";
constexpr char kCtsVerifierPackage[] = "com.android.cts.verifier";

bool isNativeClient(const String8& packageName);
}  // namespace eviction

}  // namespace android

#endif  // VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_EVICTIONRULES_H
