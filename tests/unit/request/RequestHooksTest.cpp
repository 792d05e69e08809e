// The request hooks of the base class on what scenarios cannot set up: a pending AF trigger of
// WhatsApp, a provider that learns the device-state tag late, locked and malformed packets, and
// the lines of the session-tag writer when the packet refuses a change.
#include <camera_metadata_hidden.h>
#include <gtest/gtest.h>
#include <hostctl/HostEnv.h>
#include <hostctl/Properties.h>
#include <hostctl/VendorTags.h>
#include <utils/String8.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace {

using android::CameraMetadata;
using android::sp;
using android::String8;

constexpr uint64_t kProvider = 3;
constexpr char kDeviceStateTag[] = "com.vantu.device.state";

// The extension with the client state a connect would have left.
class RequestExtension : public android::CameraServiceExtImpl {
public:
    void setPackage(const char* package) { storeCurrentPackageName(String8(package)); }
    void setLastAfTrigger(uint8_t trigger) { mLastAFtrigger = trigger; }
    uint8_t lastAfTrigger() const { return mLastAFtrigger; }
    void setCamera(int id) { mLastCameraId = id; }
    void setVendor(uint64_t id) { mVendorId = id; }
    void setDeviceState(uint64_t state) { mDeviceState = state; }
    void touchAE(CameraMetadata& request) {
        disableFrontCameraTouchAE(request, "lahaina", nullptr);
    }
};

class RequestHooksTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
        // The extension reads its debug switch when it is built.
        hostctl::setProperty("persist.sys.assert.panic", "true");
    }
    void TearDown() override {
        hostctl::clearVendorTags();
        android::setExtLogSwitch(0);
    }

    // Builds the extension on a configuration whose "default" section is `defaults`.
    void build(const std::string& defaults, const char* package) {
        mRoot.writeFile("odm/etc/camera/fwk_config.json", "{\"default\": " + defaults + "}");
        mExt = new RequestExtension();
        mExt->setPackage(package);
        mExt->setVendor(kProvider);
    }

    static CameraMetadata request() {
        CameraMetadata settings;
        hostctl::setMetadataVendorId(&settings, kProvider);
        const uint8_t start = ANDROID_CONTROL_AF_TRIGGER_START;
        settings.update(ANDROID_CONTROL_AF_TRIGGER, &start, 1);
        return settings;
    }

    // The request hook as the server runs it: the settings are unlocked once sent.
    void prepare(CameraMetadata& settings, uint32_t frame) {
        mExt->onPrepareHalRequestsUpdateMetadata(settings, frame);
        const camera_metadata_t* raw = settings.getAndLock();
        settings.unlock(raw);
    }

    static uint8_t afTrigger(const CameraMetadata& settings) {
        const camera_metadata_ro_entry entry = settings.find(ANDROID_CONTROL_AF_TRIGGER);
        return entry.count == 1 ? entry.data.u8[0] : 0xff;
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::LogCapture mLogs;
    sp<RequestExtension> mExt;
};

TEST_F(RequestHooksTest, WhatsAppPendingAfTriggerIsResentAsIdleOnce) {
    build("{}", "com.whatsapp.w4b");
    mExt->setLastAfTrigger(ANDROID_CONTROL_AF_TRIGGER_START);
    // The host's flag gates the forcing rule.
    EXPECT_FALSE(mExt->IsNewRequest(false, false));
    EXPECT_TRUE(mExt->IsNewRequest(false, true));
    EXPECT_TRUE(
        mLogs.contains("IsNewRequest: mLastAFtrigger is not ANDROID_CONTROL_AF_TRIGGER_IDLE, "
                       "set newRequest true"));

    CameraMetadata settings = request();
    prepare(settings, 7);
    EXPECT_EQ(ANDROID_CONTROL_AF_TRIGGER_IDLE, afTrigger(settings));
    EXPECT_EQ(0, mExt->lastAfTrigger());
    EXPECT_TRUE(mLogs.contains("Send AfTriggerIdle To HAL"));

    // Nothing pending any more: the next request goes as the app sent it.
    EXPECT_FALSE(mExt->IsNewRequest(false, true));
    CameraMetadata next = request();
    prepare(next, 8);
    EXPECT_EQ(ANDROID_CONTROL_AF_TRIGGER_START, afTrigger(next));
}

