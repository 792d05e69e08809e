#include "platform/CameraServiceExtImpl_mt6765.h"

#include <string>
#include <vector>

#include "CameraServiceExtImpl_EvictionRules.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr int kPollStepMs = 30;
constexpr int kBoundMs = 1500;

}  // namespace

CameraServiceExtImpl_mt6765::CameraServiceExtImpl_mt6765() = default;

// Listed apps release their camera slowly; the next client waits for the close to finish rather
// than failing. The eviction switch is not consulted on this chip.
bool CameraServiceExtImpl_mt6765::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    const String8 packageName(clientPackageName);
    if (UTIL_LOG_ON()) {
        UTIL_LOG(1, "%s want to connect camera%d", packageName.string(), cameraId);
    }
    std::vector<std::string> waitList;
    getStringArray("disconnect_wait_list", waitList, nullptr);
    if (waitList.empty()) return true;

    for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
        String8 occupant;
        if (!IntelligentEviction::occupantOf(*this, slot, &occupant)) continue;
        bool listed = false;
        for (const std::string& entry : waitList) listed = listed || entry == occupant.string();
        if (!listed) continue;

        const int waited = IntelligentEviction::pollWhile(
            [this] { return mDoingDisconnect || mConnectStatus; }, kPollStepMs, kBoundMs);
        if (waited >= 0) {
            if (UTIL_LOG_ON()) {
                UTIL_LOG(1, "%s wait for %s close %d ms", packageName.string(), occupant.string(),
                         waited);
            }
            return true;
        }
        if (UTIL_LOG_ON()) {
            UTIL_LOG(1, "camera %d be occupied, return busy for package %s", slot,
                     packageName.string());
        }
        return false;
    }
    return true;
}

}  // namespace android
