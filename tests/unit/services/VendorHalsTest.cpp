// The maker's HALs and the thermal HAL: what they record, what they answer, and how they die.
#include <android/hardware/thermal/1.0/IThermal.h>
#include <gtest/gtest.h>
#include <vendor/vantu/hardware/cameraMDM/1.0/IVantuCameraMDM.h>
#include <vendor/vantu/hardware/cameraextension/1.0/ICameraExtensionService.h>
#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include <vector>

#include "hostctl/Services.h"

namespace {

using android::sp;
using android::wp;
using android::hardware::hidl_death_recipient;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hardware::thermal::V1_0::IThermal;
using android::hardware::thermal::V1_0::Temperature;
using android::hardware::thermal::V1_0::TemperatureType;
using android::hardware::thermal::V1_0::ThermalStatus;
using android::hardware::thermal::V1_0::ThermalStatusCode;
using android::hidl::base::V1_0::IBase;
using vendor::vantu::hardware::cameraextension::V1_0::ICameraExtensionService;
using vendor::vantu::hardware::cameraMDM::V1_0::IVantuCameraMDM;
using vendor::vantu::hardware::performance::V1_0::IPerformance;

struct Recipient : public hidl_death_recipient {
    void serviceDied(uint64_t cookie, const wp<IBase>& who) override {
        cookies.push_back(cookie);
        whoAlive = who.promote() != nullptr;
    }
    std::vector<uint64_t> cookies;
    bool whoAlive = false;
};

class VendorHalsTest : public ::testing::Test {
protected:
    void SetUp() override { hostctl::resetServices(); }
    void TearDown() override { hostctl::resetServices(); }
};

TEST_F(VendorHalsTest, EachHalRecordsItsArgumentsInCallOrder) {
    hostctl::ServicesConfig config;
    config.performance = config.cameraExtension = config.cameraMdm = true;
    ASSERT_TRUE(hostctl::startServices(config));
    EXPECT_EQ(0, IPerformance::getService()->setUxThread("136", "5000", "5001"));
    EXPECT_EQ(0, ICameraExtensionService::getService("cameraextensionservice")->preOpenCamera(1));
    EXPECT_EQ(0, IVantuCameraMDM::getService()->notifyCameraPackage("Torch"));

    auto calls = hostctl::serviceCalls();
    ASSERT_EQ(3u, calls.size());
    EXPECT_EQ("performance", calls[0].service);
    EXPECT_EQ((std::vector<std::string>{"136", "5000", "5001"}), calls[0].args);
    EXPECT_EQ("setUxThread(136, 5000, 5001)", calls[0].text());
    EXPECT_EQ("preOpenCamera(1)", calls[1].text());
    EXPECT_EQ("notifyCameraPackage(Torch)", calls[2].text());
    EXPECT_EQ(1u, hostctl::serviceCallsOf(hostctl::kCameraMdmHal).size());
    EXPECT_EQ(2u, hostctl::serviceCalls(1).size());
}

TEST_F(VendorHalsTest, AnswersAreSettableAndResetToZero) {
    ASSERT_TRUE(hostctl::startService(hostctl::kCameraMdmHal));
    hostctl::setServiceAnswer(hostctl::kCameraMdmHal, -5);
    EXPECT_EQ(-5, IVantuCameraMDM::getService()->notifyCameraPackage("com.a"));
    hostctl::resetServices();
    ASSERT_TRUE(hostctl::startService(hostctl::kCameraMdmHal));
    EXPECT_EQ(0, IVantuCameraMDM::getService()->notifyCameraPackage("com.a"));
}

TEST_F(VendorHalsTest, KilledServiceTellsRecipientsAndFailsLaterCalls) {
    ASSERT_TRUE(hostctl::startService(hostctl::kPerformanceHal));
    sp<IPerformance> perf = IPerformance::getService();
    sp<Recipient> recipient = new Recipient();
    ASSERT_TRUE(perf->linkToDeath(recipient, 17775));

    ASSERT_TRUE(hostctl::killService(hostctl::kPerformanceHal));
    EXPECT_EQ(std::vector<uint64_t>{17775}, recipient->cookies);
    EXPECT_TRUE(recipient->whoAlive);
    EXPECT_EQ(nullptr, IPerformance::getService());
    Return<int32_t> r = perf->setUxThread("8", "1", "2");
    EXPECT_TRUE(r.isDeadObject());
    EXPECT_FALSE(perf->linkToDeath(recipient, 1));
    EXPECT_FALSE(hostctl::killService(hostctl::kPerformanceHal));
    // The dead service heard nothing after its death.
    EXPECT_EQ(1u, hostctl::serviceCallsOf(hostctl::kPerformanceHal).size());
}

TEST_F(VendorHalsTest, UnlinkedOrDroppedRecipientIsNotTold) {
    ASSERT_TRUE(hostctl::startService(hostctl::kCameraMdmHal));
    sp<IVantuCameraMDM> mdm = IVantuCameraMDM::getService();
    sp<Recipient> unlinked = new Recipient();
    ASSERT_TRUE(mdm->linkToDeath(unlinked, 1));
    EXPECT_TRUE(mdm->unlinkToDeath(unlinked));
    // The service holds recipients weakly, as libhidl's proxies do.
    mdm->linkToDeath(new Recipient(), 2).isOk();
    ASSERT_TRUE(hostctl::killService(hostctl::kCameraMdmHal));
    EXPECT_TRUE(unlinked->cookies.empty());
}

TEST_F(VendorHalsTest, LinkToDeathAnswersAsConfigured) {
    ASSERT_TRUE(hostctl::startService(hostctl::kThermalHal));
    sp<IThermal> thermal = IThermal::getService();
    sp<Recipient> recipient = new Recipient();
    hostctl::setLinkToDeathAnswer(hostctl::kThermalHal, hostctl::LinkToDeathAnswer::kRefused);
    Return<bool> refused = thermal->linkToDeath(recipient, 17775);
    ASSERT_TRUE(refused.isOk());
    EXPECT_FALSE(refused);
    const auto transportError = hostctl::LinkToDeathAnswer::kTransportError;
    hostctl::setLinkToDeathAnswer(hostctl::kThermalHal, transportError);
    Return<bool> broken = thermal->linkToDeath(recipient, 17775);
    EXPECT_FALSE(broken.isOk());
    EXPECT_NE(std::string::npos, broken.description().find("FAILED_TRANSACTION"));
    // The setting holds for a service started later too.
    hostctl::stopService(hostctl::kThermalHal);
    ASSERT_TRUE(hostctl::startService(hostctl::kThermalHal));
    EXPECT_FALSE(IThermal::getService()->linkToDeath(recipient, 1).isOk());
    hostctl::killService(hostctl::kThermalHal);
    EXPECT_TRUE(recipient->cookies.empty());
}

TEST_F(VendorHalsTest, ThermalHalAnswersConfiguredTemperatures) {
    ASSERT_TRUE(hostctl::startService(hostctl::kThermalHal));
    hostctl::setThermalTemperatures({{3, "skin", 41.5f}, {2, "battery", 30.0f}});
    std::vector<Temperature> seen;
    ThermalStatusCode code = ThermalStatusCode::FAILURE;
    ASSERT_TRUE(IThermal::getService()
                    ->getTemperatures([&](const ThermalStatus& s, const hidl_vec<Temperature>& t) {
                        code = s.code;
                        seen = t;
                    })
                    .isOk());
    EXPECT_EQ(ThermalStatusCode::SUCCESS, code);
    ASSERT_EQ(2u, seen.size());
    EXPECT_EQ(TemperatureType::SKIN, seen[0].type);
    EXPECT_FLOAT_EQ(41.5f, seen[0].currentValue);
    EXPECT_EQ("battery", std::string(seen[1].name));
}

TEST_F(VendorHalsTest, UnknownServiceNameIsRefused) {
    std::string error;
    EXPECT_FALSE(hostctl::startService("radio", &error));
    EXPECT_NE(std::string::npos, error.find("radio"));
    EXPECT_FALSE(hostctl::killService("radio"));
    EXPECT_FALSE(hostctl::isServiceRunning("radio"));
}

}  // namespace
