/*
 * The magnetic-accessory torch (RIO): the magnet sensor, the torch intensity written into
 * requests, and the fake torch status told to the registered system listener.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSORMANGER_H
#define VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSORMANGER_H

#include <android/hardware/ICameraServiceListener.h>
#include <camera/CameraMetadata.h>
#include <stdint.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include <atomic>

#include "common/CameraProviderManager.h"

namespace android {

class CameraServiceExtImpl;

class MagnecticSensorManager : public RefBase {
public:
    // The process-wide manager, or null while the magnetic torch is not available. The extension
    // object (`owner`) takes it once at construction and holds it for the life of the process.
    // The magnetic-torch feature brings the manager itself; until then there is none.
    static sp<MagnecticSensorManager> getInstance(CameraServiceExtImpl* owner);

    // Reached through the extension's hooks of the same names.
    status_t addListener(const sp<hardware::ICameraServiceListener>& listener);
    status_t removeListener(const sp<hardware::ICameraServiceListener>& listener);
    void initCameraInfos(sp<CameraProviderManager> manager);
    void parseResult(CameraMetadata& result);
    void setTorchIntensity(CameraMetadata& request, uint32_t requestCount);
    void checkNeedEnableMagneticSensor();
    bool isTorchIntensityChanged();
    // Configuration thread, before the streams go to the HAL: the sensor follows the session.
    void updateParams(const CameraMetadata& sessionParams, int cameraId, int operatingMode);
    // A client of `apkName` connected: whether it may use the accessory torch.
    void init(const String8& apkName);
    // The client of `cameraId` left: the sensor stops for a front camera.
    void uninit(int cameraId);

    // The process whose registered listener is told the accessory's fake torch status
    // (transaction 10007); 0 while none announced itself.
    void setRioClientPid(int pid);
    int getRioClientPid() const;
    // The torch intensity a system app asked for (transaction 10008).
    void setTorchIntensity(int32_t intensity);
    int32_t getTorchIntensity() const;

private:
    // Set by binder transactions and read on the request thread without a lock.
    std::atomic<int32_t> mRioListenerPid{0};
    std::atomic<int32_t> mRequestedTorchIntensity{0};
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSORMANGER_H
