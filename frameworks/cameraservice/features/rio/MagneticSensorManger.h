/*
 * The magnetic-accessory torch (RIO): the magnet sensor, the torch intensity written into
 * requests, and the fake torch status told to the registered system listener.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSORMANGER_H
#define VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSORMANGER_H

#include <android/hardware/ICameraServiceListener.h>
#include <camera/CameraMetadata.h>
#include <stddef.h>
#include <stdint.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include <atomic>
#include <map>
#include <mutex>
#include <vector>

#include "common/CameraProviderManager.h"
#include "utils/OwnerLink.h"
#include "features/rio/MagneticSensor.h"

namespace android {

class CameraServiceExtImpl;

class MagnecticSensorManager : public RefBase {
public:
    // The process-wide manager, or null when "feature_rio_enable" is false. Created on the first
    // call; the extension object (`owner`) takes it once at construction and holds it for the
    // life of the process.
    static sp<MagnecticSensorManager> getInstance(CameraServiceExtImpl* owner);
    // The extension object `owner` is going: the manager stops reaching it.
    void releaseOwner(CameraServiceExtImpl* owner) { mOwner.release(owner); }
    // A manager of its own, outside the process-wide one (tests and tools). Without an owner it
    // knows no current camera and resolves tags without a vendor id.
    explicit MagnecticSensorManager(CameraServiceExtImpl* owner = nullptr);

    // Reached through the extension's hooks of the same names.
    status_t addListener(const sp<hardware::ICameraServiceListener>& listener);
    status_t removeListener(const sp<hardware::ICameraServiceListener>& listener);
    void initCameraInfos(sp<CameraProviderManager> manager);
    void parseResult(CameraMetadata& result);
    void setTorchIntensity(CameraMetadata& request, uint32_t requestCount);
    void checkNeedEnableMagneticSensor();
    bool isTorchIntensityChanged();
    // A client of `apkName` connected: whether it may use the accessory torch.
    void init(const String8& apkName);
    // Streams of `cameraId` are being configured: starts the sensor for an enabled front session.
    void updateParams(const CameraMetadata& sessionParams, int cameraId, int operatingMode);
    // The client of `cameraId` left: the sensor stops for a front camera.
    void uninit(int cameraId);

    // The process whose registered listener is told the accessory's fake torch status
    // (transaction 10007); 0 while none announced itself.
    void setRioClientPid(int pid);
    int getRioClientPid() const;
    // The torch intensity a system app asked for (transaction 10008).
    void setTorchIntensity(int32_t intensity);
    int32_t getTorchIntensity() const;

    // Reads "/data/.camera/camera_hardware_rio_applist" when "/data/.camera/updateInfo" says it
    // belongs to this build; true when the app list and the ISO table were read.
    bool parseRIOWhiteAppList();
    // Whether the version in "/data/.camera/updateInfo" equals "ro.build.date.utc".
    bool isNeedUpdateRIOWhiteList();

    // The accessory's brightness for `requested` at `iso`, from the file's ISO table when it holds
    // whole rows, else from the built-in one.
    int32_t torchIntensityAdapter(int32_t iso, int32_t requested);
    // The magnetic sensor reported: 2 near, 1 away.
    void onMagnetSensorNotify(int status);
    // Tells the listener of mRioListenerPid the fake torch status (2 on, 1 off).
    void broadcastTorchFakeStatus(int status);

    bool isFrontFacing(int cameraId);
    // The switch of the accessory torch: "ro.vantu.flashlight.rio.switch" names the property
    // that holds it.
    bool isEnableRIOSitch();
    void checkIs3rdCallSysCamera(const CameraMetadata& sessionParams);
    void getTorchIntensityTag();

    // For tests and tools: the lists as last read.
    std::vector<String8> whiteList();
    std::vector<int32_t> isoIntensityMap();
    int32_t currentIso() const { return mCurrentIso; }
    bool isEnableRIOApp() const { return mIsEnableRIOApp; }
    bool is3rdCallSysCamera() const { return mIs3rdCallSysCamera; }
    const sp<MagneticSensor>& sensor() const { return mSensor; }

private:
    uint64_t vendorId() const;
    bool inWhiteList(const char* packageName);
    bool whiteListEmpty();

    vantu::OwnerLink<CameraServiceExtImpl> mOwner;

    // The manager mutex: the listeners, taken after the sensor's mutex (never before it).
    std::mutex mLock;
    std::map<int, sp<hardware::ICameraServiceListener>> mListeners;

    // Facings and the downloaded lists; never held while calling into the sensor.
    std::mutex mInfoLock;
    std::map<int, uint8_t> mFacing;
    std::vector<String8> mWhiteList;
    std::vector<int32_t> mIsoIntensityMap;

    sp<MagneticListener> mListener;
    sp<MagneticSensor> mSensor;

    // Set by binder transactions and read on the request thread without a lock.
    std::atomic<int32_t> mRioListenerPid{0};
    std::atomic<int32_t> mRequestedTorchIntensity{0};
    std::atomic<int32_t> mLastTorchIntensity{0};
    std::atomic<uint32_t> mTorchIntensityTag{0};
    std::atomic<int32_t> mCurrentIso{6400};
    std::atomic<bool> mIsPIPScene{false};
    std::atomic<bool> mRIOSwitch{false};
    std::atomic<bool> mLastRIOSwitch{false};
    std::atomic<bool> mIsNear{false};
    std::atomic<bool> mIs3rdCallSysCamera{false};
    std::atomic<bool> mIsEnableRIOApp{false};
    std::atomic<int32_t> mDebug{-1};
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSORMANGER_H
