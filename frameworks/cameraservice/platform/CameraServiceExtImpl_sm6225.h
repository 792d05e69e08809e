/*
 * Qualcomm Snapdragon SM6225 (board platform "bengal").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM6225_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM6225_H

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm6225 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm6225();
    // Request thread: the front-camera touch-AE rule, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // Thread UX class 136 when boosted; display sync as "disableDisplaySync" says.
    void SetUxthread(unsigned int enable) override;
    bool allowDisplaySync() override;
    // Eviction: the "feature_preempt_enable" gate, the system camera taking over in place of the
    // fold rule, "com.benqu.wuta" treated as Viber, and the forced eviction of front and rear
    // cameras that share one GPIO port.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;

    using CameraServiceExtImpl::limitSize;

    // The chip's size table for the querying app (package) on a camera.
    virtual void limitSize(const String16& cameraId, const char* packageName, CameraMetadata* info);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM6225_H
