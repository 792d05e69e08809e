// Checks of the hook contract that every chip class must keep, whatever it overrides.
#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "ExtFactory.h"
#include "SpineTestSupport.h"
#include "hostctl/Properties.h"
#include "platform/CameraServiceExtImpl_mtk.h"
#include "platform/CameraServiceExtImpl_qcom.h"
#include "support/TestSupport.h"

namespace {

using namespace android;

class ChipContract : public ::testing::TestWithParam<BoardEntry> {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        mRoot.writeFile(kFwkConfigPath, spinetest::kAllFeaturesOff);
        mExt = GetParam().create();
    }
    void TearDown() override { hostctl::clearProperties(); }

    bool isMediaTek() const { return strncmp(GetParam().platform, "mt", 2) == 0; }

    testsupport::TempDeviceRoot mRoot;
    sp<CameraServiceExtImpl> mExt;
};

// Which class each board builds is checked through the loaded library (LoadTest.cpp).
TEST_P(ChipContract, DerivesFromItsFamily) {
    bool mtk = dynamic_cast<CameraServiceExtImpl_mtk*>(mExt.get()) != nullptr;
    bool qcom = dynamic_cast<CameraServiceExtImpl_qcom*>(mExt.get()) != nullptr;
    EXPECT_EQ(isMediaTek(), mtk);
    EXPECT_EQ(!isMediaTek(), qcom);
}

TEST_P(ChipContract, ForwardingHooksAreNeutralWithoutManagers) {
    spinetest::expectNeutralForwarders(*mExt);
}

TEST_P(ChipContract, OnlyTheVirtualProviderIsVirtual) {
    EXPECT_TRUE(mExt->isVirtualCameraProvider("virtual/0"));
    EXPECT_FALSE(mExt->isVirtualCameraProvider("virtual/01"));
    EXPECT_FALSE(mExt->isVirtualCameraProvider("virtual/1"));
    EXPECT_FALSE(mExt->isVirtualCameraProvider("legacy/0"));
}

// Codes outside the library's range belong to the server.
TEST_P(ChipContract, ForeignTransactionCodesAreRefused) {
    Parcel data, reply;
    EXPECT_EQ(INVALID_OPERATION, mExt->onTransact(10000, data, &reply, 0));
    EXPECT_EQ(INVALID_OPERATION, mExt->onTransact(10015, data, &reply, 0));
    EXPECT_EQ(0u, reply.dataSize());
}

std::vector<BoardEntry> allChips() {
    return std::vector<BoardEntry>(boardTable(), boardTable() + boardTableSize());
}

INSTANTIATE_TEST_SUITE_P(AllChips, ChipContract, ::testing::ValuesIn(allChips()),
                         [](const ::testing::TestParamInfo<BoardEntry>& info) {
                             return std::string(info.param.className);
                         });

// The MediaTek family reads its temperature switch when it is built.
class MediaTekFamily : public ::testing::Test {
protected:
    class Probe : public CameraServiceExtImpl_mtk {
    public:
        using CameraServiceExtImpl_mtk::mGetTemperatureEnable;
    };

    testsupport::TempDeviceRoot mRoot;
};

TEST_F(MediaTekFamily, TemperatureSwitchComesFromConfiguration) {
    {
        sp<Probe> probe = new Probe();
        EXPECT_FALSE(probe->mGetTemperatureEnable);
    }
    mRoot.writeFile(kFwkConfigPath, R"({"default": {"feature_get_temperature_enable": true}})");
    sp<Probe> probe = new Probe();
    EXPECT_TRUE(probe->mGetTemperatureEnable);
}

}  // namespace
