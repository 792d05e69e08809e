#include "features/rio/MagneticSensor.h"

#include <cutils/properties.h>
#include <stdio.h>

#include "features/rio/MagneticSensorManger.h"
#include "utils/VantuLog.h"

namespace android {

using frameworks::sensorservice::V1_0::IEventQueue;
using frameworks::sensorservice::V1_0::ISensorManager;
using frameworks::sensorservice::V1_0::Result;
using hardware::Return;
using hardware::sensors::V1_0::Event;
using hardware::sensors::V1_0::SensorInfo;
using hardware::sensors::V1_0::SensorType;

void MagneticListener::onNotify(bool isNear) {
    if (mManager != nullptr) mManager->onMagnetSensorNotify(isNear ? 2 : 1);
}

int32_t MagneticSensor::state() {
    std::lock_guard<std::mutex> guard(mLock);
    return mState;
}

int MagneticSensor::init() {
    std::lock_guard<std::mutex> guard(mLock);
    if (EXT_LOG_ON()) EXT_LOG(1, "@%s: +", __func__);
    if (mState != STATE_UNINITIALISED) {
        if (EXT_LOG_ON()) EXT_LOG(1, "@%s, MagneticSensor is already initialized", __func__);
        return 1;
    }
    // Without the accessory's switch property the device has no accessory: no sensor either.
    char rioSwitch[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.flashlight.rio.switch", rioSwitch, "");
    if (rioSwitch[0] == '\0') {
        mSensorHandle = -1;
        EXT_LOG(0, "get DefaultSensor FAIL! %d", mSensorHandle);
        return -1;
    }
    sp<ISensorManager> manager = ISensorManager::tryGetService("default");
    if (manager == nullptr) {
        EXT_LOG(0, "get SensorManager FAIL!\n");
        return -1;
    }
    Return<bool> linked = manager->linkToDeath(this, 0);
    if (!linked.isOk() || !static_cast<bool>(linked)) {
        EXT_LOG(0, "Unable to link to sensor service death notifications");
        return -1;
    }
    int32_t handle = -1;
    Return<void> found = manager->getDefaultSensor(static_cast<SensorType>(kSensorType),
                                                   [&handle](const SensorInfo& info, Result r) {
                                                       if (r == Result::OK) {
                                                           handle = info.sensorHandle;
                                                       }
                                                   });
    mSensorHandle = found.isOk() ? handle : -1;
    if (mSensorHandle == -1) {
        EXT_LOG(0, "get DefaultSensor FAIL! %d", mSensorHandle);
        manager->unlinkToDeath(this).isOk();
        return -1;
    }
    sp<IEventQueue> queue;
    Return<void> created =
        manager->createEventQueue(this, [&queue](const sp<IEventQueue>& q, Result r) {
            if (r == Result::OK) queue = q;
        });
    if (!created.isOk() || queue == nullptr) {
        EXT_LOG(0, "createEventQueue FAIL!");
        manager->unlinkToDeath(this).isOk();
        return -1;
    }
    mSensorManager = manager;
    mEventQueue = queue;
    mIsNearMagnet = false;
    mState = STATE_INITIALISED;
    mDebug = property_get_int32("vendor.debug.magnet.enable", -1);
    return 1;
}

int MagneticSensor::sensorEnable(int enable) {
    std::lock_guard<std::mutex> guard(mLock);
    if (mEventQueue == nullptr) return -1;
    if (mState == STATE_UNINITIALISED) {
        EXT_LOG(0, "@%s, Magnetic sensor not initialized", __func__);
        return -1;
    }
    if ((enable && mState == STATE_ENABLED) || (!enable && mState == STATE_DISABLED)) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "@%s, state not changed, no need to set new state", __func__);
        }
        return 1;
    }
    Return<Result> ret = enable ? mEventQueue->enableSensor(mSensorHandle, kSamplingPeriodUs, 0)
                                : mEventQueue->disableSensor(mSensorHandle);
    const bool ok = ret.isOk() && static_cast<Result>(ret) == Result::OK;
    const int code = ret.isOk() ? static_cast<int>(static_cast<Result>(ret)) : -1;
    if (enable) {
        mState = STATE_ENABLED;
        if (EXT_LOG_ON()) EXT_LOG(1, "@%s, enable Magnetic sensor ret[%d]", __func__, code);
    } else {
        mState = STATE_DISABLED;
        if (EXT_LOG_ON()) EXT_LOG(1, "@%s, disable Magnetic sensor ret[%d]", __func__, code);
    }
    return ok ? 1 : -1;
}

Return<void> MagneticSensor::onEvent(const Event& event) {
    std::lock_guard<std::mutex> guard(mLock);
    if (mState != STATE_ENABLED) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "@%s, sensor has been disabled or uninitialized, no need to notify data",
                    __func__);
        }
        return hardware::Void();
    }
    // The maker's sensor reports the accessory in the fourth value of the generic payload,
    // exactly 1.0 when attached (the HAL's event form carries the same 16 floats).
    const float value = event.u.data[3];
    mIsNearMagnet = (value == 1.0f);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "mIsNearMagnet: %d, sensorEvent.data[3]:%f", mIsNearMagnet ? 1 : 0,
                static_cast<double>(value));
    }
    bool near = mIsNearMagnet;
    const int32_t forced = property_get_int32("vendor.debug.is.near.magnet", -1);
    if (forced != -1) near = forced != 0;
    if (mDebug == 1) {
        char text[8];
        snprintf(text, sizeof(text), "%d", near ? 1 : 0);
        property_set("vendor.debug.magnet.data", text);
    }
    if (mListener != nullptr && near != mLastNotified) mListener->onNotify(near);
    mLastNotified = near;
    return hardware::Void();
}

void MagneticSensor::serviceDied(uint64_t /*cookie*/, const wp<hidl::base::V1_0::IBase>& /*who*/) {
    std::lock_guard<std::mutex> guard(mLock);
    EXT_LOG(0, "sensor service died");
    if (mListener != nullptr) mListener->onNotify(false);
    mLastNotified = false;
    mState = STATE_UNINITIALISED;
    mSensorManager.clear();
    mEventQueue.clear();
}

void MagneticSensor::uninit() {
    std::lock_guard<std::mutex> guard(mLock);
    if (EXT_LOG_ON()) EXT_LOG(1, "@%s: +", __func__);
    if (mState == STATE_UNINITIALISED) {
        if (EXT_LOG_ON()) EXT_LOG(1, "@%s, MagneticSensor is already uninitialized", __func__);
        return;
    }
    if (mEventQueue != nullptr && mState == STATE_ENABLED) {
        mEventQueue->disableSensor(mSensorHandle).isOk();
    }
    if (mListener != nullptr && mLastNotified) mListener->onNotify(false);
    mLastNotified = false;
    mState = STATE_UNINITIALISED;
    // The sensor lives for the process: a later death of this service must not reach it.
    if (mSensorManager != nullptr) mSensorManager->unlinkToDeath(this).isOk();
    mSensorManager.clear();
    mEventQueue.clear();
}

}  // namespace android
