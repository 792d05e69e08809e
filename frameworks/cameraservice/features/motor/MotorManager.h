/*
 * The pop-up camera motor: commands to the motor service and the apps whose module is raised at
 * stream configuration.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H

#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

namespace android {

class CameraServiceExtImpl;

class MotorManager : public RefBase {
public:
    // The process-wide manager, or null while motor control is not available. The extension
    // object (`owner`) takes it once at construction and holds it for the life of the process.
    // The motor feature brings the manager itself; until then there is none.
    static sp<MotorManager> getInstance(CameraServiceExtImpl* owner);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_MOTOR_MOTORMANAGER_H
