// The sensors service (android.frameworks.sensorservice@1.0, instance "default"): sensor
// lookup, event queues, and events delivered on a thread of the service, as a phone's sensors
// service calls its clients back from its own looper thread.
#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <stdio.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "HidlFake.h"
#include "HidlServiceControl.h"
#include "utils/Env.h"

using android::sp;
using android::wp;
using android::frameworks::sensorservice::V1_0::IEventQueue;
using android::frameworks::sensorservice::V1_0::IEventQueueCallback;
using android::frameworks::sensorservice::V1_0::ISensorManager;
using android::frameworks::sensorservice::V1_0::Result;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hardware::sensors::V1_0::Event;
using android::hardware::sensors::V1_0::SensorFlagBits;
using android::hardware::sensors::V1_0::SensorInfo;
using android::hardware::sensors::V1_0::SensorType;

extern "C" android::vantu::Env* android_vantu_host_env();

namespace android {
namespace frameworks {
namespace sensorservice {
namespace V1_0 {
const char* ISensorManager::descriptor = "android.frameworks.sensorservice@1.0::ISensorManager";
const char* IEventQueue::descriptor = "android.frameworks.sensorservice@1.0::IEventQueue";
const char* IEventQueueCallback::descriptor =
    "android.frameworks.sensorservice@1.0::IEventQueueCallback";
}  // namespace V1_0
}  // namespace sensorservice
}  // namespace frameworks
}  // namespace android

namespace hostsvc {

namespace {

std::atomic<bool> gMagneticPresent{true};

SensorInfo magneticProximitySensor() {
    SensorInfo info;
    info.sensorHandle = hostctl::kMagneticProximitySensorHandle;
    info.name = "magnetic proximity sensor";
    info.vendor = "host";
    info.version = 1;
    info.type = static_cast<SensorType>(hostctl::kMagneticProximitySensorType);
    info.maxRange = 1.0f;
    info.resolution = 1.0f;
    info.power = 0.1f;
    info.flags = static_cast<uint32_t>(SensorFlagBits::ON_CHANGE_MODE) |
                 static_cast<uint32_t>(SensorFlagBits::WAKE_UP);
    return info;
}

class FakeEventQueue : public HidlFake<IEventQueue> {
public:
    FakeEventQueue(const sp<IEventQueueCallback>& callback, std::vector<int32_t> handles)
        : HidlFake(hostctl::kSensorsService), mCallback(callback), mHandles(std::move(handles)) {}

    Return<Result> enableSensor(int32_t sensorHandle, int32_t samplingPeriodUs,
                                int64_t maxBatchReportLatencyUs) override {
        if (dead()) return deadStatus();
        record("enableSensor", {std::to_string(sensorHandle), std::to_string(samplingPeriodUs),
                                std::to_string(maxBatchReportLatencyUs)});
        if (!known(sensorHandle) || samplingPeriodUs < 0 || maxBatchReportLatencyUs < 0) {
            return Result::BAD_VALUE;
        }
        std::lock_guard<std::mutex> g(mLock);
        mEnabled.insert(sensorHandle);
        return Result::OK;
    }

    // Like the platform, disabling a sensor that is not enabled is a bad value.
    Return<Result> disableSensor(int32_t sensorHandle) override {
        if (dead()) return deadStatus();
        record("disableSensor", {std::to_string(sensorHandle)});
        std::lock_guard<std::mutex> g(mLock);
        return mEnabled.erase(sensorHandle) ? Result::OK : Result::BAD_VALUE;
    }

    bool enabled(int32_t handle) {
        std::lock_guard<std::mutex> g(mLock);
        return mEnabled.count(handle) != 0;
    }
    const sp<IEventQueueCallback>& callback() const { return mCallback; }

private:
    bool known(int32_t handle) const {
        return std::find(mHandles.begin(), mHandles.end(), handle) != mHandles.end();
    }

    const sp<IEventQueueCallback> mCallback;
    const std::vector<int32_t> mHandles;
    std::mutex mLock;
    std::set<int32_t> mEnabled;
};

class FakeSensorManager : public HidlFake<ISensorManager> {
public:
    explicit FakeSensorManager(std::vector<SensorInfo> sensors)
        : HidlFake(hostctl::kSensorsService), mSensors(std::move(sensors)) {}

    Return<void> getSensorList(getSensorList_cb _hidl_cb) override {
        if (dead()) return deadStatus();
        record("getSensorList");
        if (_hidl_cb) _hidl_cb(hidl_vec<SensorInfo>(mSensors), Result::OK);
        return android::hardware::Void();
    }

    Return<void> getDefaultSensor(SensorType type, getDefaultSensor_cb _hidl_cb) override {
        if (dead()) return deadStatus();
        record("getDefaultSensor", {std::to_string(static_cast<int32_t>(type))});
        const SensorInfo* found = find(static_cast<int32_t>(type));
        if (_hidl_cb)
            _hidl_cb(found ? *found : SensorInfo(), found ? Result::OK : Result::NOT_EXIST);
        return android::hardware::Void();
    }

    Return<void> createEventQueue(const sp<IEventQueueCallback>& callback,
                                  createEventQueue_cb _hidl_cb) override {
        if (dead()) return deadStatus();
        record("createEventQueue");
        if (callback == nullptr) {
            if (_hidl_cb) _hidl_cb(nullptr, Result::BAD_VALUE);
            return android::hardware::Void();
        }
        std::vector<int32_t> handles;
        for (const auto& s : mSensors) handles.push_back(s.sensorHandle);
        sp<FakeEventQueue> queue = new FakeEventQueue(callback, handles);
        {
            // The client owns its queue; the service forgets it once the client drops it.
            std::lock_guard<std::mutex> g(mLock);
            mQueues.erase(
                std::remove_if(mQueues.begin(), mQueues.end(),
                               [](const wp<FakeEventQueue>& q) { return q.promote() == nullptr; }),
                mQueues.end());
            mQueues.push_back(queue);
        }
        if (_hidl_cb) _hidl_cb(queue, Result::OK);
        return android::hardware::Void();
    }

