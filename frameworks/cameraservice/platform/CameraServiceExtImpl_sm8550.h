/*
 * Qualcomm Snapdragon SM8550 (board platform "kalama").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8550_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8550_H

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm8550 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm8550();
    // The camera-extension HAL woken before an open.
    void preOpenCamera() override;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM8550_H
