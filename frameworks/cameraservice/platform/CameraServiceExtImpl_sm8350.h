/*
 * Qualcomm Snapdragon SM8350 (board platform "lahaina").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8350_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8350_H

#include "features/thermal/ThermalSampling.h"
#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm8350 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm8350();
    // Request thread: records the request counter, the front-camera touch-AE rule and
    // temperatures while "feature_get_temperature_enable" holds, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // The camera-extension HAL woken before an open.
    void preOpenCamera() override;
    // Eviction: the "Limit_Intelligent_Eviction" gate, "com.benqu.wuta" treated as Viber, and
    // face unlock kept from a system camera while "faceunlock_eviction_enable" holds.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;

    // Avatar session tags through the avatar manager (CameraServiceExtImpl_sm8350_Avatar.cpp).
    // The one chip that renders the avatar in its HAL: the engine's beauty and avatar path was
    // brought up on this platform ("lahaina"), which the APS switch also singles out.
    bool sendZumioInitTagToHAL(const CameraMetadata& sessionParams) override;
    bool sendZumioJsonTagToHAL(const CameraMetadata& sessionParams) override;
    bool getUpdateZumio() override;

    // True when a connect of the package is not recorded.
    virtual bool isConnectIgnoreApp(const char* packageName);
    // Request thread: writes the last temperatures into the request's thermal tag.
    virtual void updatethermaltemp(CameraMetadata& request);
    // Request thread: every sixtieth request may carry new temperatures, as on MediaTek; the
    // counter follows the frame numbers (CameraServiceExtImpl_qcom_Thermal.cpp).
    bool IsNewRequest(bool newRequest, bool settingsOverride) override;

protected:
    // Requests seen, for sampling temperatures every sixtieth request.
    vantu::Relaxed<uint32_t> mThermalRequestCounter{0};
    // "feature_get_temperature_enable", read at construction.
    bool mGetTemperatureEnable = false;
    // The temperatures last sent and the thermal tag.
    vantu::ThermalSampling mThermalSampling;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8350_H
