/*
 * The pop-up camera motor: commands to the motor service and the apps whose module is raised at
 * stream configuration.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H

#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

namespace android {

class CameraServiceExtImpl;

class MotorManager : public RefBase {
public:
    // The process-wide manager, or null while motor control is not available. The extension
    // object (`owner`) takes it once at construction and holds it for the life of the process.
    // The motor feature brings the manager itself; until then there is none.
    static sp<MotorManager> getInstance(CameraServiceExtImpl* owner);

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
    // Decides whether the app raises the module at stream configuration instead of at connect.
    void updateIfCtrlMotorInConfigStream(const String8& packageName, int cameraId);
    // Raises (opening) or lowers (closing) the module of camera 1 for stream-configured apps.
    void handleMotor(bool closing, int cmd, int reserved, const String8& cameraId,
                     const String8& packageName);
    // Sets the third-party size limits of the app on `cameraId`.
    void checkIfLimitSize(const String8& packageName, int cameraId);
    // At least one size limit set by checkIfLimitSize is active.
    bool hasSizeLimit() const;
    void resetThirdAppParameters();

    // The module is up (shared by every user of the motor).
    static bool mIsOpenCameraUpMotor;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H
