/*
 * The magnetic proximity sensor that tells whether the torch accessory is attached, read through
 * the sensors service (android.frameworks.sensorservice@1.0), and the listener it tells.
 *
 * States: 3 uninitialised -> (init) 0 initialised -> (enable) 1 enabled <-> (disable) 2 disabled;
 * any state -> 3 on uninit or when the sensors service dies. Only state 1 delivers events.
 * Events arrive on the sensors service's thread and death notices on a binder thread; both take
 * the sensor's mutex, and the listener is called under it (so the lock order is the sensor's
 * mutex, then the manager's).
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSOR_H
#define VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSOR_H

#include <android/frameworks/sensorservice/1.0/IEventQueue.h>
#include <android/frameworks/sensorservice/1.0/IEventQueueCallback.h>
#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <hidl/HidlSupport.h>
#include <stdint.h>
#include <utils/RefBase.h>

#include <mutex>

namespace android {

class MagnecticSensorManager;

class IMagneticEventListener : public virtual RefBase {
public:
    virtual void onNotify(bool isNear) = 0;
};

// Tells the manager that the accessory came near or left.
class MagneticListener : public IMagneticEventListener {
public:
    explicit MagneticListener(MagnecticSensorManager* manager) : mManager(manager) {}
    void onNotify(bool isNear) override;

private:
    MagnecticSensorManager* const mManager;  // owns this listener
};

class MagneticSensor : public frameworks::sensorservice::V1_0::IEventQueueCallback,
                       public hardware::hidl_death_recipient {
public:
    // The maker's magnetic proximity sensor type.
    static constexpr int32_t kSensorType = 65633;  // 0x10061
    static constexpr int32_t kSamplingPeriodUs = 100000;

    enum State : int32_t {
        STATE_INITIALISED = 0,
        STATE_ENABLED = 1,
        STATE_DISABLED = 2,
        STATE_UNINITIALISED = 3,
    };

    explicit MagneticSensor(const sp<IMagneticEventListener>& listener) : mListener(listener) {}

    // 1 when initialised (now or before), -1 on failure.
    int init();
    // Enables (non-zero) or disables the sensor: 1 when done or nothing to do, -1 on failure.
    int sensorEnable(int enable);
    void uninit();
    int32_t state();

    hardware::Return<void> onEvent(const hardware::sensors::V1_0::Event& event) override;
    void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) override;

private:
    std::mutex mLock;
    int32_t mSensorHandle = -1;
    int32_t mState = STATE_UNINITIALISED;
    sp<frameworks::sensorservice::V1_0::ISensorManager> mSensorManager;
    sp<frameworks::sensorservice::V1_0::IEventQueue> mEventQueue;
    const sp<IMagneticEventListener> mListener;
    bool mIsNearMagnet = false;
    bool mLastNotified = false;
    int32_t mDebug = -1;  // "vendor.debug.magnet.enable", read at each successful init
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_RIO_MAGNETICSENSOR_H
