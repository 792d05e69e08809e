// The AE/AF corrections of named apps and the debug printers, on their own and with odd input.
#include <stdint.h>

#include "CaptureTestSupport.h"
#include "utils/JsonParser.h"

namespace {

using android::CameraMetadata;
using capturetest::CaptureTest;

class ResultAdjustmentTest : public CaptureTest {
protected:
    // Passes `request` to the request-side rules as the request hook does.
    void sendRequest(const CameraMetadata& request, uint32_t frame) {
        const camera_metadata_t* raw = request.getAndLock();
        mExt->UpdateParamForSpecial3rdIssue(raw, frame);
        request.unlock(raw);
    }
    static CameraMetadata withByte(uint32_t tag, uint8_t value) {
        CameraMetadata md;
        md.update(tag, &value, 1);
        return md;
    }
    // The value of the one-byte `tag` the app receives for frame `frame` when the hardware said
    // `said` (-1: the entry is gone).
    int delivered(uint32_t tag, uint8_t said, uint32_t frame) {
        android::CaptureResult r;
        r.mMetadata.update(tag, &said, 1);
        mExt->beforeMetadataSendToApp(&r, frame, mStates.states());
        const camera_metadata_ro_entry_t e =
            static_cast<const CameraMetadata&>(r.mMetadata).find(tag);
        return e.count == 1 ? e.data.u8[0] : -1;
    }
    int deliveredAeState(uint32_t frame) {
        return delivered(ANDROID_CONTROL_AE_STATE, ANDROID_CONTROL_AE_STATE_CONVERGED, frame);
    }
    int deliveredAfState(uint32_t frame) {
        return delivered(ANDROID_CONTROL_AF_STATE, ANDROID_CONTROL_AF_STATE_PASSIVE_FOCUSED, frame);
    }

    hostctl::HostCaptureOutputStates mStates{"0"};
};

// The per-app rules classify the package once per change: a client that changes within the
// session must take the new app's rules from its next request and result on.
TEST_F(ResultAdjustmentTest, RulesFollowThePackageWhenItChangesMidSession) {
    mExt->setPackage("com.whatsapp");
    sendRequest(withByte(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, 1), 40);
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_PRECAPTURE, deliveredAeState(39));

    mExt->setPackage("com.snapchat.android");
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_CONVERGED, deliveredAeState(39));
    sendRequest(withByte(ANDROID_CONTROL_AF_TRIGGER, ANDROID_CONTROL_AF_TRIGGER_CANCEL), 45);
    EXPECT_EQ(ANDROID_CONTROL_AF_STATE_INACTIVE, deliveredAfState(44));

    mExt->setPackage("com.example.app");
    EXPECT_EQ(ANDROID_CONTROL_AF_STATE_PASSIVE_FOCUSED, deliveredAfState(44));
    // A WhatsApp client again: its mark was kept.
    mExt->setPackage("com.whatsapp");
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_PRECAPTURE, deliveredAeState(39));

    // Skype's torch tracking, after the other apps' requests.
    mExt->setPackage("com.skype.raider");
    sendRequest(withByte(ANDROID_FLASH_MODE, ANDROID_FLASH_MODE_TORCH), 50);
    EXPECT_FALSE(mExt->IsRejectStopPreview());
    sendRequest(withByte(ANDROID_FLASH_MODE, ANDROID_FLASH_MODE_OFF), 51);
    EXPECT_TRUE(mExt->IsRejectStopPreview());
}

// "reject_3rd_app_stop_preview" answers for the client's package, also while the configuration's
// package (the last one that asked) is another app.
TEST_F(ResultAdjustmentTest, TorchListAnswersForTheCurrentPackage) {
    mRoot.writeFile("odm/etc/camera/fwk_config.json",
                    R"({"default": {"reject_3rd_app_stop_preview": ["com.example.torch"]}})");
    mExt = new capturetest::CaptureExtension();
    android::setJsonPackageName("com.example.torch");
    mExt->setPackage("com.example.other");
    sendRequest(withByte(ANDROID_FLASH_MODE, ANDROID_FLASH_MODE_TORCH), 1);
    EXPECT_FALSE(mExt->IsRejectStopPreview());

    mExt->setPackage("com.example.torch");
    sendRequest(withByte(ANDROID_FLASH_MODE, ANDROID_FLASH_MODE_TORCH), 2);
    EXPECT_TRUE(mExt->IsRejectStopPreview());

    // A new configuration clears the torch marks; then the configuration's package moves on to
    // another app while the client stays the listed one.
    android::camera3::StreamSet streams;
    configure(streams);
    ASSERT_FALSE(mExt->IsRejectStopPreview());
    android::setJsonPackageName("com.example.other");
    sendRequest(withByte(ANDROID_FLASH_MODE, ANDROID_FLASH_MODE_TORCH), 3);
    EXPECT_TRUE(mExt->IsRejectStopPreview());
    android::setJsonPackageName(nullptr);
}

