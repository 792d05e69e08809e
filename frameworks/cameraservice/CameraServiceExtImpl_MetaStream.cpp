/*
 * The meta stream: a 300 x 1024 output stream that carries result metadata to the app as image
 * buffers. It is kept from the camera HAL, configured by the library and fed with buffers.
 */
#include "CameraServiceExtImpl.h"
#include "utils/VantuLog.h"

namespace android {

void CameraServiceExtImpl::beforeConfigureStreamsLocked(const CameraMetadata& sessionParams, size_t,
                                                        String8 cameraId, camera3::StreamSet&,
                                                        int operatingMode) {
    if (mMagneticSensorManager != nullptr) {
        mMagneticSensorManager->updateParams(sessionParams, cameraIdToInt(cameraId), operatingMode);
    }
    if (mMotorManager != nullptr) {
        mMotorManager->handleMotor(false, MotorManager::CMD_UP, 0, cameraId, currentPackageName());
    }
}

void CameraServiceExtImpl::afterConfigureStreamsLocked(const CameraMetadata&, size_t,
                                                       const CameraMetadata&, camera3::StreamSet&,
                                                       String8) {}

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
