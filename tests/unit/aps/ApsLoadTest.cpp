// Loading the frame-processing library in its shapes: complete, without the optional capture
// entry point, without a required one, and absent. A file that is no library takes the absent
// library's failed load; the load's log lines are pinned by the aps_library_*.json scenarios.
#include <gtest/gtest.h>

#include <string>

#include "features/aps/APSInterface.h"
#include "hostctl/Services.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"

namespace {

using android::APSInterface;
using android::sp;

class ApsLoadTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearServiceCalls();
        android::setExtLogSwitch(1);
    }
    void TearDown() override {
        android::setExtLogSwitch(0);
        hostctl::clearServiceCalls();
    }

    // Installs the fake in `shape` where the library looks for it; false when the fake is not
    // part of the build.
    bool install(const hostctl::ApsLibraryShape& shape) {
        std::string error;
        const bool ok =
            hostctl::installApsLibrary(mRoot.hostPath(APSInterface::kLibraryPath), shape, &error);
        if (!ok) mSkipReason = error;
        return ok;
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::LogCapture mLog;
    std::string mSkipReason;
};

TEST_F(ApsLoadTest, CompleteLibraryIsFullyBoundAndAnswersFeatures) {
    hostctl::ApsLibraryShape shape;
    shape.features = {{"com.vantu.fwkBeauty", false}};
    if (!install(shape)) GTEST_SKIP() << mSkipReason;
    sp<APSInterface> aps = new APSInterface(nullptr);
    aps->loadAPSLib();
    EXPECT_TRUE(aps->isFullyBound());
    EXPECT_FALSE(aps->isAPSFeatureSupport("com.vantu.fwkBeauty"));
    EXPECT_TRUE(aps->isAPSFeatureSupport("com.vantu.fwkZumio"));
    EXPECT_TRUE(aps->setUpEngine({1, 0, 0, 0}));
    aps->destory();
    aps->uninit();
    std::vector<std::string> names;
    for (const auto& call : hostctl::serviceCallsOf(hostctl::kApsLibrary)) {
        names.push_back(call.method);
    }
    EXPECT_EQ(
        (std::vector<std::string>{"isAPSFeatureSupport", "isAPSFeatureSupport", "createAPSInstance",
                                  "initAPS", "destoryAPSInstance", "uninitAPS"}),
        names);
}

TEST_F(ApsLoadTest, MissingCaptureEntryPointLoadsButIsNotFullyBound) {
    hostctl::ApsLibraryShape shape;
    shape.missing = {"APSProcessCaptureFrames"};
    if (!install(shape)) GTEST_SKIP() << mSkipReason;
    sp<APSInterface> aps = new APSInterface(nullptr);
    aps->loadAPSLib();
    EXPECT_FALSE(aps->isFullyBound());
    // Loaded all the same: the features are still asked.
    EXPECT_TRUE(aps->isAPSFeatureSupport("com.vantu.fwkBeauty"));
    EXPECT_FALSE(aps->setUpEngine({1, 0, 0, 0}));
}

TEST_F(ApsLoadTest, MissingRequiredEntryPointClosesTheLibrary) {
    hostctl::ApsLibraryShape shape;
    shape.missing = {"uninitAPS"};
    if (!install(shape)) GTEST_SKIP() << mSkipReason;
    sp<APSInterface> aps = new APSInterface(nullptr);
    aps->loadAPSLib();
    EXPECT_TRUE(mLog.contains("loadAPSLib cannot find symbol uninitAPS"));
    EXPECT_FALSE(mLog.contains("succeed!"));
    EXPECT_FALSE(aps->isFullyBound());
    EXPECT_FALSE(aps->isAPSFeatureSupport("com.vantu.fwkBeauty"));
    aps->destory();
    aps->uninit();
    EXPECT_TRUE(hostctl::serviceCallsOf(hostctl::kApsLibrary).empty());
}

TEST_F(ApsLoadTest, AbsentLibraryLeavesEverythingOff) {
    sp<APSInterface> aps = new APSInterface(nullptr);
    aps->loadAPSLib();
    EXPECT_TRUE(mLog.contains("loadAPSLib dlopen libfwk.aps.interface.so fail error"));
    EXPECT_FALSE(aps->isFullyBound());
    EXPECT_FALSE(aps->isAPSFeatureSupport("com.vantu.fwkBeauty"));
    aps->updateAPSSwitch();
    EXPECT_TRUE(mLog.contains("updateAPSSwitch mAPSLibHandle is NULL"));
    EXPECT_FALSE(aps->getNeedAPSProcess());
}

}  // namespace
