/*
 * The MediaTek family: the rules every MediaTek chip shares. Chip classes derive from it and
 * override only what differs on their chip.
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MTK_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MTK_H

#include "CameraServiceExtImpl.h"
#include "features/thermal/ThermalSampling.h"

namespace android {

class CameraServiceExtImpl_mtk : public CameraServiceExtImpl {
public:
    CameraServiceExtImpl_mtk();

    // Disconnect bookkeeping of the MediaTek chips: the pop-up motor is lowered through
    // handleMotor, frame processing stops before the avatar state resets, and neither the torch
    // notification nor the always-on camera close of the base applies.
    void afterDisconnect(String8 cameraId, String16 clientPackageName,
                         sp<CameraService> service) override;

    // The family's eviction rules: test packages by exact name, the front/rear switch in place
    // of the fold rule, native clients also keep a camera from the always-on service, and each
    // FreeDom disconnect is waited for.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;

    // Request thread: records the request counter, keeps WhatsApp from sending AF CANCEL twice
    // in a row, and writes temperatures while "feature_get_temperature_enable" holds.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // The base answer or the thermal sampling's; the sampling step runs for every request
    // (CameraServiceExtImpl_mtk_Thermal.cpp).
    bool IsNewRequest(bool newRequest, bool flag) override;
    // Configuration thread: the family accepts IMPLEMENTATION_DEFINED and YV12 outputs.
    bool isValidOutputStream(sp<camera3::Camera3OutputStreamInterface> stream) override;
    // The family's third-party size rule (the motor's and the configured per-camera limits).
    using CameraServiceExtImpl::limitSize;
    void limitSize(const String16& cameraId, CameraMetadata* info) override;

    // The MediaTek scheduling hooks (CameraServiceExtImpl_mtk_Scheduling.cpp): JPEG buffers as
    // the base sizes them, and monotonic timestamps for one app's readable streams.
    ssize_t calculateJpegBufferSize(long calculatedSize, long maxJpegBufferSize) override;
    void updateUseMonoTimestamp(bool& useMonoTimestamp, size_t consumerUsage) override;

    // Request thread, per request: true when the request must carry new temperatures (`force`
    // when nothing changed).
    virtual bool IsNewRequestThermalTemp(bool force);
    // Request thread: writes the last temperatures into the request's thermal tag.
    virtual void updatethermaltemp(CameraMetadata& request);

protected:
    // An app switching between a front and a rear camera (ids of different parity) must not be
    // held up by its own closing session: the next eviction disconnects every occupant.
    void frontRearSwitchRule(int cameraId, const String8& packageName);

    // Requests seen, for sampling temperatures every mThermalPeriod requests.
    vantu::Relaxed<uint32_t> mThermalRequestCounter{0};
    // "feature_get_temperature_enable", read at construction.
    bool mGetTemperatureEnable = false;
    int32_t mThermalPeriod = 60;
    // The counter restarts at this value read as unsigned (0xFFFFFFF0).
    int32_t mThermalCounterLimit = -16;
    // The temperatures last sent and the thermal tag.
    vantu::ThermalSampling mThermalSampling;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MTK_H
