// The stream-size cutter and the range fixes of the characteristics query, on tables a HAL might
// really hand over, well formed or not.
#include <gtest/gtest.h>
#include <string.h>
#include <system/camera_metadata.h>

#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"

namespace {

using namespace android;

constexpr uint32_t kStreams = ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS;
constexpr uint32_t kHfr = ANDROID_CONTROL_AVAILABLE_HIGH_SPEED_VIDEO_CONFIGURATIONS;
constexpr uint32_t kExposure = ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE;

std::vector<int32_t> int32s(const CameraMetadata& md, uint32_t tag) {
    const camera_metadata_ro_entry e = md.find(tag);
    return std::vector<int32_t>(e.data.i32, e.data.i32 + e.count);
}

std::vector<int64_t> int64s(const CameraMetadata& md, uint32_t tag) {
    const camera_metadata_ro_entry e = md.find(tag);
    return std::vector<int64_t>(e.data.i64, e.data.i64 + e.count);
}

class SizeCutter : public ::testing::Test {
protected:
    void SetUp() override { hostctl::clearProperties(); }
    void TearDown() override { hostctl::clearProperties(); }

    sp<CameraServiceExtImpl> build(const std::string& config = "") {
        if (!config.empty()) mRoot.writeFile(kFwkConfigPath, config);
        return new CameraServiceExtImpl();
    }
    static CameraMetadata table(const std::vector<int32_t>& values) {
        CameraMetadata md;
        md.update(kStreams, values.data(), values.size());
        return md;
    }

