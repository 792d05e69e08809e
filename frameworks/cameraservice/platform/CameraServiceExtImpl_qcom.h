/*
 * The Qualcomm family: the rules every Snapdragon chip shares. Chip classes derive from it and
 * override only what differs on their chip.
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_QCOM_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_QCOM_H

#include "CameraServiceExtImpl.h"

namespace android {

class CameraServiceExtImpl_qcom : public CameraServiceExtImpl {
public:
    CameraServiceExtImpl_qcom();
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_QCOM_H
