/*
 * Qualcomm Snapdragon SM7125 (board platform "atoll").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM7125_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM7125_H

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm7125 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm7125();
    // Request thread: the front-camera touch-AE rule, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // Eviction: the base rules after two delays for listed apps, and the IMS service's waits for
    // Viber counted in 100 ms and 200 ms steps.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;

    using CameraServiceExtImpl::limitSize;

    // The chip's size table for the querying app (package) on a camera.
    virtual void limitSize(const String16& cameraId, const char* packageName, CameraMetadata* info);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM7125_H
