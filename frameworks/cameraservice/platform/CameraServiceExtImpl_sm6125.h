/*
 * Qualcomm Snapdragon SM6125 (board platform "trinket").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM6125_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM6125_H

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm6125 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm6125();

    // Takes the MediaTek family's third-party size rule.
    using CameraServiceExtImpl::limitSize;
    void limitSize(const String16& cameraId, CameraMetadata* info) override;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM6125_H
