/*
 * MediaTek MT6895 (board platform "mt6895").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6895_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6895_H

#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

class CameraServiceExtImpl_mt6895 : public CameraServiceExtImpl_mtk {
public:
    CameraServiceExtImpl_mt6895();
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6895_H
