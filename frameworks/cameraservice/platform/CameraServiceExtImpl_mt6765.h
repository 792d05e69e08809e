/*
 * MediaTek MT6765 (board platform "mt6765").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6765_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6765_H

#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

class CameraServiceExtImpl_mt6765 : public CameraServiceExtImpl_mtk {
public:
    CameraServiceExtImpl_mt6765();
    // One rule only: a client waits (1500 ms at most) for an occupant named in
    // "disconnect_wait_list" to finish closing.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_MT6765_H
