#include "platform/CameraServiceExtImpl_mt6983.h"

#include "CameraServiceExtImpl_EvictionRules.h"

namespace android {

CameraServiceExtImpl_mt6983::CameraServiceExtImpl_mt6983() = default;

void CameraServiceExtImpl_mt6983::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    disableFrontCameraTouchAE(request, "lahaina", nullptr);
    CameraServiceExtImpl_mtk::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

bool CameraServiceExtImpl_mt6983::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    rules.utilLogger = true;
    rules.exactTestPackages = true;
    rules.fold = EvictionRules::Fold::kNone;
    rules.alwaysOnYieldsToNativeClients = true;
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_mt6983::limitThumbnailSizeListForCts(CameraMetadata*, const String16&) {}

}  // namespace android
