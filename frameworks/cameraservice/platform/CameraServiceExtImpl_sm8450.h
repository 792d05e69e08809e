/*
 * Qualcomm Snapdragon SM8450 (board platform "taro").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8450_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8450_H

#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include "features/thermal/ThermalSampling.h"
#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm8450 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm8450();
    // Request thread: records the request counter, the front-camera touch-AE rule and
    // temperatures while "feature_get_temperature_enable" holds, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // Thread UX class 129 when boosted; no display sync; the camera-extension HAL woken before
    // an open.
    void SetUxthread(unsigned int enable) override;
    bool allowDisplaySync() override;
    void preOpenCamera() override;
    // Eviction: WeChat's explorer cameras, Kwai's own reopen, and
    // "enable_occupied_duration_list".
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;
    ~CameraServiceExtImpl_sm8450() override;

    // Size lists offered to third-party apps on this chip.
    virtual void limit3rdAPPSizeListFor8450(CameraMetadata* info);
    // Request thread: writes the last temperatures into the request's thermal tag.
    virtual void updatethermaltemp(CameraMetadata& request);
    // Request thread: every sixtieth request may carry new temperatures, as on MediaTek; the
    // counter follows the frame numbers (CameraServiceExtImpl_qcom_Thermal.cpp).
    bool IsNewRequest(bool newRequest, bool settingsOverride) override;

protected:
    // The performance HAL service that sets thread scheduling classes; fetched on first use.
    sp<vendor::vantu::hardware::performance::V1_0::IPerformance> mPerformance;
    // Requests seen, for sampling temperatures every sixtieth request.
    vantu::Relaxed<uint32_t> mThermalRequestCounter{0};
    // "feature_get_temperature_enable", read at construction.
    bool mGetTemperatureEnable = false;
    // The temperatures last sent and the thermal tag.
    vantu::ThermalSampling mThermalSampling;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8450_H
