/*
 * The meta stream: a 300 x 1024 output stream that carries result metadata to the app as image
 * buffers. It is kept from the camera HAL, configured by the library and fed with buffers.
 */
#include "CameraServiceExtImpl.h"
#include "utils/VantuLog.h"

namespace android {

void CameraServiceExtImpl::beforeConfigureStreamsLocked(const CameraMetadata& sessionParams,
                                                        size_t vendorId, String8,
                                                        camera3::StreamSet&, int) {
    releaseAPSEngine();
    mFwkBeauty = 0;
    mFwkZumio = 0;
    mSupportAps2Zumio = 0;
    addRemovePackageName(sessionParams, vendorId, true);
}

void CameraServiceExtImpl::afterConfigureStreamsLocked(const CameraMetadata& sessionParams,
                                                       size_t vendorId, const CameraMetadata&,
                                                       camera3::StreamSet&, String8) {
    addRemovePackageName(sessionParams, vendorId, false);
    setUpAPSEngine();
}

status_t CameraServiceExtImpl::flush(String8 cameraId) {
    if (EXT_LOG_ON()) EXT_LOG(1, "%s ", "flush");
    return returnMetaBuffer(cameraIdToInt(cameraId), -1);
}

bool CameraServiceExtImpl::isValidOutputStream(sp<camera3::Camera3OutputStreamInterface>) {
    return false;
}

bool CameraServiceExtImpl::returnMetaBuffer(int, int) {
    return false;
}

}  // namespace android
