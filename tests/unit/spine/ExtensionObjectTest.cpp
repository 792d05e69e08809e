// The extension object's construction and the base behaviour of the hooks it answers itself.
#include <gtest/gtest.h>
#include <utils/String8.h>

#include <string>
#include <thread>

#include "CameraServiceExtImpl.h"
#include "ExtFactory.h"
#include "SpineTestSupport.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"
#include "utils/JsonParser.h"

namespace {

using namespace android;
using spinetest::ExposedExtension;
using spinetest::kAllFeaturesOff;

class ExtensionObjectTest : public ::testing::Test {
protected:
    void SetUp() override { hostctl::clearProperties(); }
    void TearDown() override { hostctl::clearProperties(); }

    void writeConfig(const std::string& json) { mRoot.writeFile(kFwkConfigPath, json); }

    testsupport::TempDeviceRoot mRoot;
};

TEST_F(ExtensionObjectTest, FlashLightValueComesFromThePropertyNamedByTheReadOnlyOne) {
    hostctl::setProperty("ro.vantu.system.camera.flashlight", "persist.vantu.flash.state");
    hostctl::setProperty("persist.vantu.flash.state", "1");
    sp<ExposedExtension> ext = new ExposedExtension();
    EXPECT_STREQ("1", ext->getFlashLightValue());
}

TEST_F(ExtensionObjectTest, FlashLightValueDefaultsToZeroAtEitherStep) {
    {
        sp<ExposedExtension> ext = new ExposedExtension();
        EXPECT_STREQ("0", ext->getFlashLightValue());
    }
    // The named property is missing: its name must not leak through as the value.
    hostctl::setProperty("ro.vantu.system.camera.flashlight", "persist.vantu.flash.state");
    sp<ExposedExtension> ext = new ExposedExtension();
    EXPECT_STREQ("0", ext->getFlashLightValue());
}

TEST_F(ExtensionObjectTest, FeatureSwitchesAreReadFromTheConfiguration) {
    {
        sp<ExposedExtension> ext = new ExposedExtension();
        EXPECT_FALSE(ext->isMultiWinCameraSupport());
        EXPECT_FALSE(ext->getZumioEnable());
        EXPECT_TRUE(ext->isEnableFwkTimer());
    }
    writeConfig(R"({"default": {"feature_multiwin_camera_support": true,
                                "feature_zumio_enable": true,
                                "feature_enable_fwk_timer": false}})");
    sp<ExposedExtension> ext = new ExposedExtension();
    EXPECT_TRUE(ext->isMultiWinCameraSupport());
    EXPECT_TRUE(ext->getZumioEnable());
    EXPECT_FALSE(ext->isEnableFwkTimer());
}

TEST_F(ExtensionObjectTest, StartLinesFollowTheLogSwitch) {
    writeConfig(R"({"default": {"feature_zumio_enable": true}})");
    {
        testsupport::LogCapture logs;
        sp<ExposedExtension> ext = new ExposedExtension();
        EXPECT_EQ(0u, logs.count("CameraServiceExtImpl started")) << logs.dump();
    }
    hostctl::setProperty("persist.camera.assert.panic", "true");
    testsupport::LogCapture logs;
    sp<ExposedExtension> ext = new ExposedExtension();
    EXPECT_EQ(1u, logs.count("CameraServiceExtImpl started (pid=" + std::to_string(getpid()) + ")"))
        << logs.dump();
    EXPECT_EQ(1u, logs.count("APS2Zumio mZumioEnable 1")) << logs.dump();
}

TEST_F(ExtensionObjectTest, ClientStateStartsEmpty) {
    sp<ExposedExtension> ext = new ExposedExtension();
    EXPECT_EQ(String16("NULL"), ext->getAPKPackageName());
    EXPECT_FALSE(ext->getConnectStatus());
    EXPECT_FALSE(ext->getDoingDisconnect());
    EXPECT_FALSE(ext->IsRejectStopPreview());
    EXPECT_EQ(-1, ext->lastCameraId());
    EXPECT_EQ(String8("NULL"), ext->currentPackageName());
}

// Transactions set the announced package on binder threads while hooks read it on others.
TEST_F(ExtensionObjectTest, AnnouncedPackageIsSafeAcrossThreads) {
    sp<ExposedExtension> ext = new ExposedExtension();
    const String16 a("com.example.a");
    const String16 b("com.example.bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb");
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i) ext->setAPKPackageName(i % 2 ? a : b);
    });
    for (int i = 0; i < 2000; ++i) {
        String16 seen = ext->getAPKPackageName();
        ASSERT_TRUE(seen == a || seen == b || seen == String16("NULL"));
    }
    writer.join();
}

TEST_F(ExtensionObjectTest, FoldingDeviceFollowsTheCurrentPackagesSection) {
    writeConfig(R"({"default": {"feature_fold_enable": false},
                    "com.fold.app": {"feature_fold_enable": true}})");
    sp<ExposedExtension> ext = new ExposedExtension();
    EXPECT_FALSE(ext->isFoldingDevice());
    setJsonPackageName("com.fold.app");
    EXPECT_TRUE(ext->isFoldingDevice());
    setJsonPackageName(nullptr);
}

TEST_F(ExtensionObjectTest, ProviderEnumerationAndDeathEndTheAlwaysOnSession) {
    sp<ExposedExtension> ext = new ExposedExtension();
    gAONStatus = AON_OPEN;
    EXPECT_EQ(OK, ext->enumerateProviders());
    EXPECT_EQ(AON_IDLE, static_cast<int32_t>(gAONStatus));
    gAONStatus = AON_OPEN;
    ext->binderDied(wp<IBinder>());
    EXPECT_EQ(AON_IDLE, static_cast<int32_t>(gAONStatus));
}

TEST_F(ExtensionObjectTest, FlushWithoutMetaStreamReleasesNothing) {
    hostctl::setProperty("persist.sys.assert.panic", "true");
    sp<ExposedExtension> ext = new ExposedExtension();
    testsupport::LogCapture logs;
    EXPECT_EQ(0, ext->flush(String8("0")));
    EXPECT_EQ(0, ext->flush(String8("not-a-number")));
    EXPECT_EQ(2u, logs.count(" flush ")) << logs.dump();
}

TEST_F(ExtensionObjectTest, FactoryIsRegisteredForCodeInsideTheLibrary) {
    CameraServiceExtFactory* factory = getExtFactoryImpl();
    ASSERT_NE(nullptr, factory);
    EXPECT_EQ(factory, getExtFactoryImpl());
    EXPECT_EQ(factory, CameraServiceExtFactory::getInstance());
}

// Without the feature managers the forwarding hooks must answer without touching them.
TEST_F(ExtensionObjectTest, ForwardingHooksAreNeutralWithoutManagers) {
    writeConfig(kAllFeaturesOff);
    sp<ExposedExtension> ext = new ExposedExtension();
    ASSERT_FALSE(ext->hasAnyManager());
    spinetest::expectNeutralForwarders(*ext);
}

}  // namespace
