// The API1 parameter sets and the parameter state's conversions.
#include <api1/client2/Parameters.h>
#include <camera/CameraParameters.h>
#include <camera/CameraParameters2.h>
#include <gtest/gtest.h>

namespace {

using android::CameraParameters;
using android::CameraParameters2;
using android::Size;
using android::String8;
using android::Vector;
using android::camera2::Parameters;

TEST(CameraParameters, FlattenListsKeysSortedAndUnflattenReadsThemBack) {
    CameraParameters params;
    params.setPreviewSize(1920, 1080);
    params.set("b-key", "x");
    params.set(CameraParameters::KEY_JPEG_QUALITY, 90);
    EXPECT_EQ(String8("b-key=x;jpeg-quality=90;preview-size=1920x1080"), params.flatten());

    CameraParameters read(params.flatten());
    int width = 0, height = 0;
    read.getPreviewSize(&width, &height);
    EXPECT_EQ(1920, width);
    EXPECT_EQ(1080, height);
    EXPECT_EQ(90, read.getInt(CameraParameters::KEY_JPEG_QUALITY));
}

TEST(CameraParameters, KeysAndValuesThatWouldBreakTheFlatFormAreRefused) {
    CameraParameters params;
    params.set("a;b", "1");
    params.set("c", "x=y");
    params.set(nullptr, "1");
    params.set("d", nullptr);
    EXPECT_EQ(String8(""), params.flatten());
}

TEST(CameraParameters, MissingValuesReadAsNullAndMinusOne) {
    CameraParameters params;
    params.set("empty", "");
    EXPECT_EQ(nullptr, params.get("empty"));
    EXPECT_EQ(nullptr, params.get("absent"));
    EXPECT_EQ(-1, params.getInt("absent"));
    EXPECT_EQ(-1.0f, params.getFloat("absent"));
    int width = 0, height = 0;
    params.getPictureSize(&width, &height);
    EXPECT_EQ(-1, width);
    params.getPictureSize(nullptr, nullptr);  // ignored
    params.set(CameraParameters::KEY_PICTURE_SIZE, "4000");
    params.getPictureSize(&width, &height);
    EXPECT_EQ(-1, height);
}

TEST(CameraParameters, SizeListStopsAtTheFirstMalformedEntry) {
    CameraParameters params;
    params.set(CameraParameters::KEY_SUPPORTED_PREVIEW_SIZES, "1920x1080,1280x720,bad,640x480");
    Vector<Size> sizes;
    params.getSupportedPreviewSizes(sizes);
    ASSERT_EQ(2u, sizes.size());
    EXPECT_EQ(1280, sizes[1].width);
    EXPECT_EQ(720, sizes[1].height);
}

TEST(CameraParameters, FpsRangeIsACommaPair) {
    CameraParameters params;
    params.set(CameraParameters::KEY_PREVIEW_FPS_RANGE, "15000,30000");
    int low = 0, high = 0;
    params.getPreviewFpsRange(&low, &high);
    EXPECT_EQ(15000, low);
    EXPECT_EQ(30000, high);
}

TEST(CameraParameters2, FlattenKeepsTheOrderKeysWereFirstSet) {
    CameraParameters2 params;
    params.set("zoom", 2);
    params.setPreviewFpsRange(10000, 30000);
    params.set("zoom", 3);  // keeps its place
    EXPECT_EQ(String8("zoom=3;preview-fps-range=10000,30000"), params.flatten());
    int order = 0;
    ASSERT_EQ(android::OK,
              params.compareSetOrder("zoom", CameraParameters::KEY_PREVIEW_FPS_RANGE, &order));
    EXPECT_LT(order, 0);
    EXPECT_EQ(android::NAME_NOT_FOUND, params.compareSetOrder("zoom", "absent", &order));
    EXPECT_EQ(android::BAD_VALUE, params.compareSetOrder("zoom", "zoom", nullptr));
}

TEST(CameraParameters2, UnflattenKeepsTheTextsOrderAndRemoveDropsAKey) {
    CameraParameters2 params(String8("video-size=1280x720;picture-size=4000x3000;x=1"));
    params.remove("picture-size");
    EXPECT_EQ(String8("video-size=1280x720;x=1"), params.flatten());
    int width = 0, height = 0;
    params.getVideoSize(&width, &height);
    EXPECT_EQ(1280, width);
    EXPECT_EQ(720, height);
}

TEST(Parameters, FlashAndFocusModesConvertBothWays) {
    EXPECT_EQ(Parameters::FLASH_MODE_TORCH, Parameters::flashModeStringToEnum("torch"));
    EXPECT_EQ(Parameters::FLASH_MODE_OFF, Parameters::flashModeStringToEnum(nullptr));
    EXPECT_EQ(Parameters::FLASH_MODE_INVALID, Parameters::flashModeStringToEnum("strobe"));
    EXPECT_STREQ("red-eye", Parameters::flashModeEnumToString(Parameters::FLASH_MODE_RED_EYE));
    EXPECT_EQ(Parameters::FOCUS_MODE_CONTINUOUS_PICTURE,
              Parameters::focusModeStringToEnum("continuous-picture"));
    EXPECT_EQ(Parameters::FOCUS_MODE_INVALID, Parameters::focusModeStringToEnum(nullptr));
    EXPECT_STREQ("fixed", Parameters::focusModeEnumToString(Parameters::FOCUS_MODE_FIXED));
    EXPECT_STREQ("unknown", Parameters::focusModeEnumToString(Parameters::FOCUS_MODE_INVALID));
}

TEST(Parameters, StateNamesAndBoolStrings) {
    EXPECT_STREQ("DISCONNECTED", Parameters::getStateName(Parameters(1, 1).state));
    EXPECT_FALSE(Parameters::boolFromString(nullptr));
    EXPECT_TRUE(Parameters::boolFromString("true"));
}

}  // namespace
