/*
 * MediaTek MT6983 (board platform "mt6983").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6983_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6983_H

#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

class CameraServiceExtImpl_mt6983 : public CameraServiceExtImpl_mtk {
public:
    CameraServiceExtImpl_mt6983();
    // Request thread: the front-camera touch-AE rule, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // Thread UX class 136 when boosted; the camera-extension HAL woken before an open.
    void SetUxthread(unsigned int enable) override;
    void preOpenCamera() override;
    // The base eviction rules with the family's test-package and always-on changes; this chip
    // has neither a fold rule nor the family's front/rear switch and FreeDom waits.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;

    // Thumbnail sizes offered to CTS.
    virtual void limitThumbnailSizeListForCts(CameraMetadata* info, const String16& cameraId);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6983_H
