// Which class a client falls into: system camera, privileged app, test app.
#include <gtest/gtest.h>
#include <utils/String16.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "hostctl/CameraHost.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"

namespace {

using namespace android;

class Classification : public ::testing::Test {
protected:
    void SetUp() override { hostctl::clearProperties(); }
    void TearDown() override { hostctl::clearProperties(); }

    sp<CameraServiceExtImpl> build(const std::string& config = "") {
        if (!config.empty()) mRoot.writeFile(kFwkConfigPath, config);
        return new CameraServiceExtImpl();
    }

    testsupport::TempDeviceRoot mRoot;
};

TEST_F(Classification, SystemCameraIsTheExactPropertyValue) {
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    sp<CameraServiceExtImpl> ext = build();
    EXPECT_TRUE(ext->isSystemCameraPkgName("com.vantu.camera"));
    EXPECT_FALSE(ext->isSystemCameraPkgName("com.vantu.camera2"));
    EXPECT_FALSE(ext->isSystemCameraPkgName("com.vantu"));
    EXPECT_FALSE(ext->isSystemCameraPkgName(""));
}

TEST_F(Classification, WithoutTheSystemCameraPropertyOnlyAnEmptyNameMatchesAndItIsLogged) {
    sp<CameraServiceExtImpl> ext = build();
    testsupport::LogCapture logs;
    EXPECT_FALSE(ext->isSystemCameraPkgName("com.vantu.camera"));
    EXPECT_TRUE(ext->isSystemCameraPkgName(""));
    EXPECT_TRUE(ext->isSystemCameraPkgName(nullptr));
    EXPECT_EQ(3u, logs.count("system camera pkg name not set in system_ext/build.prop!"));
}

TEST_F(Classification, PropertyListTakesOnlySemicolonTerminatedEntries) {
    hostctl::setProperty("ro.camera.privileged.3rdpartyApp", "com.a;com.b");
    sp<CameraServiceExtImpl> ext = build();
    EXPECT_TRUE(ext->is3rdPartyAppPrivileged(String16("com.a")));
    EXPECT_FALSE(ext->is3rdPartyAppPrivileged(String16("com.b")));
    hostctl::setProperty("ro.camera.privileged.3rdpartyApp", "com.a;com.b;");
    EXPECT_TRUE(ext->is3rdPartyAppPrivileged(String16("com.b")));
    // Entries of the property are whole names, not prefixes.
    EXPECT_FALSE(ext->is3rdPartyAppPrivileged(String16("com.ab")));
    EXPECT_FALSE(ext->is3rdPartyAppPrivileged(String16("com")));
}

TEST_F(Classification, PropertyListAtItsLengthLimitKeepsItsLastEntry) {
    // 91 characters: the longest value a property holds.
    std::string list;
    while (list.size() + 10 <= 81) list += "com.pkg" + std::to_string(list.size() % 10) + "x;";
    const std::string last(91 - list.size() - 1, 'z');
    list += last + ";";
    ASSERT_EQ(91u, list.size());
    hostctl::setProperty("ro.camera.privileged.3rdpartyApp", list);
    sp<CameraServiceExtImpl> ext = build();
    EXPECT_TRUE(ext->is3rdPartyAppPrivileged(String16(last.c_str())));
}

TEST_F(Classification, ConfigurationListMatchesByPrefixAndLogs) {
    sp<CameraServiceExtImpl> ext =
        build(R"({"default": {"privileged_app_list": ["com.tencent", "", 7, "org.x"]}})");
    hostctl::setProperty("persist.camera.assert.panic", "true");
    sp<CameraServiceExtImpl> logging = new CameraServiceExtImpl();
    testsupport::LogCapture logs;
    EXPECT_TRUE(logging->is3rdPartyAppPrivileged(String16("com.tencent.mm")));
    EXPECT_EQ(1u, logs.count("com.tencent.mm is privileged app")) << logs.dump();
    // An empty entry in the file does not make every app privileged.
    EXPECT_FALSE(ext->is3rdPartyAppPrivileged(String16("com.whatsapp")));
    EXPECT_FALSE(ext->is3rdPartyAppPrivileged(String16("com.tencen")));
}

TEST_F(Classification, CtsOverloadsDifferOnPurpose) {
    sp<CameraServiceExtImpl> ext = build();
    ext->setAPKPackageName(String16("android.camera.cts.x"));
    EXPECT_TRUE(ext->isCtsCamera("android.camera.cts.x"));
    EXPECT_TRUE(ext->isCtsCamera("com.android.cts.verifier.camera"));
    EXPECT_FALSE(ext->isCtsCamera("android.camera.ct"));
    // The announced app must be the test suite exactly.
    EXPECT_FALSE(ext->isCtsCamera());
    ext->setAPKPackageName(String16("android.camera.cts"));
    EXPECT_TRUE(ext->isCtsCamera());
    ext->setAPKPackageName(String16("com.android.cts.verifier"));
    EXPECT_FALSE(ext->isCtsCamera());
}

TEST_F(Classification, CtsSwitchOffMakesNoAppATestApp) {
    // The announced test suite is played by the cts_switch_off scenario.
    sp<CameraServiceExtImpl> ext = build(R"({"default": {"feature_cts_enable": false}})");
    EXPECT_FALSE(ext->isCtsCamera("android.camera.cts"));
}

TEST_F(Classification, UnknownUidsAreNotPrivileged) {
    sp<CameraServiceExtImpl> ext = build(R"({"default": {"feature_auth_enable": false}})");
    EXPECT_FALSE(ext->isSystemCameraUid(10050));
    EXPECT_FALSE(ext->isPrivilegedApp(10050));
}

TEST_F(Classification, FwkTimerFollowsItsSwitch) {
    EXPECT_TRUE(build()->isEnableFwkTimer());
    EXPECT_FALSE(build(R"({"default": {"feature_enable_fwk_timer": false}})")->isEnableFwkTimer());
}

// The server's disconnect runs the disconnect hooks, which take the slot lock, and may finish
// the close on another binder thread while the caller waits for it. Clearing the clients must
// therefore not hold that lock while it disconnects; a regression fails on the bounded wait
// below instead of hanging the run.
TEST_F(Classification, ClearingClientsDisconnectsWithoutHoldingTheSlotLock) {
    sp<CameraServiceExtImpl> ext = build(R"({"default": {"feature_auth_enable": false,
        "feature_motor_enable": false, "feature_rio_enable": false}})");
    std::vector<std::thread> closers;  // joined once the call has returned
    int stuck = 0;
    std::vector<sp<hostctl::HostCameraClient>> clients;
    for (int id : {0, 2}) {
        sp<hostctl::HostCameraClient> client = new hostctl::HostCameraClient(
            String8::format("%d", id), String16("com.example.app"), 10100, 5000);
        CameraServiceExtImpl* target = ext.get();
        client->setOnDisconnect([target, &closers, &stuck](hostctl::HostCameraClient& c) {
            std::promise<void> closed;
            std::future<void> done = closed.get_future();
            closers.emplace_back([target, &c, closed = std::move(closed)]() mutable {
                target->beforeDisconnect(false, false, c.cameraId());
                target->afterDisconnect(c.cameraId(), c.getPackageName(), nullptr);
                closed.set_value();
            });
            if (done.wait_for(std::chrono::seconds(3)) != std::future_status::ready) ++stuck;
        });
        ext->storeClient(id, client);
        clients.push_back(client);
    }

    ext->clearNonCTSClient(String16("com.example.other"));
    for (std::thread& t : closers) t.join();

    EXPECT_EQ(0, stuck) << "a close on another thread waited for the slot lock";
    for (int id : {0, 2}) EXPECT_EQ(nullptr, ext->promoteClient(id)) << id;
    for (const auto& client : clients) {
        EXPECT_EQ(1, client->disconnectCalls());
        client->setOnDisconnect(nullptr);
    }
}

}  // namespace
