#include "platform/CameraServiceExtImpl_mt6877.h"

#include "utils/VantuLog.h"

namespace android {

CameraServiceExtImpl_mt6877::CameraServiceExtImpl_mt6877() = default;

void CameraServiceExtImpl_mt6877::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    const camera_metadata_ro_entry entry =
        static_cast<const CameraMetadata&>(request).find(ANDROID_CONTROL_AF_TRIGGER);
    if (currentRequestApp() == RequestApp::kFacebook && entry.count > 0 &&
        entry.type == TYPE_BYTE && entry.data.u8[0] == ANDROID_CONTROL_AF_TRIGGER_CANCEL) {
        const uint8_t idle = ANDROID_CONTROL_AF_TRIGGER_IDLE;
        request.update(ANDROID_CONTROL_AF_TRIGGER, &idle, 1);
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "%s: Repeat sending AF_TRIGGER_CANCEL, Send AF_TRIGGER_IDLE To HAL",
                    __func__);
        }
    }
    CameraServiceExtImpl_mtk::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

}  // namespace android
