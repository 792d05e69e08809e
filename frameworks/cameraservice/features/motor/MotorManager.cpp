#include "features/motor/MotorManager.h"

namespace android {

bool MotorManager::mIsOpenCameraUpMotor = false;

sp<MotorManager> MotorManager::getInstance(CameraServiceExtImpl* /*owner*/) {
    return nullptr;
}

// The motor feature brings the socket protocol and the app lists with the manager itself; until
// then no manager exists and these are never reached.
void MotorManager::sendSocketToMotorServer(int, const char*, int) {}
void MotorManager::checkToReadRusFile() {}
void MotorManager::updateIfCtrlMotorInConfigStream(const String8&, int) {}
void MotorManager::handleMotor(bool closing, int, int, const String8&, const String8&) {
    mIsOpenCameraUpMotor = !closing;
}
void MotorManager::checkIfLimitSize(const String8&, int) {}
bool MotorManager::hasSizeLimit() const {
    return false;
}
void MotorManager::resetThirdAppParameters() {}

}  // namespace android
