#include "platform/CameraServiceExtImpl_sm7250.h"

namespace android {

CameraServiceExtImpl_sm7250::CameraServiceExtImpl_sm7250() = default;

void CameraServiceExtImpl_sm7250::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                                     uint32_t frameNumber) {
    disableFrontCameraTouchAE(request, "lahaina", nullptr);
    CameraServiceExtImpl_qcom::onPrepareHalRequestsUpdateMetadata(request, frameNumber);
}

CameraServiceExtImpl_sm7250::~CameraServiceExtImpl_sm7250() {
    mPerformance.clear();
}

bool CameraServiceExtImpl_sm7250::customIntelligentEviction(int cameraId,
                                                            const String16& clientPackageName) {
    EvictionRules rules;
    useFaceUnlockAwareRules(&rules);
    return IntelligentEviction(*this, rules).decide(cameraId, String8(clientPackageName));
}

void CameraServiceExtImpl_sm7250::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
