#include "platform/CameraServiceExtImpl_sm7125.h"

#include "utils/Env.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr int kSkypePolls = 10;
constexpr int kSkypeStepMs = 100;
constexpr int kDelayStepMs = 100;
constexpr int kDelayBoundMs = 1000;
// The IMS waits keep the base rule's 600 ms bound in this chip's coarser steps.
constexpr int kImsDisconnectPolls = 6;
constexpr int kImsDisconnectStepMs = 100;
constexpr int kImsConnectPolls = 3;
constexpr int kImsConnectStepMs = 200;

}  // namespace

CameraServiceExtImpl_sm7125::CameraServiceExtImpl_sm7125() = default;

void CameraServiceExtImpl_sm7125::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    disableFrontCameraTouchAE(request, "holi", nullptr);
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_sm7125::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.afterTestExemption = [this](int, const String8& packageName) {
        // A listed app (Skype) reconnects while its previous session is still connected: it
        // gets a second to leave before the package rules run.
        if (getBool("isNeedAddDelayPackage", false, packageName.string()) && mConnectStatus) {
            for (int polls = 1; polls <= kSkypePolls; ++polls) {
                vantu::sleepMs(kSkypeStepMs);
                if (!mConnectStatus) {
                    if (UTIL_LOG_ON()) {
                        UTIL_LOG(1, "wait skype disconnect complete uesd %d*100 ms", polls);
                    }
                    return EvictionVerdict::kAdmit;
                }
            }
        }
        // Delayed connect: a listed app opens only once a camera that is closing has closed
        // (a second at most), so that it does not meet the device half released; then the
        // package rules go on as for any app.
        if (isListed("is_need_delay_connect", packageName)) {
            if (UTIL_LOG_ON()) UTIL_LOG(1, "isDelayConnect: %d", 1);
            IntelligentEviction::pollWhile([this] { return bool(mDoingDisconnect); }, kDelayStepMs,
                                           kDelayBoundMs);
        }
        return EvictionVerdict::kContinue;
    };
    // The IMS call waits for Viber to finish closing, or, while Viber is still connected and not
    // closing yet, for it to let go; each test follows a sleep.
    rules.imsWaitForViber = [this](int slot, const String8& packageName, const String8&) {
        if (mDoingDisconnect) {
            for (int polls = 1; polls <= kImsDisconnectPolls; ++polls) {
                vantu::sleepMs(kImsDisconnectStepMs);
                if (!mDoingDisconnect) {
                    if (UTIL_LOG_ON()) {
                        UTIL_LOG(1,
                                 "IMS is doing disconnect, wait for camera %d close complete, %s, "
                                 "use time %d*100 ms",
                                 slot, packageName.string(), polls);
                    }
                    return EvictionVerdict::kAdmit;
                }
            }
        } else if (mConnectStatus) {
            for (int polls = 1; polls <= kImsConnectPolls; ++polls) {
                vantu::sleepMs(kImsConnectStepMs);
                if (!mConnectStatus) {
                    if (UTIL_LOG_ON()) {
                        UTIL_LOG(1,
                                 "IMS is connect, wait for camera %d close complete, %s, use time "
                                 "%d*200 ms",
                                 slot, packageName.string(), polls);
                    }
                    return EvictionVerdict::kAdmit;
                }
            }
        }
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "camera %d be occupied, return busy for package %s", slot,
                     packageName.string());
        }
        return EvictionVerdict::kRefuse;
    };
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_sm7125::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
