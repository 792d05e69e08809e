// The APS switch as the extension object drives it: the platform rule for the beauty answer,
// the avatar override and the per-camera mask.
#include <gtest/gtest.h>

#include <string>

#include "CameraServiceExtImpl.h"
#include "features/aps/APSInterface.h"
#include "features/aps/ZumioManager.h"
#include "hostctl/Properties.h"
#include "hostctl/Services.h"
#include "support/TestSupport.h"

namespace {

using namespace android;

// An extension object whose session state a test sets directly.
class SwitchOwner : public CameraServiceExtImpl {
public:
    void setSession(int32_t cameraId, int32_t fwkBeauty, int32_t fwkZumio) {
        mLastCameraId = cameraId;
        mFwkBeauty = fwkBeauty;
        mFwkZumio = fwkZumio;
    }
    int32_t fwkBeauty() const { return mFwkBeauty; }
    void setZumioManager(const sp<ZumioManager>& manager) { mZumioManager = manager; }
};

class ApsSwitchTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        // The owner takes no managers of its own: the test gives it what it needs.
        mRoot.writeFile(kFwkConfigPath, R"({"default": {"feature_aps_enable": false,
            "feature_auth_enable": false, "feature_motor_enable": false,
            "feature_rio_enable": false}})");
        std::string error;
        if (!hostctl::installApsLibrary(mRoot.hostPath(APSInterface::kLibraryPath), {}, &error)) {
            mSkipReason = error;
            return;
        }
        mOwner = new SwitchOwner();
        mZumio = new ZumioManager();
        mOwner->setZumioManager(mZumio);
        mAps = new APSInterface(mOwner.get());
        mAps->loadAPSLib();
    }
    void TearDown() override {
        mAps.clear();
        mOwner.clear();
        hostctl::clearProperties();
        hostctl::clearServiceCalls();
    }

    // Evaluates the switch afresh, as each engine set-up does.
    bool evaluate() {
        mAps->setNeedAPSProcess(false);
        mAps->updateAPSSwitch();
        return mAps->getNeedAPSProcess();
    }

    testsupport::TempDeviceRoot mRoot;
    std::string mSkipReason;
    sp<SwitchOwner> mOwner;
    sp<ZumioManager> mZumio;
    sp<APSInterface> mAps;
};

TEST_F(ApsSwitchTest, AvatarTurnsProcessingOnForAnyCameraAndSetsItsBit) {
    if (mAps == nullptr) GTEST_SKIP() << mSkipReason;
    mOwner->setSession(0, 0, 1);
    EXPECT_FALSE(evaluate());
    EXPECT_EQ(0, mAps->getAPSCameraMask());

    mZumio->setZumioEnable(true, false);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(1, mAps->getAPSCameraMask());
    // Camera 33 shares bit 1 with camera 1.
    mOwner->setSession(33, 0, 1);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(3, mAps->getAPSCameraMask());

    // Without the session's avatar answer the override does not apply and the bit is cleared.
    mOwner->setSession(0, 0, 0);
    EXPECT_FALSE(evaluate());
    EXPECT_EQ(2, mAps->getAPSCameraMask());
}

TEST_F(ApsSwitchTest, SwitchAlreadyOnIsNotEvaluatedAgain) {
    if (mAps == nullptr) GTEST_SKIP() << mSkipReason;
    mOwner->setSession(1, 0, 0);
    mAps->setNeedAPSProcess(true);
    mAps->updateAPSSwitch();
    EXPECT_TRUE(mAps->getNeedAPSProcess());
    EXPECT_EQ(0, mAps->getAPSCameraMask());
}

TEST_F(ApsSwitchTest, LahainaAndAtollAlwaysAskTheEngineForBeauty) {
    if (mAps == nullptr) GTEST_SKIP() << mSkipReason;
    for (const char* platform : {"lahaina", "atoll", "atoll_ab"}) {
        hostctl::setProperty("ro.board.platform", platform);
        mOwner->setSession(1, 0, 0);
        evaluate();
        EXPECT_EQ(1, mOwner->fwkBeauty()) << platform;
    }
}

TEST_F(ApsSwitchTest, OtherPlatformsFollowTheBeautySwitchProperty) {
    if (mAps == nullptr) GTEST_SKIP() << mSkipReason;
    hostctl::setProperty("ro.board.platform", "kona");
    mOwner->setSession(1, 0, 0);
    evaluate();
    EXPECT_EQ(0, mOwner->fwkBeauty());

    hostctl::setProperty("ro.vantu.camera.video.beauty.switch", "persist.vantu.beauty");
    hostctl::setProperty("persist.vantu.beauty", "1");
    evaluate();
    EXPECT_EQ(1, mOwner->fwkBeauty());
}

TEST_F(ApsSwitchTest, PerAppPropertyNameKeepsItsLastFittingValue) {
    if (mAps == nullptr) GTEST_SKIP() << mSkipReason;
    hostctl::setProperty("ro.vantu.camera.video_beauty.prefix", "persist.fb.");
    mOwner->setCurrentPackageName(String16("com.tencent.mm"));
    mOwner->setSession(1, 0, 0);
    evaluate();
    EXPECT_STREQ("persist.fb.com.tencent.mm", mAps->getApkPropName());

    // 11 + 81 characters: 92 - 11 does not exceed 81, so the name stays.
    mOwner->setCurrentPackageName(String16(std::string(81, 'p').c_str()));
    evaluate();
    EXPECT_STREQ("persist.fb.com.tencent.mm", mAps->getApkPropName());
    mOwner->setCurrentPackageName(String16(std::string(80, 'p').c_str()));
    evaluate();
    EXPECT_EQ("persist.fb." + std::string(80, 'p'), std::string(mAps->getApkPropName()));
}

}  // namespace
