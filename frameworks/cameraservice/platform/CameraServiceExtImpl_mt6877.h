/*
 * MediaTek MT6877 (board platform "mt6877").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6877_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6877_H

#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

class CameraServiceExtImpl_mt6877 : public CameraServiceExtImpl_mtk {
public:
    CameraServiceExtImpl_mt6877();
    // Request thread: Facebook's AF CANCEL goes to the HAL as IDLE, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6877_H
