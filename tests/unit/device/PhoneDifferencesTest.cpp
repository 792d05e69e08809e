// What differs on a phone, as the host stand-ins model it, and how the library copes: a declared
// maker service that is not running, callers over hwbinder and one-way binder calls, property
// writes the policy refuses.
#include <binder/IBinder.h>
#include <binder/IPCThreadState.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <utils/CameraThreadState.h>
#include <utils/String16.h>
#include <utils/String8.h>
#include <vendor/vantu/hardware/cameraMDM/1.0/IVantuCameraMDM.h>

#include <string>

#include "CameraServiceExtImpl.h"
#include "hostctl/CameraHost.h"
#include "hostctl/Properties.h"
#include "hostctl/Services.h"
#include "platform/CameraServiceExtImpl_sm8450.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"

namespace {

using namespace android;
using vendor::vantu::hardware::cameraMDM::V1_0::IVantuCameraMDM;

class PhoneDifferences : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::resetServices();
    }
    void TearDown() override {
        hostctl::resetServices();
        hostctl::refusePropertyWrites({});
        hostctl::clearProperties();
        hostctl::resetCallingIdentity();
        hostctl::resetHwbinderCallingIdentity();
    }

    void writeConfig(const std::string& json) { mRoot.writeFile(kFwkConfigPath, json); }

    testsupport::TempDeviceRoot mRoot;
    testsupport::VirtualTime mTime;
};

// ---- A maker service declared in the manifest but not running --------------------------------

TEST_F(PhoneDifferences, GetServiceWaitsForADeclaredServiceAndTryGetServiceDoesNot) {
    ASSERT_TRUE(hostctl::declareService(hostctl::kCameraMdmHal));
    EXPECT_EQ(nullptr, IVantuCameraMDM::tryGetService("default"));
    EXPECT_EQ(0u, hostctl::declaredServiceWaits());
    EXPECT_EQ(nullptr, IVantuCameraMDM::getService("default"));
    EXPECT_EQ(1u, hostctl::declaredServiceWaits());

    // Undeclared, getService answers at once too.
    hostctl::declareService(hostctl::kCameraMdmHal, false);
    EXPECT_EQ(nullptr, IVantuCameraMDM::getService("default"));
    EXPECT_EQ(1u, hostctl::declaredServiceWaits());
}

// Declared but not running, the policy service must not hold up an open; running, it hears of it.
TEST_F(PhoneDifferences, PolicyServiceHearsOfAnOpenOnlyWhenRunningAndNeverHoldsItUp) {
    writeConfig(R"({"default": {"feature_auth_enable": false, "feature_cameramdm": true}})");
    String16 package(u"com.example.app");
    for (bool running : {false, true}) {
        hostctl::resetServices();
        ASSERT_TRUE(hostctl::declareService(hostctl::kCameraMdmHal));
        ASSERT_TRUE(!running || hostctl::startService(hostctl::kCameraMdmHal));
        sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
        EXPECT_EQ(0, ext->beforeConnect(String8("0"), package, false)) << running;
        // Not held up: the open never waited for the service to come up.
        EXPECT_EQ(0u, hostctl::declaredServiceWaits()) << running;
        const auto calls = hostctl::serviceCallsOf(hostctl::kCameraMdmHal);
        ASSERT_EQ(running ? 1u : 0u, calls.size());
        if (running) {
            EXPECT_EQ("notifyCameraPackage(com.example.app)", calls[0].text());
        }
    }
}

// The scheduling and pre-open hooks run on the server's open path: a performance or
// camera-extension service that the manifest declares but that is not running must not hold them.
TEST_F(PhoneDifferences, DeclaredButAbsentSchedulingServicesDoNotHoldUpTheHooks) {
    ASSERT_TRUE(hostctl::declareService(hostctl::kPerformanceHal));
    ASSERT_TRUE(hostctl::declareService(hostctl::kCameraExtensionHal));
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl_sm8450();
    ext->SetUxthread(1);
    ext->preOpenCamera();
    EXPECT_EQ(0u, hostctl::declaredServiceWaits());
}

// ---- Caller identity: hwbinder calls and one-way binder calls ---------------------------------

TEST_F(PhoneDifferences, HwbinderCallerIsSeenThroughCameraThreadStateOnly) {
    hostctl::setProcessIdentity(1047, 900);
    hostctl::setHwbinderCallingIdentity(1000, 4242);
    // Binder has no incoming call on this thread: it reports the camera server itself.
    EXPECT_EQ(900, IPCThreadState::self()->getCallingPid());
    EXPECT_EQ(4242, CameraThreadState::getCallingPid());
    EXPECT_EQ(1000, CameraThreadState::getCallingUid());
    // The library's own helper follows the camera server's view.
    EXPECT_EQ(4242, android::getCallingPid());

    const int64_t token = CameraThreadState::clearCallingIdentity();
    EXPECT_EQ(900, CameraThreadState::getCallingPid());
    CameraThreadState::restoreCallingIdentity(token);
    EXPECT_EQ(4242, CameraThreadState::getCallingPid());

    hostctl::resetHwbinderCallingIdentity();
    EXPECT_EQ(900, CameraThreadState::getCallingPid());
    hostctl::resetProcessIdentity();
}

TEST_F(PhoneDifferences, OneWayBinderCallHasNoCallingPid) {
    hostctl::setCallingIdentity(10100, 5000, IBinder::FLAG_ONEWAY);
    EXPECT_EQ(0, IPCThreadState::self()->getCallingPid());
    EXPECT_EQ(10100u, IPCThreadState::self()->getCallingUid());
    EXPECT_EQ(0, CameraThreadState::getCallingPid());
    hostctl::setCallingIdentity(10100, 5000);
    EXPECT_EQ(5000, IPCThreadState::self()->getCallingPid());
}

// ---- Property writes the policy refuses -------------------------------------------------------

TEST_F(PhoneDifferences, RefusedPropertyWriteLeavesTheValueAndIsRecorded) {
    hostctl::setProperty("vantu.camera.packname", "com.before");
    hostctl::refusePropertyWrites({"vantu.camera."});
    EXPECT_GT(0, property_set("vantu.camera.packname", "com.after"));
    EXPECT_EQ(0, property_set("persist.other", "1"));
    EXPECT_EQ("com.before", hostctl::properties()["vantu.camera.packname"]);
    EXPECT_EQ(std::vector<std::string>{"vantu.camera.packname"}, hostctl::refusedPropertyWrites());
}

TEST_F(PhoneDifferences, OpenCompletesWhenThePackagePropertyIsRefused) {
    writeConfig(R"({"default": {"feature_auth_enable": false}})");
    hostctl::refusePropertyWrites({"vantu.camera."});
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    String16 package(u"com.example.app");
    ASSERT_EQ(0, ext->beforeConnect(String8("0"), package, false));
    ext->setCurrentPackageName(package);
    sp<hostctl::HostCameraClient> client =
        new hostctl::HostCameraClient(String8("0"), package, 10100, 5000);
    EXPECT_TRUE(ext->afterConnect(String8("0"), package, false, client, client.get(), 1, 2));
    // The library keeps its own record; only the published copy is missing.
    EXPECT_EQ(String8("com.example.app"), ext->currentPackageName());
    EXPECT_EQ(0u, hostctl::properties().count("vantu.camera.packname"));
    EXPECT_FALSE(hostctl::refusedPropertyWrites().empty());
}

}  // namespace
