#define LOG_TAG "ThermalService"

#include "features/thermal/ThermalService.h"

#include <log/log.h>

#include <limits>

#include "features/thermal/KairoServiceProxy.h"

namespace android {

ANDROID_SINGLETON_STATIC_INSTANCE(ThermalService);

using hardware::thermal::V1_0::IThermal;

namespace {
constexpr uint64_t kDeathCookie = 17775;  // 0x456F

// The float-to-int conversion of the phone's CPU saturates; do the same here, where an
// out-of-range conversion would be undefined.
int32_t truncateDegrees(float value) {
    if (value >= static_cast<float>(std::numeric_limits<int32_t>::max())) {
        return std::numeric_limits<int32_t>::max();
    }
    return static_cast<int32_t>(value);
}
}  // namespace

void ThermalService::ThermalServiceDeathRecipient::serviceDied(uint64_t,
                                                               const wp<hidl::base::V1_0::IBase>&) {
    mService->handleServiceDied();
}

ThermalService::ThermalService()
    : mTemperatures(kCount, -1), mDeathRecipient(new ThermalServiceDeathRecipient(this)) {}

bool ThermalService::checkService() {
    if (mThermal != nullptr) return true;
    mThermal = IThermal::getService("default");
    if (mThermal == nullptr) {
        ALOGE("unable to get Thermal service");
        return false;
    }
    hardware::Return<bool> linked = mThermal->linkToDeath(mDeathRecipient, kDeathCookie);
    if (!linked.isOk()) {
        ALOGE("Transaction error in linking to Thermal Service death: %s",
              linked.description().c_str());
        mThermal.clear();
        return false;
    }
    if (!static_cast<bool>(linked)) {
        ALOGE("Unable to link to Thermal Service death notifications");
        mThermal.clear();
        return false;
    }
    ALOGE("Link to death notification successful");
    return true;
}

void ThermalService::handleServiceDied() {
    Mutex::Autolock l(mLock);
    mThermal.clear();
}

int ThermalService::getDeviceTemperature() {
    Mutex::Autolock l(mLock);
    if (!checkService()) {
        ALOGE("Couldn't get device temperatures because of ThermalService error.");
        return -1;
    }
    const float skin = KairoServiceProxy::getInstance().getCurrentThermal();
    // NaN, zero and negative readings keep the last value.
    if (skin > 0.0f) mTemperatures[kSkin] = truncateDegrees(skin);
    return 0;
}

int ThermalService::readEntry(int index, const char* failure) {
    if (getDeviceTemperature() != 0) {
        ALOGE("%s", failure);
        return -1;
    }
    Mutex::Autolock l(mLock);
    return mTemperatures[index];
}

int ThermalService::getCpuTemperature() {
    return readEntry(kCpu, "getCpuTemperature failed status");
}

int ThermalService::getGpuTemperature() {
    return readEntry(kGpu, "getGpuTemperature failed status");
}

int ThermalService::getBatteryTemperature() {
    return readEntry(kBattery, "getBatteryTemperature failed status");
}

int ThermalService::getSkinTemperature() {
    return readEntry(kSkin, "getSkinTemperature failed status");
}

int ThermalService::getAllTemperature(std::vector<int>& out) {
    if (getDeviceTemperature() != 0) {
        ALOGE("getAllTemperature failed status");
        return -1;
    }
    Mutex::Autolock l(mLock);
    out.assign(mTemperatures.begin(), mTemperatures.end());
    return 0;
}

bool ThermalService::isKairoThermalSupport() {
    Mutex::Autolock l(mLock);
    return checkService();
}

}  // namespace android
