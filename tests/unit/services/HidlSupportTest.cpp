// The libhidl pieces: the service registry behind getService, the casts between interfaces,
// and Return's rule that a transport failure must be looked at.
#include <gtest/gtest.h>
#include <vendor/vantu/hardware/cameraextension/1.0/ICameraExtensionService.h>
#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include "hostctl/Services.h"

namespace {

using android::sp;
using android::hardware::Return;
using android::hardware::Status;
using android::hidl::base::V1_0::IBase;
using vendor::vantu::hardware::cameraextension::V1_0::ICameraExtensionService;
using vendor::vantu::hardware::performance::V1_0::IPerformance;

class HidlRegistryTest : public ::testing::Test {
protected:
    void TearDown() override { hostctl::resetServices(); }
};

TEST_F(HidlRegistryTest, ServiceIsAbsentUntilStartedAndAfterStop) {
    EXPECT_EQ(nullptr, IPerformance::getService());
    EXPECT_EQ(nullptr, IPerformance::tryGetService("default"));
    ASSERT_TRUE(hostctl::startService(hostctl::kPerformanceHal));
    EXPECT_NE(nullptr, IPerformance::getService());
    EXPECT_NE(nullptr, IPerformance::tryGetService(std::string("default")));
    hostctl::stopService(hostctl::kPerformanceHal);
    EXPECT_EQ(nullptr, IPerformance::getService("default"));
}

TEST_F(HidlRegistryTest, LookupIsByInstanceName) {
    ASSERT_TRUE(hostctl::startService(hostctl::kCameraExtensionHal));
    EXPECT_EQ(nullptr, ICameraExtensionService::getService("default"));
    EXPECT_NE(nullptr, ICameraExtensionService::getService("cameraextensionservice"));
    EXPECT_EQ(nullptr, ICameraExtensionService::getService(static_cast<const char*>(nullptr)));
}

TEST_F(HidlRegistryTest, CastToAnotherInterfaceIsNull) {
    ASSERT_TRUE(hostctl::startService(hostctl::kPerformanceHal));
    sp<IBase> base = IPerformance::getService();
    Return<sp<ICameraExtensionService>> other = ICameraExtensionService::castFrom(base);
    ASSERT_TRUE(other.isOk());
    EXPECT_EQ(nullptr, static_cast<sp<ICameraExtensionService>>(other));
    Return<sp<IPerformance>> same = IPerformance::castFrom(base);
    EXPECT_EQ(base.get(), static_cast<sp<IPerformance>>(same).get());
}

TEST(HidlReturnTest, UncheckedTransportFailureAborts) {
    EXPECT_DEATH({ Return<int32_t> r(Status::fromStatusT(android::DEAD_OBJECT)); },
                 "Failed HIDL return status not checked");
    EXPECT_DEATH(
        {
            Return<int32_t> r(Status::fromStatusT(android::DEAD_OBJECT));
            r.isDeadObject();
            int32_t v = r;
            (void)v;
        },
        "Attempted to retrieve value from failed HIDL call");
}

TEST(HidlReturnTest, CheckedFailureGivesTheDefault) {
    Return<int32_t> r(Status::fromStatusT(android::DEAD_OBJECT));
    EXPECT_TRUE(r.isDeadObject());
    EXPECT_EQ(-1, r.withDefault(-1));
    EXPECT_NE(std::string::npos, r.description().find("DEAD_OBJECT"));
}

}  // namespace