TEST_F(RequestHooksTest, AfTriggerRuleNeedsTheFlashSwitchAndWhatsApp) {
    build("{\"feature_flash_enable\": false}", "com.whatsapp");
    mExt->setLastAfTrigger(ANDROID_CONTROL_AF_TRIGGER_START);
    EXPECT_FALSE(mExt->IsNewRequest(false, true));
    CameraMetadata settings = request();
    prepare(settings, 1);
    EXPECT_EQ(ANDROID_CONTROL_AF_TRIGGER_START, afTrigger(settings));

    build("{}", "com.whatsapp.beta");
    mExt->setLastAfTrigger(ANDROID_CONTROL_AF_TRIGGER_START);
    EXPECT_FALSE(mExt->IsNewRequest(false, true));
    EXPECT_TRUE(mExt->IsNewRequest(true, false));
}

TEST_F(RequestHooksTest, DeviceStateTagIsRetriedUntilTheProviderKnowsIt) {
    build("{\"feature_fold_enable\": true}", "com.example.app");
    mExt->setDeviceState(5);
    // Each request before tries again (the request_identity_unknown_tags scenario).
    CameraMetadata first = request();
    prepare(first, 1);
    ASSERT_TRUE(mLogs.contains("Process device state for 0x5 tag 0x0"));

    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    uint32_t tag = 0;
    ASSERT_TRUE(hostctl::lookupTag(kDeviceStateTag, kProvider, &tag, nullptr));
    CameraMetadata second = request();
    prepare(second, 3);
    const camera_metadata_entry entry = second.find(tag);
    ASSERT_EQ(1u, entry.count);
    EXPECT_EQ(5, entry.data.i64[0]);

    // Once resolved the id is kept, whatever the provider later declares.
    hostctl::clearVendorTags();
    mLogs.clear();
    CameraMetadata third = request();
    prepare(third, 4);
    EXPECT_FALSE(mLogs.contains("Unknown tag com.vantu.device.state")) << mLogs.dump();
}

TEST_F(RequestHooksTest, LockedRequestIsLeftAloneAndStaysLocked) {
    build("{\"feature_fold_enable\": true}", "com.facebook.orca");
    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    CameraMetadata settings = request();
    const uint8_t alwaysFlash = ANDROID_CONTROL_AE_MODE_ON_ALWAYS_FLASH;
    settings.update(ANDROID_CONTROL_AE_MODE, &alwaysFlash, 1);
    const camera_metadata_t* raw = settings.getAndLock();
    for (uint32_t frame : {0u, 0xffffffffu})
        mExt->onPrepareHalRequestsUpdateMetadata(settings, frame);
    EXPECT_EQ(android::OK, settings.unlock(raw));
    EXPECT_FALSE(settings.exists(ANDROID_FLASH_MODE));
}

TEST_F(RequestHooksTest, RequestWithoutAPacketTakesTheFixesItNeeds) {
    build("{}", "com.whatsapp");
    mExt->setLastAfTrigger(ANDROID_CONTROL_AF_TRIGGER_START);
    CameraMetadata empty;
    prepare(empty, 0);
    EXPECT_EQ(ANDROID_CONTROL_AF_TRIGGER_IDLE, afTrigger(empty));
    EXPECT_EQ(1u, empty.entryCount());
}

