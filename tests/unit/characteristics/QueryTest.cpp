// The characteristics query as the server makes it, on the base class and on the chips that
// share the third-party size rule, and the surface limit of third-party apps.
#include <gtest/gtest.h>
#include <system/camera_metadata.h>
#include <utils/CameraThreadState.h>

#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "hostctl/Properties.h"
#include "platform/CameraServiceExtImpl_mt6893.h"
#include "platform/CameraServiceExtImpl_sm6125.h"
#include "platform/CameraServiceExtImpl_sm8450.h"
#include "support/TestSupport.h"
#include "utils/JsonParser.h"

namespace {

using namespace android;

constexpr uint32_t kStreams = ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS;

// Limits 1920 x 1080 for camera 0, 1280 x 720 for camera 1, 640 x 480 for the others; the
// system camera has no limit of its own.
constexpr char kLimits[] = R"({
  "default": {
    "thirdPartyAppWidthLimitForCam0": 1920, "thirdPartyAppHeightLimitForCam0": 1080,
    "thirdPartyAppWidthLimitForCam1": 1280, "thirdPartyAppHeightLimitForCam1": 720,
    "maxPreviewWidth": 640, "maxPreviewHeight": 480,
    "thirdPartyAppLimitPicture": false
  },
  "com.vantu.camera": {
    "thirdPartyAppWidthLimitForCam0": 0, "thirdPartyAppWidthLimitForCam1": 0,
    "maxPreviewWidth": 0
  },
  "com.jpeg.app": {"thirdPartyAppLimitPicture": true}
})";

const std::vector<int32_t> kTable = {
    33, 4000, 3000, 0, 35, 4000, 3000, 0, 35, 1920, 1080, 0,
    35, 1280, 720,  0, 34, 640,  480,  0, 35, 4000, 3000, 1,
};

std::vector<int32_t> streams(const CameraMetadata& md) {
    const camera_metadata_ro_entry e = md.find(kStreams);
    return std::vector<int32_t>(e.data.i32, e.data.i32 + e.count);
}

// Widths of the YUV and private outputs left, in table order.
std::vector<int32_t> outputWidths(const CameraMetadata& md) {
    const std::vector<int32_t> v = streams(md);
    std::vector<int32_t> widths;
    for (size_t i = 0; i + 4 <= v.size(); i += 4) {
        if ((v[i] == 34 || v[i] == 35) && v[i + 3] == 0) widths.push_back(v[i + 1]);
    }
    return widths;
}

class CharacteristicsQuery : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
        mRoot.writeFile(kFwkConfigPath, kLimits);
    }
    void TearDown() override { hostctl::clearProperties(); }

    // The characteristics of `cameraId` as `ext` shows them to `package`.
    static CameraMetadata query(CameraServiceExtImpl& ext, const char* package,
                                const char* cameraId) {
        CameraMetadata md;
        md.update(kStreams, kTable.data(), kTable.size());
        ext.setAPKPackageName(String16(package));
        EXPECT_EQ(OK, ext.getCameraCharacteristics(String16(cameraId), &md));
        return md;
    }

    testsupport::TempDeviceRoot mRoot;
};

TEST_F(CharacteristicsQuery, BaseClassLeavesEverySizeAndAlwaysSucceeds) {
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    EXPECT_EQ(kTable, streams(query(*ext, "com.example.app", "0")));
    EXPECT_EQ(OK, ext->getCameraCharacteristics(String16("0"), nullptr));
}

TEST_F(CharacteristicsQuery, SharedRuleCutsPerCameraLimitsForAnOrdinaryApp) {
    sp<CameraServiceExtImpl> mtk = new CameraServiceExtImpl_mt6893();
    sp<CameraServiceExtImpl> sm6125 = new CameraServiceExtImpl_sm6125();
    for (const sp<CameraServiceExtImpl>& ext : {mtk, sm6125}) {
        EXPECT_EQ((std::vector<int32_t>{1920, 1280, 640}),
                  outputWidths(query(*ext, "com.example.app", "0")));
        EXPECT_EQ((std::vector<int32_t>{1280, 640}),
                  outputWidths(query(*ext, "com.example.app", "1")));
        EXPECT_EQ((std::vector<int32_t>{640}), outputWidths(query(*ext, "com.example.app", "2")));
    }
}

