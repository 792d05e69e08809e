#include "features/motor/MotorManager.h"

namespace android {

sp<MotorManager> MotorManager::getInstance(CameraServiceExtImpl* /*owner*/) {
    return nullptr;
}

}  // namespace android