    const SensorInfo* find(int32_t type) const {
        for (const auto& s : mSensors) {
            if (static_cast<int32_t>(s.type) == type) return &s;
        }
        return nullptr;
    }

    std::vector<sp<FakeEventQueue>> liveQueues() {
        std::vector<sp<FakeEventQueue>> out;
        std::lock_guard<std::mutex> g(mLock);
        for (const auto& q : mQueues) {
            sp<FakeEventQueue> queue = q.promote();
            if (queue != nullptr) out.push_back(queue);
        }
        return out;
    }

private:
    const std::vector<SensorInfo> mSensors;
    std::mutex mLock;
    std::vector<wp<FakeEventQueue>> mQueues;
};

sp<FakeSensorManager> makeSensorManager() {
    std::vector<SensorInfo> sensors;
    if (gMagneticPresent.load(std::memory_order_relaxed))
        sensors.push_back(magneticProximitySensor());
    return new FakeSensorManager(sensors);
}

class SensorsControl : public HidlServiceControl<FakeSensorManager> {
public:
    SensorsControl() : HidlServiceControl<FakeSensorManager>("default", makeSensorManager) {}

    // Queues die with the service that made them.
    bool kill() override {
        sp<FakeSensorManager> manager = current();
        if (!HidlServiceControl<FakeSensorManager>::kill()) return false;
        for (const auto& q : manager->liveQueues()) q->die();
        return true;
    }

    void reset() override {
        HidlServiceControl<FakeSensorManager>::reset();
        gMagneticPresent.store(true, std::memory_order_relaxed);
    }
};

SensorsControl& sensors() {
    static auto* c = new SensorsControl();  // lives for the process
    return *c;
}

// One delivery, shared with its thread so that a callback that never returns cannot outlive it.
struct Delivery {
    std::mutex lock;
    std::condition_variable done;
    bool finished = false;
};

constexpr auto kCallbackTimeout = std::chrono::seconds(5);

}  // namespace

ServiceControl& sensorsControl() {
    return sensors();
}

}  // namespace hostsvc

namespace hostctl {

void setMagneticSensorPresent(bool present) {
    hostsvc::gMagneticPresent.store(present, std::memory_order_relaxed);
}

bool isSensorEnabled(int32_t sensorType) {
    sp<hostsvc::FakeSensorManager> manager = hostsvc::sensors().current();
    if (manager == nullptr) return false;
    const SensorInfo* sensor = manager->find(sensorType);
    if (sensor == nullptr) return false;
    for (const auto& q : manager->liveQueues()) {
        if (q->enabled(sensor->sensorHandle)) return true;
    }
    return false;
}

int deliverSensorEvent(const SensorEventSpec& wanted, std::string* error) {
    sp<hostsvc::FakeSensorManager> manager = hostsvc::sensors().current();
    if (manager == nullptr) {
        if (error) *error = "the sensors service is not running";
        return -1;
    }
    const SensorInfo* sensor = manager->find(wanted.sensorType);
    if (sensor == nullptr) {
        if (error)
            *error =
                "the sensors service has no sensor of type " + std::to_string(wanted.sensorType);
        return -1;
    }
    Event event{};
    android::vantu::Env* env = android_vantu_host_env();
    event.timestamp = env ? env->monotonicNs() : 0;
    event.sensorHandle = sensor->sensorHandle;
    event.sensorType = sensor->type;
    for (size_t i = 0; i < wanted.data.size(); ++i) event.u.data[i] = wanted.data[i];

    std::vector<sp<IEventQueueCallback>> targets;
    for (const auto& q : manager->liveQueues()) {
        if (wanted.evenIfDisabled || q->enabled(sensor->sensorHandle))
            targets.push_back(q->callback());
    }
    if (targets.empty()) return 0;

    char value[32];
    snprintf(value, sizeof(value), "%g", static_cast<double>(wanted.data[3]));
    auto delivery = std::make_shared<hostsvc::Delivery>();
    std::thread pump([delivery, targets, event, handle = std::to_string(event.sensorHandle),
                      value = std::string(value)] {
        for (const auto& callback : targets) {
            hostctl::recordServiceCall(kSensorsService, "onEvent", {handle, value});
            callback->onEvent(event).isOk();
        }
        std::lock_guard<std::mutex> g(delivery->lock);
        delivery->finished = true;
        delivery->done.notify_all();
    });
    bool finished;
    {
        std::unique_lock<std::mutex> lock(delivery->lock);
        finished = delivery->done.wait_for(lock, hostsvc::kCallbackTimeout,
                                           [&] { return delivery->finished; });
    }
    if (!finished) {
        // The thread keeps what it needs; it ends whenever the callback returns.
        pump.detach();
        if (error) *error = "a sensor event callback did not return within 5 s";
        return -1;
    }
    pump.join();
    return static_cast<int>(targets.size());
}

int deliverMagneticEvent(float data3, std::string* error) {
    SensorEventSpec wanted;
    wanted.data[3] = data3;
    return deliverSensorEvent(wanted, error);
}

}  // namespace hostctl
