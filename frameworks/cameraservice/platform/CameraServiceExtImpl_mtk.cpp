#include "platform/CameraServiceExtImpl_mtk.h"

#include <utils/CameraThreadState.h>

#include "CameraServiceExtImpl_EvictionRules.h"
#include "utils/JsonParser.h"
#include "utils/RequestSwitches.h"
#include "utils/VantuLog.h"

namespace android {

CameraServiceExtImpl_mtk::CameraServiceExtImpl_mtk() {
    mGetTemperatureEnable = getBool("feature_get_temperature_enable", false, nullptr);
}

bool CameraServiceExtImpl_mtk::customIntelligentEviction(int cameraId,
                                                         const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.exactTestPackages = true;
    rules.fold = EvictionRules::Fold::kChip;
    rules.chipFoldRule = [this](int id, const String8& packageName) {
        frontRearSwitchRule(id, packageName);
    };
    rules.alwaysOnYieldsToNativeClients = true;
    rules.waitForEachFreeDomDisconnect = true;
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_mtk::frontRearSwitchRule(int cameraId, const String8& packageName) {
    if (packageName != currentPackageName()) return;
    if (isPrivilegedApp(CameraThreadState::getCallingUid())) return;
    // Summed wide: ids come from the server unchecked.
    const int64_t sum = static_cast<int64_t>(mLastCameraId) + cameraId;
    if (sum % 2 == 0) return;
    if (UTIL_LOG_ON()) {
        UTIL_LOG(1, "%s open front and rear camera,set FreeDom Eviction mode",
                 "customIntelligentEviction");
    }
    mFreeDomEviction = true;
}

void CameraServiceExtImpl_mtk::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                  uint32_t frameNumber) {
    mThermalRequestCounter = frameNumber;
    if (currentRequestApp() == RequestApp::kWhatsApp) {
        uint8_t trigger = ANDROID_CONTROL_AF_TRIGGER_IDLE;
        const camera_metadata_ro_entry entry =
            static_cast<const CameraMetadata&>(request).find(ANDROID_CONTROL_AF_TRIGGER);
        if (entry.count > 0 && entry.type == TYPE_BYTE) trigger = entry.data.u8[0];
        if (trigger == ANDROID_CONTROL_AF_TRIGGER_CANCEL &&
            mLastRequestAFtrigger == ANDROID_CONTROL_AF_TRIGGER_CANCEL) {
            const uint8_t idle = ANDROID_CONTROL_AF_TRIGGER_IDLE;
            request.update(ANDROID_CONTROL_AF_TRIGGER, &idle, 1);
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: Repeat sending AF_TRIGGER_CANCEL, Send AF_TRIGGER_IDLE To HAL",
                        __func__);
            }
        }
        mLastRequestAFtrigger = trigger;
    }
    if (mGetTemperatureEnable) updatethermaltemp(request);
    CameraServiceExtImpl::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_mtk::isValidOutputStream(sp<camera3::Camera3OutputStreamInterface> stream) {
    constexpr int kFormatImplementationDefined = 34;
    constexpr int kFormatYv12 = 0x32315659;
    if (stream == nullptr) return false;
    const int format = stream->getFormat();
    return format == kFormatImplementationDefined || format == kFormatYv12;
}

void CameraServiceExtImpl_mtk::limitSize(const String16& cameraId, CameraMetadata* info) {
    limitThirdPartyAppSize(cameraId, info);
}

}  // namespace android
