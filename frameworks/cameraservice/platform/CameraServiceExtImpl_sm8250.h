/*
 * Qualcomm Snapdragon SM8250 (board platform "kona").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8250_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8250_H

#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm8250 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm8250();
    // Request thread: the front-camera touch-AE rule (Twinax exempt too), then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // Thread UX class 136 when boosted; the camera-extension HAL woken before an open; the
    // system camera's video timestamps filtered when "needFixFilterIssue" holds.
    void SetUxthread(unsigned int enable) override;
    void preOpenCamera() override;
    bool checkFilterVideoTimestamp(bool enable) override;
    // Eviction: the face-unlock aware rules of the family and "enable_occupied_duration_list".
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;
    // The system camera gets five more seconds for the server's eviction wait.
    void modifyWaitDuration(long& duration, long defaultDuration) override;
    ~CameraServiceExtImpl_sm8250() override;

    using CameraServiceExtImpl::limitSize;

    // The chip's size table for the querying app (package) on a camera.
    virtual void limitSize(const String16& cameraId, const char* packageName, CameraMetadata* info);

protected:
    // The performance HAL service that sets thread scheduling classes; fetched on first use.
    sp<vendor::vantu::hardware::performance::V1_0::IPerformance> mPerformance;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8250_H
