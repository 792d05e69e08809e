// The host's camera clients, camera service, service listeners and battery notifier: what the
// simulator reads back after the library acted on them.
#include <android/hardware/BpCameraServiceListener.h>
#include <android/hardware/camera2/ICameraDeviceCallbacks.h>
#include <binder/IInterface.h>
#include <gtest/gtest.h>
#include <mediautils/BatteryNotifier.h>

#include "hostctl/CameraHost.h"

namespace {

using android::sp;
using android::String16;
using android::String8;
using android::hardware::ICameraServiceListener;
using android::hardware::camera2::ICameraDeviceCallbacks;
using hostctl::HostCameraClient;

sp<HostCameraClient> client() {
    return new HostCameraClient(String8("2"), String16("com.app"), 10100, 5000);
}

TEST(HostCameraClient, AnswersItsIdentity) {
    sp<HostCameraClient> c = new HostCameraClient(String8("1"), String16("com.app"), 10100, 5000,
                                                  /*facing=*/1, /*orientation=*/270);
    sp<android::CameraService::BasicClient> basic = c;
    EXPECT_EQ(String16("com.app"), basic->getPackageName());
    EXPECT_EQ(10100u, basic->getClientUid());
    EXPECT_EQ(5000, basic->getClientPid());
    EXPECT_EQ(1, basic->getCameraFacing());
    EXPECT_EQ(270, basic->getCameraOrientation());
    EXPECT_TRUE(basic->canCastToApiClient(android::CameraService::API_2));
    EXPECT_FALSE(basic->canCastToApiClient(android::CameraService::API_1));
}

TEST(HostCameraClient, RecordsErrorsAndDisconnectInOrder) {
    sp<HostCameraClient> c = client();
    android::CaptureResultExtras extras;
    extras.requestId = 4;
    c->notifyError(ICameraDeviceCallbacks::ERROR_CAMERA_DISCONNECTED, extras);
    c->disconnect();
    EXPECT_EQ((std::vector<std::string>{"notifyError(0)", "disconnect"}), c->events());
    EXPECT_EQ(4, c->lastErrorExtras().requestId);
    EXPECT_EQ(0, c->getClientPid());
}

// The simulator's close sequence may reach disconnect() again through the library; the server's
// disconnect is idempotent, so the sequence must run once.
TEST(HostCameraClient, DisconnectRunsTheCloseSequenceOnceBeforeReturning) {
    sp<HostCameraClient> c = client();
    int closeSequences = 0;
    int pidSeenByCloseSequence = -1;
    c->setOnDisconnect([&](HostCameraClient& self) {
        closeSequences++;
        pidSeenByCloseSequence = self.getClientPid();
        self.disconnect();
    });
    EXPECT_TRUE(c->disconnect().isOk());
    EXPECT_TRUE(c->disconnect().isOk());
    EXPECT_EQ(1, closeSequences);
    EXPECT_EQ(5000, pidSeenByCloseSequence);
    EXPECT_EQ(3, c->disconnectCalls());
    EXPECT_TRUE(c->isDisconnected());
    EXPECT_EQ((std::vector<std::string>{"disconnect"}), c->events());
}

TEST(HostCameraClient, BlockTellsTheAppItIsDisabledThenDisconnects) {
    sp<HostCameraClient> c = client();
    c->block();
    EXPECT_EQ((std::vector<std::string>{"notifyError(6)", "disconnect"}), c->events());
    EXPECT_FALSE(c->lastErrorExtras().isValid());
}

TEST(HostCameraClient, AudioRestrictionAcceptsOnlyThePlatformModes) {
    sp<HostCameraClient> c = client();
    EXPECT_EQ(android::OK, c->setAudioRestriction(3));
    EXPECT_EQ(android::BAD_VALUE, c->setAudioRestriction(2));
    EXPECT_EQ(3, c->getAudioRestriction());
}

TEST(HostCameraService, RecordsTorchStatusChangesAsAvailability) {
    sp<hostctl::HostCameraService> hostService = new hostctl::HostCameraService();
    sp<android::CameraService> service = hostService;
    service->onTorchStatusChanged(String8("0"), android::TorchModeStatus::AVAILABLE_OFF);
    service->onTorchStatusChanged(String8("2"), android::TorchModeStatus::NOT_AVAILABLE,
                                  android::SystemCameraKind::PUBLIC);
    auto updates = hostService->torchAvailabilityUpdates();
    ASSERT_EQ(2u, updates.size());
    EXPECT_EQ("0", updates[0].cameraId);
    EXPECT_TRUE(updates[0].available);
    EXPECT_EQ("2", updates[1].cameraId);
    EXPECT_FALSE(updates[1].available);
}

TEST(HostCameraServiceListener, RecordsTorchStatusChanges) {
    sp<hostctl::HostCameraServiceListener> listener = new hostctl::HostCameraServiceListener();
    listener->onTorchStatusChanged(ICameraServiceListener::TORCH_STATUS_AVAILABLE_ON,
                                   String16("-1"));
    listener->onCameraClosed(String16("0"));
    EXPECT_EQ((std::vector<std::pair<int32_t, std::string>>{{2, "-1"}}),
              listener->torchStatusChanges());
    EXPECT_EQ((std::vector<std::string>{"onTorchStatusChanged(2, -1)", "onCameraClosed(0)"}),
              listener->events());
}

// A proxy over the listener's binder writes the AIDL wire form that the native side reads back.
TEST(HostCameraServiceListener, ProxyCallsReachTheListenerThroughItsBinder) {
    sp<hostctl::HostCameraServiceListener> listener = new hostctl::HostCameraServiceListener();
    sp<android::IBinder> binder = android::IInterface::asBinder(listener);
    ASSERT_NE(nullptr, binder);
    EXPECT_EQ(listener.get(), ICameraServiceListener::asInterface(binder).get());

    sp<ICameraServiceListener> proxy = new android::hardware::BpCameraServiceListener(binder);
    EXPECT_TRUE(proxy->onTorchStatusChanged(1, String16("0")).isOk());
    EXPECT_TRUE(proxy->onPhysicalCameraStatusChanged(0, String16("0"), String16("3")).isOk());
    EXPECT_TRUE(proxy->onTorchStrengthLevelChanged(String16("0"), 5).isOk());
    EXPECT_EQ((std::vector<std::string>{"onTorchStatusChanged(1, 0)",
                                        "onPhysicalCameraStatusChanged(0, 0, 3)",
                                        "onTorchStrengthLevelChanged(0, 5)"}),
              listener->events());
}

class BatteryNotifierTest : public ::testing::Test {
protected:
    void SetUp() override { hostctl::clearBatteryEvents(); }
    void TearDown() override { hostctl::clearBatteryEvents(); }
};

TEST_F(BatteryNotifierTest, CameraUseReachesTheStatsServiceOncePerAppAndCamera) {
    android::BatteryNotifier& notifier = android::BatteryNotifier::getInstance();
    notifier.noteStopCamera(String8("1"), 10200);  // never started: not reported
    notifier.noteStartCamera(String8("0"), 10100);
    notifier.noteStartCamera(String8("0"), 10100);
    notifier.noteStartCamera(String8("2"), 10100);
    notifier.noteStopCamera(String8("0"), 10100);
    notifier.noteStopCamera(String8("0"), 10100);
    EXPECT_EQ((std::vector<std::string>{"start 0 10100", "start 2 10100", "stop 0 10100"}),
              hostctl::batteryEvents());
}

TEST_F(BatteryNotifierTest, ClearingForgetsWhichCamerasWereRunning) {
    android::BatteryNotifier::getInstance().noteStartCamera(String8("0"), 10100);
    hostctl::clearBatteryEvents();
    android::BatteryNotifier::getInstance().noteStartCamera(String8("0"), 10100);
    EXPECT_EQ((std::vector<std::string>{"start 0 10100"}), hostctl::batteryEvents());
}

}  // namespace
