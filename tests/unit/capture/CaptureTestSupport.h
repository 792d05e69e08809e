/*
 * The capture-pipeline tests' extension: the stock extension object with its client and meta
 * stream state reachable, driven through the configuration, request and result hooks over host
 * streams whose buffers are hardware buffers.
 */
#pragma once

#include <gtest/gtest.h>
#include <hostctl/HostCaptureOutputStates.h>
#include <hostctl/HostEnv.h>
#include <hostctl/HostHardwareBuffers.h>
#include <hostctl/HostOutputStream.h>
#include <hostctl/Properties.h>
#include <hostctl/VendorTags.h>
#include <utils/String8.h>

#include <string>

#include "CameraServiceExtImpl.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"

namespace capturetest {

constexpr uint64_t kProvider = 3;
constexpr char kResultTag[] = "com.vantu.aps.result.data";

class CaptureExtension : public android::CameraServiceExtImpl {
public:
    void setPackage(const char* package) { storeCurrentPackageName(android::String8(package)); }
    void setAeAfDebug(bool on) { mAeAfDebug = on; }
    void setVendorId(uint64_t id) { mVendorId = id; }
    bool hasMetaRecord(int cameraId) const { return mMetaStreamInfos.indexOfKey(cameraId) >= 0; }
    const android::MetaStreamInfo& metaRecord(int cameraId) const {
        return mMetaStreamInfos.valueFor(cameraId);
    }
};

class CaptureTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::useVirtualTime(1700000000, 1000000000LL);
        ASSERT_TRUE(hostctl::installVendorTags({{kResultTag, TYPE_BYTE}}, kProvider, true, false));
        mExt = new CaptureExtension();
        // After construction, which reads the switch from the properties.
        android::setExtLogSwitch(1);
        mExt->setVendorId(kProvider);
        mExt->setPackage("com.example.app");
    }
    void TearDown() override {
        mExt.clear();
        android::setExtLogSwitch(0);
        hostctl::clearVendorTags();
        hostctl::useRealTime();
    }

    // A host stream of hardware buffers.
    static android::sp<hostctl::HostOutputStream> stream(int id, uint32_t width, uint32_t height,
                                                         bool locksFail = false) {
        android::sp<hostctl::HostOutputStream> s =
            new hostctl::HostOutputStream(id, width, height, 34);
        s->setBufferAllocator(hostctl::hardwareBufferAllocator(locksFail));
        return s;
    }

    // Runs both configuration hooks over `streams` for camera "0", configuring for the hardware
    // whatever is left in between; the ids that reached it.
    std::vector<int> configure(android::camera3::StreamSet& streams) {
        const android::CameraMetadata params;
        mExt->beforeConfigureStreamsLocked(params, kProvider, android::String8("0"), streams, 0);
        std::vector<int> hardware = streams.getStreamIds();
        for (int id : hardware) {
            streams.get(id)->startConfiguration();
            streams.get(id)->finishConfiguration();
        }
        mExt->afterConfigureStreamsLocked(params, kProvider, params, streams, android::String8("0"));
        return hardware;
    }

    void request() { mExt->afterSendRequestsBatch(nullptr, android::String8("0")); }

    size_t listed() const { return mExt->metaRecord(0).mMetaBufferList.size(); }

    // A result with a sensor timestamp and a stamp entry of `stampBytes` bytes.
    static android::CaptureResult result(uint32_t frame, size_t stampBytes = 32) {
        android::CaptureResult r;
        hostctl::setMetadataVendorId(&r.mMetadata, kProvider);
        const int64_t timestamp = 1000 + frame;
        r.mMetadata.update(ANDROID_SENSOR_TIMESTAMP, &timestamp, 1);
        if (stampBytes > 0) {
            uint32_t tag = 0;
            EXPECT_TRUE(hostctl::lookupTag(kResultTag, kProvider, &tag, nullptr));
            std::vector<uint8_t> dots(stampBytes, '.');
            r.mMetadata.update(tag, dots.data(), dots.size());
        }
        r.mResultExtras.frameNumber = static_cast<int64_t>(frame);
        return r;
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::LogCapture mLogs;
    android::sp<CaptureExtension> mExt;
};

}  // namespace capturetest
