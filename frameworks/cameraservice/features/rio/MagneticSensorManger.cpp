#include "features/rio/MagneticSensorManger.h"

namespace android {

sp<MagnecticSensorManager> MagnecticSensorManager::getInstance(CameraServiceExtImpl* /*owner*/) {
    return nullptr;
}

status_t MagnecticSensorManager::addListener(const sp<hardware::ICameraServiceListener>&) {
    return OK;
}

status_t MagnecticSensorManager::removeListener(const sp<hardware::ICameraServiceListener>&) {
    return OK;
}

void MagnecticSensorManager::initCameraInfos(sp<CameraProviderManager>) {}

void MagnecticSensorManager::parseResult(CameraMetadata&) {}

void MagnecticSensorManager::setTorchIntensity(CameraMetadata&, uint32_t) {}

void MagnecticSensorManager::checkNeedEnableMagneticSensor() {}

bool MagnecticSensorManager::isTorchIntensityChanged() {
    return false;
}

void MagnecticSensorManager::updateParams(const CameraMetadata&, int, int) {}

void MagnecticSensorManager::init(const String8&) {}

void MagnecticSensorManager::uninit(int) {}

void MagnecticSensorManager::setRioClientPid(int pid) {
    mRioListenerPid.store(pid, std::memory_order_relaxed);
}

int MagnecticSensorManager::getRioClientPid() const {
    return mRioListenerPid.load(std::memory_order_relaxed);
}

void MagnecticSensorManager::setTorchIntensity(int32_t intensity) {
    mRequestedTorchIntensity.store(intensity, std::memory_order_relaxed);
}

int32_t MagnecticSensorManager::getTorchIntensity() const {
    return mRequestedTorchIntensity.load(std::memory_order_relaxed);
}

}  // namespace android
