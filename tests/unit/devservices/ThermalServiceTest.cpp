// The thermal clients: kairo's answers, its death, the thermal HAL's death link, and the
// sampling rule of the request path.
#include <gtest/gtest.h>
#include <math.h>

#include <limits>

#include "features/thermal/KairoServiceProxy.h"
#include "features/thermal/ThermalSampling.h"
#include "features/thermal/ThermalService.h"
#include "hostctl/Services.h"
#include "support/TestSupport.h"

namespace {

using android::ThermalService;
using android::vantu::sampleThermal;
using android::vantu::ThermalSampling;

constexpr uint32_t kLimit = 0xFFFFFFF0u;

// Both clients are process-wide singletons: each test ends with the services dead, so the
// clients drop what they hold and the next test starts from a fresh lookup.
class ThermalServiceTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::resetServices();
        hostctl::ServicesConfig config;
        config.thermalHal = true;
        config.kairo = true;
        config.kairoTemperature = 30.0f;
        ASSERT_TRUE(hostctl::startServices(config));
    }
    void TearDown() override {
        hostctl::killService(hostctl::kThermalHal);
        hostctl::killService(hostctl::kKairoService);
        hostctl::resetServices();
    }
    static ThermalService& thermal() { return ThermalService::getInstance(); }
};

TEST_F(ThermalServiceTest, OnlyPositiveReadingsReachTheSkinValue) {
    ASSERT_EQ(30, thermal().getSkinTemperature());
    for (float bad : {0.0f, -12.5f, NAN}) {
        hostctl::setKairoTemperature(bad);
        EXPECT_EQ(30, thermal().getSkinTemperature()) << bad;
    }
    hostctl::setKairoTransactError(android::DEAD_OBJECT);
    EXPECT_EQ(30, thermal().getSkinTemperature());
    hostctl::setKairoTransactError(android::OK);
    // Far out of range: saturates as the phone's conversion does.
    hostctl::setKairoTemperature(1e30f);
    EXPECT_EQ(std::numeric_limits<int32_t>::max(), thermal().getSkinTemperature());
    hostctl::setKairoTemperature(36.9f);
    std::vector<int> all;
    ASSERT_EQ(0, thermal().getAllTemperature(all));
    // CPU, GPU and battery are never read; the HAL is only probed.
    EXPECT_EQ((std::vector<int>{-1, -1, -1, 36}), all);
    EXPECT_EQ(-1, thermal().getCpuTemperature());
    EXPECT_TRUE(thermal().isKairoThermalSupport());
}

TEST_F(ThermalServiceTest, KairoDyingIsLookedUpAgain) {
    ASSERT_EQ(30, thermal().getSkinTemperature());
    ASSERT_TRUE(hostctl::killService(hostctl::kKairoService));
    testsupport::LogCapture log;
    EXPECT_EQ(30, thermal().getSkinTemperature());
    EXPECT_TRUE(log.contains("unable to get KairoService")) << log.dump();
    hostctl::setKairoTemperature(44.0f);
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    EXPECT_EQ(44, thermal().getSkinTemperature());
}

TEST_F(ThermalServiceTest, RefusedOrFailedDeathLinkDropsTheHal) {
    hostctl::killService(hostctl::kThermalHal);
    for (auto answer :
         {hostctl::LinkToDeathAnswer::kRefused, hostctl::LinkToDeathAnswer::kTransportError}) {
        hostctl::setLinkToDeathAnswer(hostctl::kThermalHal, answer);
        ASSERT_TRUE(hostctl::startService(hostctl::kThermalHal));
        testsupport::LogCapture log;
        std::vector<int> all;
        EXPECT_EQ(-1, thermal().getAllTemperature(all));
        EXPECT_EQ(-1, thermal().getBatteryTemperature());
        EXPECT_TRUE(log.contains(answer == hostctl::LinkToDeathAnswer::kRefused
                                     ? "Unable to link to Thermal Service death notifications"
                                     : "Transaction error in linking to Thermal Service death"))
            << log.dump();
        EXPECT_TRUE(log.contains("getAllTemperature failed status"));
        EXPECT_TRUE(log.contains("getBatteryTemperature failed status"));
        // Dropped each time, so each read probes again.
        EXPECT_EQ(2u, log.count("Thermal Service death"));
        hostctl::killService(hostctl::kThermalHal);
    }
}

TEST_F(ThermalServiceTest, SamplesEverySixtiethRequestOnBatteryOrSkinChange) {
    ThermalSampling sampling;
    android::vantu::Relaxed<uint32_t> counter{0};
    // Switch off: the caller's answer, and the counter still advances.
    EXPECT_FALSE(sampleThermal(sampling, counter, 60, kLimit, false, false));
    EXPECT_TRUE(sampleThermal(sampling, counter, 60, kLimit, false, true));
    EXPECT_EQ(2u, counter);
    EXPECT_FALSE(sampling.tagPending);

    counter = 60;
    EXPECT_TRUE(sampleThermal(sampling, counter, 60, kLimit, true, false));
    EXPECT_TRUE(sampling.tagPending);
    EXPECT_EQ(30, sampling.lastSent[3]);
    EXPECT_EQ(61u, counter);
    sampling.tagPending = false;
    // Between samples kairo is not asked.
    hostctl::clearServiceCalls();
    EXPECT_FALSE(sampleThermal(sampling, counter, 60, kLimit, true, false));
    EXPECT_TRUE(hostctl::serviceCallsOf(hostctl::kKairoService).empty());
    // Unchanged at the next sample: nothing to send.
    counter = 120;
    EXPECT_FALSE(sampleThermal(sampling, counter, 60, kLimit, true, false));
    EXPECT_FALSE(sampling.tagPending);
    EXPECT_EQ(1u, hostctl::serviceCallsOf(hostctl::kKairoService).size());
    // A skin change is sent.
    hostctl::setKairoTemperature(31.0f);
    counter = 180;
    EXPECT_TRUE(sampleThermal(sampling, counter, 60, kLimit, true, false));
    EXPECT_EQ(31, sampling.lastSent[3]);
}

TEST_F(ThermalServiceTest, CounterRestartsAtTheLimit) {
    ThermalSampling sampling;
    android::vantu::Relaxed<uint32_t> counter{kLimit};
    // Restarts at 0, which samples.
    EXPECT_TRUE(sampleThermal(sampling, counter, 60, kLimit, true, false));
    EXPECT_EQ(1u, counter);
    counter = 0xFFFFFFFFu;
    EXPECT_FALSE(sampleThermal(sampling, counter, 60, kLimit, true, false));
    EXPECT_EQ(1u, counter);
}

}  // namespace
