/*
 * Qualcomm Snapdragon SM8450 (board platform "taro").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8450_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8450_H

#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm8450 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm8450();
    // Eviction: WeChat's explorer cameras, Kwai's own reopen, and
    // "enable_occupied_duration_list".
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;
    ~CameraServiceExtImpl_sm8450() override;

    // Size lists offered to third-party apps on this chip.
    virtual void limit3rdAPPSizeListFor8450(CameraMetadata* info);
    // Request thread: writes the last temperatures into the request's thermal tag.
    virtual void updatethermaltemp(CameraMetadata& request);

protected:
    // The performance HAL service that sets thread scheduling classes; fetched on first use.
    sp<vendor::vantu::hardware::performance::V1_0::IPerformance> mPerformance;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8450_H
