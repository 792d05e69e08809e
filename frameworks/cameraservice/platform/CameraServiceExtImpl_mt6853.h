/*
 * MediaTek MT6853 (board platform "mt6853").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6853_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6853_H

#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

class CameraServiceExtImpl_mt6853 : public CameraServiceExtImpl_mtk {
public:
    CameraServiceExtImpl_mt6853();
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6853_H