TEST_F(ResultAdjustmentTest, EveryStateWordIsPrinted) {
    mExt->setAeAfDebug(true);
    const char* ae[] = {"INACTIVE", "SEARCHING",      "CONVERGED",
                        "LOCKED",   "FLASH_REQUIRED", "PRECAPTURE"};
    const char* af[] = {"INACTIVE",       "PASSIVE_SCAN",       "PASSIVE_FOCUSED",  "AACTIVE_SCAN",
                        "FOCUSED_LOCKED", "NOT_FOCUSED_LOCKED", "PASSIVE_UNFOCUSED"};
    for (uint8_t s = 0; s < 7; ++s) {
        android::CaptureResult r;
        if (s < 6) r.mMetadata.update(ANDROID_CONTROL_AE_STATE, &s, 1);
        r.mMetadata.update(ANDROID_CONTROL_AF_STATE, &s, 1);
        mExt->printAeAfStateForDebug(&r, s);
        const std::string frame = "(frame num " + std::to_string(s) + ") Result had ";
        if (s < 6) {
            EXPECT_TRUE(mLogs.contains(frame + "AE state 0x" + std::to_string(s) + " " + ae[s]));
        } else {
            EXPECT_TRUE(mLogs.contains(frame + "no AE state"));
        }
        EXPECT_TRUE(mLogs.contains(frame + "AF state 0x" + std::to_string(s) + " " + af[s]));
    }
}

TEST_F(ResultAdjustmentTest, EveryTriggerWordIsPrinted) {
    const char* words[] = {"IDLE", "START", "CANCEL"};
    for (uint8_t t = 0; t < 3; ++t) {
        CameraMetadata request = withByte(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, t);
        request.update(ANDROID_CONTROL_AF_TRIGGER, &t, 1);
        const camera_metadata_t* raw = request.getAndLock();
        mExt->printAeAfTriggerForDebug(raw, 7);
        request.unlock(raw);
        EXPECT_TRUE(mLogs.contains("(frame num 7) Request had AE trigger 0x" + std::to_string(t) +
                                   " " + words[t]));
        EXPECT_TRUE(mLogs.contains("(frame num 7) Request had AF trigger 0x" + std::to_string(t) +
                                   " " + words[t]));
    }
    mExt->printAeAfTriggerForDebug(nullptr, 8);
    EXPECT_TRUE(mLogs.contains("(frame num 8) Request had no AE trigger"));
    EXPECT_TRUE(mLogs.contains("(frame num 8) Request had no AF trigger"));
}

TEST_F(ResultAdjustmentTest, DebugOffPrintsNothingButStillRewrites) {
    mExt->setPackage("com.whatsapp.w4b");
    sendRequest(withByte(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, 1), 40);
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_PRECAPTURE, deliveredAeState(39));
    EXPECT_FALSE(mLogs.contains("Request had"));
    EXPECT_FALSE(mLogs.contains("Result had"));
}

TEST_F(ResultAdjustmentTest, FrameNumbersAtTheEndsOfTheRange) {
    mExt->setPackage("com.whatsapp");
    sendRequest(withByte(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, 1), UINT32_MAX);
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_PRECAPTURE, deliveredAeState(0));
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_CONVERGED, deliveredAeState(UINT32_MAX));
    // Frame 0 after the mark: numbering started again.
    sendRequest(CameraMetadata(), 0);
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_CONVERGED, deliveredAeState(0));
}

TEST_F(ResultAdjustmentTest, OddRequestsAndResultsAreIgnored) {
    mExt->setPackage("com.whatsapp");
    mExt->setAeAfDebug(true);
    // No values, and no request at all.
    CameraMetadata empty;
    empty.update(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, static_cast<const uint8_t*>(nullptr), 0);
    sendRequest(empty, 5);
    mExt->UpdateParamForSpecial3rdIssue(nullptr, 6);
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_CONVERGED, deliveredAeState(1));
    EXPECT_FALSE(mExt->beforeMetadataSendToApp(nullptr, 1, mStates.states()));
    // A locked result cannot be rewritten: the error is logged and the result goes as it is.
    sendRequest(withByte(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, 1), 50);
    android::CaptureResult r;
    const camera_metadata_t* raw = r.mMetadata.getAndLock();
    mExt->beforeMetadataSendToApp(&r, 10, mStates.states());
    r.mMetadata.unlock(raw);
    EXPECT_TRUE(mLogs.contains("beforeMetadataSendToApp: update aestate for frame(10) error"));
}

TEST_F(ResultAdjustmentTest, FlashSwitchOffStopsEveryRule) {
    mRoot.writeFile("odm/etc/camera/fwk_config.json",
                    R"({"default": {"feature_flash_enable": false}})");
    mExt = new capturetest::CaptureExtension();
    mExt->setPackage("com.whatsapp");
    sendRequest(withByte(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, 1), 40);
    EXPECT_EQ(ANDROID_CONTROL_AE_STATE_CONVERGED, deliveredAeState(39));
}

}  // namespace
