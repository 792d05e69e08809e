/*
 * The pop-up camera motor: commands to the motor service and the apps whose module is raised at
 * stream configuration.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H

#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include <atomic>
#include <mutex>
#include <vector>

#include "features/rus/CameraServiceRus.h"
#include "utils/OwnerLink.h"

namespace android {

class CameraServiceExtImpl;

class MotorManager : public RefBase {
public:
    // The process-wide manager, or null when "feature_motor_enable" is false. Created on the
    // first call with every flag clear; the extension object (`owner`) takes it once at
    // construction and holds it for the life of the process.
    static sp<MotorManager> getInstance(CameraServiceExtImpl* owner);
    // The extension object `owner` is going: the manager stops reaching it.
    void releaseOwner(CameraServiceExtImpl* owner) { mOwner.release(owner); }

    // Command codes of the motor service's messages.
    enum Command : int {
        CMD_DOWN = 0,
        CMD_UP = 1,
        CMD_FLASH_OFF = 2,
        CMD_FLASH_ON = 3,
        CMD_TORCH_OFF = 4,
        CMD_TORCH_ON = 5,
    };

    // Sends "cmd,pid,package,camera" to the motor service over "motor_socket".
    void sendSocketToMotorServer(int cmd, const char* packageName, int cameraId);
    // Re-reads the downloadable app lists at most every 12 hours ("camera.3rd.update" forces).
    void checkToReadRusFile();
    // Reads "/data/.camera/camera_hardware_motorctrl_applist"; true when it held packages.
    bool parseMotorCtrlList();
    // Decides whether the app raises the module at stream configuration instead of at connect.
    void updateIfCtrlMotorInConfigStream(const String8& packageName, int cameraId);
    // Raises (opening) or lowers (closing) the module of camera 1 for stream-configured apps.
    void handleMotor(bool closing, int cmd, int reserved, const String8& cameraId,
                     const String8& packageName);
    // Sets the third-party size limits of the app on `cameraId`.
    void checkIfLimitSize(const String8& packageName, int cameraId);
    // Clears the limits of the app that left; the sub preview limit is kept on purpose.
    void resetThirdAppParameters();

    // The size limits set by checkIfLimitSize.
    bool isMainPreviewLimited() const { return mMainPreviewLimited; }
    bool isSubPreviewLimited() const { return mSubPreviewLimited; }
    bool isSubTextureLimited() const { return mSubTextureLimited; }
    int32_t getLimitThirdAppSizeLevel() const { return mLimitThirdAppSizeLevel; }
    // At least one size limit is active.
    bool hasSizeLimit() const {
        return mMainPreviewLimited || mSubPreviewLimited || mSubTextureLimited ||
               mLimitThirdAppSizeLevel == 1;
    }
    // The motor-control list as last read (a copy).
    std::vector<CameraServiceRus::MotorCtrlEntry> motorCtrlList() const;

    // The module is up (shared by every user of the motor). Hooks of several threads read and
    // write it; a plain atomic, no lock.
    static std::atomic<bool> mIsOpenCameraUpMotor;
    // The current app raises the module at stream configuration.
    static std::atomic<bool> mIsConfigureStreamCtrlMotor;

private:
    explicit MotorManager(CameraServiceExtImpl* owner) : mOwner(owner) {}
    bool packageInCtrlList(const String8& packageName) const;
    // The markers of one entry; returns whether it applied.
    bool applyLimitMarkers(const char* entry, const String8& packageName, int cameraId,
                           bool fromFile);

    vantu::OwnerLink<CameraServiceExtImpl> mOwner;

    // Monotonic seconds of the last successful list read; 0 = never.
    std::atomic<int64_t> mLastReadTime{0};
    // Read on connect threads and replaced by checkToReadRusFile.
    mutable std::mutex mListLock;
    std::vector<CameraServiceRus::MotorCtrlEntry> m_motorCtrlList;

    std::atomic<bool> mMainPreviewLimited{false};
    std::atomic<bool> mSubPreviewLimited{false};
    std::atomic<bool> mSubTextureLimited{false};
    std::atomic<int32_t> mLimitThirdAppSizeLevel{0};
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H