TEST_F(CharacteristicsQuery, OtherQualcommChipsKeepTheBaseRule) {
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl_sm8450();
    EXPECT_EQ(kTable, streams(query(*ext, "com.example.app", "0")));
}

TEST_F(CharacteristicsQuery, OddCameraIdsFallBackToTheOtherCamerasLimit) {
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl_mt6893();
    for (const char* id : {"", "-1", "99999999999", "camera0"}) {
        EXPECT_EQ((std::vector<int32_t>{640}), outputWidths(query(*ext, "com.example.app", id)))
            << "camera id \"" << id << "\"";
    }
    // A hexadecimal id is a clean number.
    EXPECT_EQ((std::vector<int32_t>{1920, 1280, 640}),
              outputWidths(query(*ext, "com.example.app", "0x0")));
}

TEST_F(CharacteristicsQuery, QueryHandsThePackageToTheConfiguration) {
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    query(*ext, "com.jpeg.app", "0");
    EXPECT_STREQ("com.jpeg.app", getJsonPackageName());
}

// ---- The surface limit ----

class SurfaceLimit : public ::testing::Test {
protected:
    // Exposes the camera the last client opened.
    struct Ext : CameraServiceExtImpl {
        using CameraServiceExtImpl::mLastCameraId;
    };

    void SetUp() override {
        hostctl::clearProperties();
        hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    }
    void TearDown() override { hostctl::clearProperties(); }

    sp<Ext> build(const std::string& config = R"({"default": {"feature_auth_enable": false}})") {
        mRoot.writeFile(kFwkConfigPath, config);
        return new Ext();
    }
    static std::pair<int, int> filter(Ext& ext, const char* package, int cameraId, int w, int h) {
        ext.setCurrentPackageName(String16(package));
        ext.mLastCameraId = cameraId;
        ext.filterSurfaceConfig(w, h);
        return {w, h};
    }

    testsupport::TempDeviceRoot mRoot;
};

TEST_F(SurfaceLimit, ThirdPartySurfaceShrinksToFitKeepingItsShape) {
    sp<Ext> ext = build();
    EXPECT_EQ(std::make_pair(1920, 1080), filter(*ext, "com.example.app", 0, 3840, 2160));
    EXPECT_EQ(std::make_pair(1920, 1080), filter(*ext, "com.example.app", 1, 1920, 1080));
    // Rounded down to even sizes, never to nothing.
    EXPECT_EQ(std::make_pair(1920, 1), filter(*ext, "com.example.app", 0, 100000, 3));
}

TEST_F(SurfaceLimit, TestPackagesAreNotLimited) {
    sp<Ext> ext = build();
    EXPECT_EQ(std::make_pair(4000, 3000), filter(*ext, "android.camera.cts", 0, 4000, 3000));
}

TEST_F(SurfaceLimit, CameraZeroHasItsOwnKeysAndZeroMeansNoLimit) {
    sp<Ext> ext = build(R"({"default": {"feature_auth_enable": false,
        "limitWidthForSurface": 1280, "limitHeightForSurface": 720,
        "limitWidthForSurfaceCam0": 0}})");
    EXPECT_EQ(std::make_pair(4000, 3000), filter(*ext, "com.example.app", 0, 4000, 3000));
    EXPECT_EQ(std::make_pair(960, 720), filter(*ext, "com.example.app", 2, 4000, 3000));
    // Sizes that make no sense are left for the server to refuse.
    EXPECT_EQ(std::make_pair(-4000, 3000), filter(*ext, "com.example.app", 2, -4000, 3000));
}

TEST_F(SurfaceLimit, AuthorisedSdkAppIsNotLimited) {
    sp<Ext> ext = build(R"({"default": {}})");
    sp<AuthAppManager> auth = AuthAppManager::getInstance();
    ASSERT_NE(nullptr, auth);
    auth->addAuthResultInfo(4321, CameraThreadState::getCallingUid(), 0, String8("com.sdk.app"));
    EXPECT_EQ(std::make_pair(4000, 3000), filter(*ext, "com.sdk.app", 0, 4000, 3000));
    // The result names the package: another app of the same uid is limited.
    EXPECT_EQ(std::make_pair(1440, 1080), filter(*ext, "com.example.app", 0, 4000, 3000));
}

}  // namespace