TEST_F(RequestHooksTest, RequestIsLeftLockedForTheServerToUnlock) {
    build("{}", "com.example.app");
    CameraMetadata settings = request();
    mExt->onPrepareHalRequestsUpdateMetadata(settings, 1);
    const uint8_t idle = ANDROID_CONTROL_AF_TRIGGER_IDLE;
    EXPECT_NE(android::OK, settings.update(ANDROID_CONTROL_AF_TRIGGER, &idle, 1));
    const camera_metadata_t* raw = settings.getAndLock();
    EXPECT_EQ(android::OK, settings.unlock(raw));
    EXPECT_EQ(android::OK, settings.update(ANDROID_CONTROL_AF_TRIGGER, &idle, 1));
}

TEST_F(RequestHooksTest, FrontTouchAeZeroesOnlyWhatAShortRegionHolds) {
    build("{}", "com.example.app");
    mExt->setCamera(1);
    CameraMetadata settings = request();
    const int32_t shortRegion[3] = {10, 20, 30};
    settings.update(ANDROID_CONTROL_AE_REGIONS, shortRegion, 3);
    mExt->touchAE(settings);
    const camera_metadata_entry entry = settings.find(ANDROID_CONTROL_AE_REGIONS);
    ASSERT_EQ(3u, entry.count);
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(0, entry.data.i32[i]);
    // Whole regions and the log line are played by the request_chip_* scenarios.
}

TEST_F(RequestHooksTest, SessionTagWriterNamesTheTagWhereTheOperationIsExpected) {
    build("{}", "com.example.app");
    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    CameraMetadata params;
    hostctl::setMetadataVendorId(&params, kProvider);
    const camera_metadata_t* raw = params.getAndLock();
    mExt->addRemovePackageName(params, kProvider, true);
    mExt->addRemovePackageName(params, kProvider, false);
    params.unlock(raw);
    EXPECT_TRUE(mLogs.contains(
        "com.vantu.packageName: metadata addRemovePackageName update fail! res = -38"))
        << mLogs.dump();
    EXPECT_TRUE(mLogs.contains("addRemovePackageName: metadata erase fail! res = -38"));
    EXPECT_EQ(0u, params.entryCount());
}

// A provider may declare one of our vendor tags with another type, so a packet can hold an entry
// of that type. Updated in place it would take as many bytes as its own type needs from the
// library's shorter value (the session fuzzer found the over-read).
TEST_F(RequestHooksTest, VendorEntriesOfAnotherTypeAreReplacedNotOverread) {
    build("{\"feature_fold_enable\": true}", "com.example.app");
    std::vector<hostctl::VendorTag> asDouble = hostctl::libraryVendorTags();
    for (hostctl::VendorTag& t : asDouble) t.type = TYPE_DOUBLE;
    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    ASSERT_TRUE(hostctl::installVendorTags(asDouble, kProvider + 1, true, false));
    // An entry the other provider wrote, travelling in a packet of ours.
    const auto foreign = [](const char* name) {
        uint32_t tag = 0;
        EXPECT_TRUE(hostctl::lookupTag(name, kProvider, &tag, nullptr));
        camera_metadata_t* packet = allocate_camera_metadata(1, 16);
        set_camera_metadata_vendor_id(packet, kProvider + 1);
        const double value = 1.5;
        EXPECT_EQ(0, add_camera_metadata_entry(packet, tag, &value, 1));
        set_camera_metadata_vendor_id(packet, kProvider);
        CameraMetadata md;
        hostctl::setMetadataVendorId(&md, kProvider);
        EXPECT_EQ(android::OK, md.append(packet));
        free_camera_metadata(packet);
        return std::make_pair(md, tag);
    };

    auto [params, apiTag] = foreign("com.vantu.fwkApiLevel");
    mExt->addRemovePackageName(params, kProvider, true);
    const camera_metadata_entry api = params.find(apiTag);
    EXPECT_EQ(TYPE_INT32, api.type);
    EXPECT_EQ(1u, api.count);

    mExt->setDeviceState(7);
    auto [request, stateTag] = foreign(kDeviceStateTag);
    prepare(request, 1);
    const camera_metadata_entry state = request.find(stateTag);
    ASSERT_EQ(TYPE_INT64, state.type);
    ASSERT_EQ(1u, state.count);
    EXPECT_EQ(7, state.data.i64[0]);
}