    testsupport::TempDeviceRoot mRoot;
};

// Which formats are cut, with and without the picture limit, is played by the
// characteristics_mtk_third_party scenario.

TEST_F(SizeCutter, BoundHoldsPerDimensionNotByArea) {
    sp<CameraServiceExtImpl> ext = build();
    // 4000 x 3000 is taller than the bound and 4097 x 100, far smaller in area, is wider.
    CameraMetadata md = table({35, 4000, 3000, 0, 35, 4096, 2304, 0, 35, 4097, 100, 0});
    ext->limitSize(4096, 2304, &md, false);
    EXPECT_EQ((std::vector<int32_t>{35, 4096, 2304, 0}), int32s(md, kStreams));
}

TEST_F(SizeCutter, EmptyOrMissingTableStaysAsItIs) {
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata missing;
    ext->limitSize(1920, 1080, &missing, true);
    EXPECT_FALSE(missing.exists(kStreams));

    CameraMetadata empty = table({});
    ext->limitSize(1920, 1080, &empty, true);
    EXPECT_TRUE(empty.exists(kStreams));
    EXPECT_EQ(0u, empty.find(kStreams).count);

    ext->limitSize(1920, 1080, nullptr, true);
}

TEST_F(SizeCutter, ValuesAfterTheLastWholeEntryAreDroppedAndLogged) {
    sp<CameraServiceExtImpl> ext = build();
    // A short table of 7 values: one whole entry and three stray values.
    CameraMetadata md = table({35, 4000, 3000, 0, 35, 640, 480});
    testsupport::LogCapture logs;
    ext->limitSize(1920, 1080, &md, false);
    EXPECT_EQ(0u, md.find(kStreams).count);
    EXPECT_TRUE(logs.contains("are not whole entries")) << logs.dump();

    CameraMetadata tiny = table({35, 640});
    ext->limitSize(1920, 1080, &tiny, false);
    EXPECT_EQ(0u, tiny.find(kStreams).count);
}

// A packet from a faulty provider that holds the stream table twice, the second copy as int64
// values: the second entry is added under an int64 tag and then given the table's tag in its
// record (the wire layout: the records start at the offset the header keeps at byte 20, 16 bytes
// each, the tag first).
CameraMetadata tableTwice(const std::vector<int32_t>& first, size_t secondCount) {
    camera_metadata_t* packet = allocate_camera_metadata(4, 4096);
    add_camera_metadata_entry(packet, kStreams, first.data(), first.size());
    const std::vector<int64_t> second(secondCount, 4000);
    add_camera_metadata_entry(packet, ANDROID_SENSOR_INFO_MAX_FRAME_DURATION, second.data(),
                              second.size());
    uint32_t entriesStart = 0;
    memcpy(&entriesStart, reinterpret_cast<uint8_t*>(packet) + 20, sizeof(entriesStart));
    memcpy(reinterpret_cast<uint8_t*>(packet) + entriesStart + 16, &kStreams, sizeof(kStreams));
    return CameraMetadata(packet);
}

TEST_F(SizeCutter, TableGivenTwiceEndsAsOneTableOfTheKeptEntries) {
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata md = tableTwice({35, 4000, 3000, 0, 35, 640, 480, 0}, 64);
    testsupport::LogCapture logs;
    ext->limitSize(1920, 1080, &md, false);
    EXPECT_EQ(TYPE_INT32, md.find(kStreams).type);
    EXPECT_EQ((std::vector<int32_t>{35, 640, 480, 0}), int32s(md, kStreams));
    EXPECT_TRUE(logs.contains("stream configurations given 2 times")) << logs.dump();
    md.erase(kStreams);
    EXPECT_FALSE(md.exists(kStreams));
}

TEST_F(SizeCutter, NegativeSizesAreKeptAndNegativeBoundsCutEveryCutFormat) {
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata md = table({35, -1, -1, 0, 33, 640, 480, 0});
    ext->limitSize(1920, 1080, &md, true);
    EXPECT_EQ((std::vector<int32_t>{35, -1, -1, 0, 33, 640, 480, 0}), int32s(md, kStreams));
    // Every entry cut leaves the table, empty.
    ext->limitSize(-2, 1080, &md, true);
    EXPECT_TRUE(md.exists(kStreams));
    EXPECT_EQ(0u, md.find(kStreams).count);
}

TEST_F(SizeCutter, ResolutionSwitchOffLeavesTheTable) {
    sp<CameraServiceExtImpl> ext = build(R"({"default": {"feature_resolution_enable": false}})");
    CameraMetadata md = table({35, 4000, 3000, 0});
    ext->limitSize(1920, 1080, &md, true);
    EXPECT_EQ((std::vector<int32_t>{35, 4000, 3000, 0}), int32s(md, kStreams));
}

TEST_F(SizeCutter, KeptAndSkippedEntriesAreLoggedInTheirOwnWords) {
    hostctl::setProperty("persist.sys.assert.panic", "true");
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata md = table({35, 4000, 3000, 0, 33, 640, 480, 0});
    testsupport::LogCapture logs;
    ext->limitSize(1920, 1080, &md, false);
    EXPECT_TRUE(logs.contains("limitSize, skip item isInput:0, w*H:4000*3000")) << logs.dump();
    EXPECT_TRUE(logs.contains("limitSize, add,item,w*H*forma*isimput: 640*480*33*0"));
    EXPECT_TRUE(logs.contains("limitSize, limit 3rd app size for 1920*1080"));
}

TEST_F(SizeCutter, HfrTableOfBrokenLengthIsEditedOnlyInWholeEntries) {
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata md;
    const std::vector<int32_t> hfr = {1920, 1080, 120, 120, 1, 640, 480, 240, 1};
    md.update(kHfr, hfr.data(), hfr.size());
    ext->updateHFRBatchSizeForCts(&md);
    EXPECT_EQ((std::vector<int32_t>{1920, 1080, 120, 120, 2, 640, 480, 240, 1}), int32s(md, kHfr));
}

TEST_F(SizeCutter, HfrTableLongerThanTheWorkingCopyIsLeftAlone) {
    sp<CameraServiceExtImpl> ext = build();
    std::vector<int32_t> hfr;
    while (hfr.size() < 515) hfr.insert(hfr.end(), {1920, 1080, 120, 120, 1});
    CameraMetadata md;
    md.update(kHfr, hfr.data(), hfr.size());
    testsupport::LogCapture logs;
    ext->updateHFRBatchSizeForCts(&md);
    EXPECT_EQ(hfr, int32s(md, kHfr));
    EXPECT_TRUE(logs.contains("high speed configurations malformed")) << logs.dump();

    // Exactly 512 values still fit.
    hfr.resize(510);
    hfr.insert(hfr.end(), {0, 0});
    md.update(kHfr, hfr.data(), hfr.size());
    ext->updateHFRBatchSizeForCts(&md);
    EXPECT_EQ(2, int32s(md, kHfr)[4]);
}

TEST_F(SizeCutter, ExposureRangeOfOneValueIsLeftAndLogged) {
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata md;
    const int64_t one = 30000000000;
    md.update(kExposure, &one, 1);
    testsupport::LogCapture logs;
    ext->limitExposureTimeRangeForIts(&md);
    EXPECT_EQ((std::vector<int64_t>{30000000000}), int64s(md, kExposure));
    EXPECT_TRUE(logs.contains("exposure time range malformed")) << logs.dump();

    CameraMetadata none;
    ext->limitExposureTimeRangeForIts(&none);
    EXPECT_FALSE(none.exists(kExposure));
}

TEST_F(SizeCutter, HoliKeepsTheExposureRangeOnlyForTheTestSuite) {
    hostctl::setProperty("ro.board.platform", "holi");
    sp<CameraServiceExtImpl> ext = build();
    CameraMetadata md;
    const int64_t range[2] = {13000, 30000000000};
    md.update(kExposure, range, 2);
    ext->setAPKPackageName(String16("android.camera.cts"));
    ext->limitExposureTimeRangeForIts(&md);
    EXPECT_EQ((std::vector<int64_t>{13000, 30000000000}), int64s(md, kExposure));
    ext->setAPKPackageName(String16("com.android.cts.verifier"));
    ext->limitExposureTimeRangeForIts(&md);
    EXPECT_EQ((std::vector<int64_t>{100000, 2000000000}), int64s(md, kExposure));
}

}  // namespace
