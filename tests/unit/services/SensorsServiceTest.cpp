// The sensors service: the magnetic proximity sensor, event queues, and events delivered on a
// thread of the service to the queue's callback.
#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

#include "hostctl/Services.h"

namespace {

using android::sp;
using android::wp;
using android::frameworks::sensorservice::V1_0::IEventQueue;
using android::frameworks::sensorservice::V1_0::IEventQueueCallback;
using android::frameworks::sensorservice::V1_0::ISensorManager;
using android::frameworks::sensorservice::V1_0::Result;
using android::hardware::hidl_death_recipient;
using android::hardware::Return;
using android::hardware::sensors::V1_0::Event;
using android::hardware::sensors::V1_0::SensorInfo;
using android::hardware::sensors::V1_0::SensorType;
using android::hidl::base::V1_0::IBase;

const SensorType kMagnetic = static_cast<SensorType>(hostctl::kMagneticProximitySensorType);

class Callback : public IEventQueueCallback {
public:
    Return<void> onEvent(const Event& event) override {
        std::lock_guard<std::mutex> g(mLock);
        events.push_back(event);
        threads.push_back(std::this_thread::get_id());
        if (onEventHook) onEventHook();
        return android::hardware::Void();
    }
    std::mutex mLock;
    std::vector<Event> events;
    std::vector<std::thread::id> threads;
    std::function<void()> onEventHook;
};

class SensorsServiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::resetServices();
        ASSERT_TRUE(hostctl::startService(hostctl::kSensorsService));
        manager = ISensorManager::getService();
        ASSERT_NE(nullptr, manager);
    }
    void TearDown() override { hostctl::resetServices(); }

    // A queue with the magnetic sensor enabled.
    sp<IEventQueue> enabledQueue(const sp<Callback>& callback) {
        sp<IEventQueue> queue;
        manager
            ->createEventQueue(callback,
                               [&](const sp<IEventQueue>& q, Result r) {
                                   EXPECT_EQ(Result::OK, r);
                                   queue = q;
                               })
            .isOk();
        EXPECT_NE(nullptr, queue);
        if (queue) {
            EXPECT_EQ(Result::OK,
                      queue->enableSensor(hostctl::kMagneticProximitySensorHandle, 100000, 0));
        }
        return queue;
    }

    sp<ISensorManager> manager;
};

TEST_F(SensorsServiceTest, DefaultSensorIsFoundByTypeOnly) {
    SensorInfo info;
    Result result = Result::UNKNOWN_ERROR;
    auto keep = [&](const SensorInfo& i, Result r) {
        info = i;
        result = r;
    };
    ASSERT_TRUE(manager->getDefaultSensor(kMagnetic, keep).isOk());
    EXPECT_EQ(Result::OK, result);
    EXPECT_EQ(hostctl::kMagneticProximitySensorHandle, info.sensorHandle);
    EXPECT_EQ(kMagnetic, info.type);
    ASSERT_TRUE(manager->getDefaultSensor(SensorType::PROXIMITY, keep).isOk());
    EXPECT_EQ(Result::NOT_EXIST, result);
}

TEST_F(SensorsServiceTest, DeviceWithoutMagneticSensorHasNone) {
    hostctl::stopService(hostctl::kSensorsService);
    hostctl::setMagneticSensorPresent(false);
    ASSERT_TRUE(hostctl::startService(hostctl::kSensorsService));
    Result result = Result::OK;
    ISensorManager::getService()
        ->getDefaultSensor(kMagnetic, [&](const SensorInfo&, Result r) { result = r; })
        .isOk();
    EXPECT_EQ(Result::NOT_EXIST, result);
    std::string error;
    EXPECT_EQ(-1, hostctl::deliverMagneticEvent(1.0f, &error));
    EXPECT_NE(std::string::npos, error.find("65633"));
}

TEST_F(SensorsServiceTest, QueueNeedsACallbackAndAKnownSensor) {
    Result result = Result::OK;
    sp<IEventQueue> queue;
    manager
        ->createEventQueue(nullptr,
                           [&](const sp<IEventQueue>& q, Result r) {
                               queue = q;
                               result = r;
                           })
        .isOk();
    EXPECT_EQ(Result::BAD_VALUE, result);
    EXPECT_EQ(nullptr, queue);

    queue = enabledQueue(new Callback());
    EXPECT_EQ(Result::BAD_VALUE, queue->enableSensor(7, 100000, 0));
    EXPECT_EQ(Result::OK, queue->disableSensor(hostctl::kMagneticProximitySensorHandle));
    EXPECT_EQ(Result::BAD_VALUE, queue->disableSensor(hostctl::kMagneticProximitySensorHandle));
}