// An app's session parameters may repeat a tag: its own package name must neither reach the HAL
// beside ours nor outlive the configuration (found by the session fuzzer).
TEST_F(RequestHooksTest, RepeatedIdentityTagsLeaveOnlyOursForTheHardware) {
    build("{}", "com.example.app");
    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    uint32_t tag = 0;
    ASSERT_TRUE(hostctl::lookupTag("com.vantu.packageName", kProvider, &tag, nullptr));
    CameraMetadata params;
    hostctl::setMetadataVendorId(&params, kProvider);
    const uint8_t forged[] = "com.forged";
    for (int i = 0; i < 2; ++i) {
        CameraMetadata one;
        hostctl::setMetadataVendorId(&one, kProvider);
        one.update(tag, forged, sizeof(forged));
        ASSERT_EQ(android::OK, params.append(one));
    }
    ASSERT_EQ(2u, params.entryCount());

    mExt->addRemovePackageName(params, kProvider, true);
    const camera_metadata_entry ours = params.find(tag);
    // One entry each of package, activity and API level.
    ASSERT_EQ(3u, params.entryCount());
    EXPECT_STREQ("com.example.app", reinterpret_cast<const char*>(ours.data.u8));
    mExt->addRemovePackageName(params, kProvider, false);
    EXPECT_FALSE(params.exists(tag));
}

TEST_F(RequestHooksTest, DescriptorLookupPrefersAGlobalDescriptorWithTags) {
    uint32_t tag = 0;
    EXPECT_FALSE(android::vantu::findVendorTag(kDeviceStateTag, kProvider, &tag));
    ASSERT_TRUE(hostctl::installVendorTags({{kDeviceStateTag, TYPE_INT64}}, kProvider, true, false));
    EXPECT_TRUE(android::vantu::findVendorTag(kDeviceStateTag, kProvider, &tag));
    EXPECT_FALSE(android::vantu::findVendorTag(kDeviceStateTag, kProvider + 1, &tag));
    // An empty global descriptor does not hide the provider's tags.
    ASSERT_TRUE(hostctl::installVendorTags({}, kProvider + 1, false, true));
    EXPECT_TRUE(android::vantu::findVendorTag(kDeviceStateTag, kProvider, &tag));
    ASSERT_TRUE(hostctl::installVendorTags({{kDeviceStateTag, TYPE_INT64}}, 0, false, true));
    EXPECT_TRUE(android::vantu::findVendorTag(kDeviceStateTag, kProvider + 1, &tag));
}

// The request thread classifies the package while a binder thread switches it: each request
// sees one whole name, and the last switch is what the next request goes by.
TEST_F(RequestHooksTest, PackageSwitchRacingTheRequestThread) {
    build("{}", "com.example.app");
    android::setExtLogSwitch(0);
    std::thread binder([this] {
        for (int i = 0; i < 2000; ++i) {
            mExt->setCurrentPackageName(
                android::String16(i % 2 ? "com.whatsapp" : "com.example.app"));
        }
        mExt->setCurrentPackageName(android::String16("com.facebook.orca"));
    });
    CameraMetadata settings = request();
    for (uint32_t frame = 0; frame < 2000; ++frame) {
        mExt->IsNewRequest(false, true);
        prepare(settings, frame);
    }
    binder.join();
    const uint8_t alwaysFlash = ANDROID_CONTROL_AE_MODE_ON_ALWAYS_FLASH;
    settings.update(ANDROID_CONTROL_AE_MODE, &alwaysFlash, 1);
    prepare(settings, 2000);
    const camera_metadata_entry flash = settings.find(ANDROID_FLASH_MODE);
    ASSERT_EQ(1u, flash.count);
    EXPECT_EQ(ANDROID_FLASH_MODE_SINGLE, flash.data.u8[0]);
}

}  // namespace
