// The end-of-configuration gate: an SDK session is refused unless its app is authorised, and
// the camera's meta stream is re-armed whatever the verdict.
#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <hostctl/VendorTags.h>
#include <utils/String8.h>

#include <memory>

#include "AuthTestSupport.h"
#include "CameraServiceExtImpl.h"
#include "hostctl/Properties.h"

namespace {

using android::CameraMetadata;
using android::sp;
using android::String8;
using authtest::kMs;

constexpr uint64_t kProvider = 7;
using authtest::kApp;
using authtest::kAppPid;
using authtest::kAppUid;
constexpr char kSdkTag[] = "com.vantu.is.sdk.camera.package";

// The extension with a private authorisation manager (or none) and a view of its meta streams.
class GateExtension : public android::CameraServiceExtImpl {
public:
    void useManager(const sp<android::AuthAppManager>& manager) { mAuthAppManager = manager; }
    void setPackage(const char* package) { storeCurrentPackageName(String8(package)); }
    void addMetaStream(int cameraId, bool disabled, int32_t countdown) {
        android::MetaStreamInfo info;
        info.mDisabled = disabled;
        info.mCountdown = countdown;
        info.mLock = std::make_shared<std::mutex>();
        mMetaStreamInfos.add(cameraId, info);
    }
    const android::MetaStreamInfo& metaStream(int cameraId) const {
        return mMetaStreamInfos.valueFor(cameraId);
    }
};

class EndConfigureGateTest : public authtest::AuthTest {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        authtest::AuthTest::SetUp();
        ASSERT_TRUE(hostctl::installVendorTags({{kSdkTag, TYPE_BYTE}}, kProvider, true, false));
        mExt = new GateExtension();
        mExt->useManager(mManager);
        mExt->setPackage(kApp);
        android::setExtLogSwitch(1);
        hostctl::setCallingIdentity(kAppUid, kAppPid);
    }
    void TearDown() override {
        hostctl::resetCallingIdentity();
        hostctl::clearVendorTags();
        authtest::AuthTest::TearDown();
    }

    // Session parameters of a provider packet, with the SDK tag when `sdk` is true.
    static CameraMetadata sessionParams(bool sdk) {
        CameraMetadata params;
        hostctl::setMetadataVendorId(&params, kProvider);
        if (sdk) {
            uint32_t tag = 0;
            EXPECT_TRUE(hostctl::lookupTag(kSdkTag, kProvider, &tag, nullptr));
            const uint8_t one = 1;
            EXPECT_EQ(android::OK, params.update(tag, &one, 1));
        }
        return params;
    }

    android::binder::Status endConfigure(bool sdk, uint64_t vendorId = kProvider) {
        int client = 0;
        return mExt->afterEndConfigure(sessionParams(sdk), &client, vendorId, String8("0"));
    }

    testsupport::TempDeviceRoot mRoot;
    sp<GateExtension> mExt;
};

TEST_F(EndConfigureGateTest, UnauthorisedSdkSessionIsRefusedAfterOneWait) {
    const nsecs_t start = android::vantu::monotonicNs();
    android::binder::Status status = endConfigure(true);
    EXPECT_EQ(500 * kMs, android::vantu::monotonicNs() - start);
    EXPECT_EQ(1, status.serviceSpecificErrorCode()) << status;
    const std::string message = status.exceptionMessage().c_str();
    EXPECT_EQ(0u, message.rfind("afterEndConfigure:", 0)) << message;
    EXPECT_NE(std::string::npos,
              message.find(": The com.example.sdkapp uses cameraUnit but authentication fails."))
        << message;
    EXPECT_TRUE(mLogs.contains(
        "afterEndConfigure: The com.example.sdkapp uses cameraUnit but authentication fails."))
        << mLogs.dump();
}

TEST_F(EndConfigureGateTest, AuthorisedCallerPassesWithoutWaiting) {
    // The package check is off: a result for the caller's uid under any package will do.
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8("com.example.other"));
    const nsecs_t start = android::vantu::monotonicNs();
    EXPECT_TRUE(endConfigure(true).isOk());
    EXPECT_EQ(0, android::vantu::monotonicNs() - start);
    EXPECT_TRUE(mLogs.contains("isAuthedApp: 1, uid: 10100, pid: 5000"));
    EXPECT_TRUE(
        mLogs.contains("afterEndConfigure: com.example.sdkapp uses cameraUnit and passes "
                       "authentication."));
}

TEST_F(EndConfigureGateTest, GateAsksAboutTheCallingUid) {
    mManager->addAuthResultInfo(kAppPid, kAppUid + 1, 0, String8(kApp));
    EXPECT_EQ(1, endConfigure(true).serviceSpecificErrorCode());
}

TEST_F(EndConfigureGateTest, TagUnknownToTheHooksProviderLetsTheSessionPass) {
    // The tag is registered for kProvider only; the hook's own vendor id decides the lookup.
    EXPECT_TRUE(endConfigure(true, kProvider + 1).isOk());
    EXPECT_TRUE(mLogs.contains(
        "afterEndConfigure: Unknown tag com.vantu.is.sdk.camera.package, ignoring "));
}

TEST_F(EndConfigureGateTest, MetaStreamOfTheCameraIsReArmedWhateverTheVerdict) {
    mExt->addMetaStream(0, true, 0);
    mExt->addMetaStream(1, true, 0);
    mExt->useManager(nullptr);
    EXPECT_FALSE(endConfigure(true).isOk());
    EXPECT_FALSE(mExt->metaStream(0).mDisabled);
    EXPECT_EQ(2, mExt->metaStream(0).mCountdown);
    EXPECT_TRUE(mExt->metaStream(1).mDisabled);
    EXPECT_EQ(0, mExt->metaStream(1).mCountdown);
}

}  // namespace