TEST_F(SensorsServiceTest, EventReachesEnabledQueueOnAnotherThread) {
    sp<Callback> callback = new Callback();
    sp<IEventQueue> queue = enabledQueue(callback);
    EXPECT_TRUE(hostctl::isSensorEnabled());

    EXPECT_EQ(1, hostctl::deliverMagneticEvent(1.0f));
    ASSERT_EQ(1u, callback->events.size());
    const Event& e = callback->events[0];
    EXPECT_EQ(hostctl::kMagneticProximitySensorHandle, e.sensorHandle);
    EXPECT_EQ(kMagnetic, e.sensorType);
    EXPECT_EQ(1.0f, e.u.data[3]);
    EXPECT_EQ(0.0f, e.u.data[0]);
    EXPECT_NE(std::this_thread::get_id(), callback->threads[0]);
    auto calls = hostctl::serviceCallsOf(hostctl::kSensorsService);
    EXPECT_EQ("onEvent(95, 1)", calls.back().text());
}

TEST_F(SensorsServiceTest, DisabledQueueGetsNoEventUnlessForced) {
    sp<Callback> callback = new Callback();
    sp<IEventQueue> queue = enabledQueue(callback);
    queue->disableSensor(hostctl::kMagneticProximitySensorHandle).isOk();
    EXPECT_FALSE(hostctl::isSensorEnabled());
    EXPECT_EQ(0, hostctl::deliverMagneticEvent(1.0f));
    EXPECT_TRUE(callback->events.empty());

    hostctl::SensorEventSpec late;
    late.data[3] = 0.999f;
    late.evenIfDisabled = true;
    EXPECT_EQ(1, hostctl::deliverSensorEvent(late));
    ASSERT_EQ(1u, callback->events.size());
    EXPECT_EQ(0.999f, callback->events[0].u.data[3]);
}

// A client that drops its queue gets nothing more; the queue does not outlive it.
TEST_F(SensorsServiceTest, DroppedQueueIsForgotten) {
    sp<Callback> callback = new Callback();
    wp<IEventQueue> weak;
    {
        sp<IEventQueue> queue = enabledQueue(callback);
        weak = queue;
    }
    EXPECT_EQ(nullptr, weak.promote());
    EXPECT_EQ(0, hostctl::deliverMagneticEvent(1.0f));
}

// The real service does not hold its locks while calling back, so a client may call it.
TEST_F(SensorsServiceTest, CallbackMayCallTheQueueBack) {
    sp<Callback> callback = new Callback();
    sp<IEventQueue> queue = enabledQueue(callback);
    Result inner = Result::UNKNOWN_ERROR;
    callback->onEventHook = [&] {
        inner = queue->disableSensor(hostctl::kMagneticProximitySensorHandle);
    };
    EXPECT_EQ(1, hostctl::deliverMagneticEvent(0.0f));
    EXPECT_EQ(Result::OK, inner);
    EXPECT_FALSE(hostctl::isSensorEnabled());
}

TEST_F(SensorsServiceTest, DeathOfServiceKillsItsQueues) {
    struct Recipient : public hidl_death_recipient {
        void serviceDied(uint64_t cookie, const wp<IBase>&) override { died = cookie; }
        uint64_t died = 0;
    };
    sp<Recipient> recipient = new Recipient();
    ASSERT_TRUE(manager->linkToDeath(recipient, 99));
    sp<IEventQueue> queue = enabledQueue(new Callback());

    ASSERT_TRUE(hostctl::killService(hostctl::kSensorsService));
    EXPECT_EQ(99u, recipient->died);
    EXPECT_TRUE(queue->disableSensor(hostctl::kMagneticProximitySensorHandle).isDeadObject());
    std::string error;
    EXPECT_EQ(-1, hostctl::deliverMagneticEvent(1.0f, &error));
    EXPECT_EQ("the sensors service is not running", error);
}

}  // namespace
