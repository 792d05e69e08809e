// The motor manager's message on the wire and its third-party size limits, from the downloaded
// list and from the feature configuration.
#include <gtest/gtest.h>

#include <string>

#include "features/motor/MotorManager.h"
#include "hostctl/Binder.h"
#include "hostctl/Services.h"
#include "support/TestSupport.h"
#include "utils/JsonParser.h"

namespace android {
namespace {

// Own socket names for this process, so parallel test processes never meet.
[[maybe_unused]] const bool gIsolated = hostctl::isolateAbstractSockets();

constexpr char kListPath[] = "/data/.camera/camera_hardware_motorctrl_applist";

std::string list(const std::vector<std::string>& names) {
    std::string text = "<filter-conf><version>1</version>";
    int index = 0;
    for (const auto& n : names) {
        text += "<PackageFilterList><PackageIndex>" + std::to_string(++index) +
                "</PackageIndex><PackageName>" + n + "</PackageName></PackageFilterList>";
    }
    return text + "</filter-conf>";
}

class MotorManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::resetServices();
        motor = MotorManager::getInstance(nullptr);
        ASSERT_NE(motor, nullptr);
        motor->resetThirdAppParameters();
    }
    void TearDown() override {
        hostctl::resetServices();
        hostctl::resetCallingIdentity();
    }

    testsupport::TempDeviceRoot root;
    sp<MotorManager> motor;
};

// The message of an ordinary open on the wire: motor_connect_and_torch.json.
TEST_F(MotorManagerTest, ANullPackageAndAHugeOneStayWithinTheMessageBuffer) {
    ASSERT_TRUE(hostctl::startService(hostctl::kMotorService));
    hostctl::setCallingIdentity(10100, 1234);
    motor->sendSocketToMotorServer(MotorManager::CMD_TORCH_OFF, nullptr, 0);
    const std::string huge(5000, 'p');
    motor->sendSocketToMotorServer(MotorManager::CMD_TORCH_ON, huge.c_str(), 0);
    const auto messages = hostctl::motorMessages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].bytes, "4,1234,,0");
    EXPECT_EQ(messages[1].bytes.size(), 1023u);
}

TEST_F(MotorManagerTest, ListEntriesSetTheLimitsOfTheirCamera) {
    root.writeFile(kListPath, list({"com.limit.app.main.preview", "com.limit.app.sub.Texture",
                                    "com.limit.app.level1", "com.other.app.sub.preview"}));
    ASSERT_TRUE(motor->parseMotorCtrlList());
    motor->checkIfLimitSize(String8("com.limit.app"), 0);
    EXPECT_TRUE(motor->isMainPreviewLimited());
    EXPECT_FALSE(motor->isSubTextureLimited());
    EXPECT_EQ(motor->getLimitThirdAppSizeLevel(), 1);
    motor->checkIfLimitSize(String8("com.limit.app"), 1);
    EXPECT_TRUE(motor->isSubTextureLimited());
    EXPECT_FALSE(motor->isSubPreviewLimited());

    // The sub preview limit outlives the app on purpose.
    motor->checkIfLimitSize(String8("com.other.app"), 1);
    EXPECT_TRUE(motor->isSubPreviewLimited());
    motor->resetThirdAppParameters();
    EXPECT_FALSE(motor->isMainPreviewLimited());
    EXPECT_FALSE(motor->isSubTextureLimited());
    EXPECT_EQ(motor->getLimitThirdAppSizeLevel(), 0);
    EXPECT_TRUE(motor->isSubPreviewLimited());
}

TEST_F(MotorManagerTest, WithoutAListTheConfigurationMarkersApply) {
    root.writeFile(kListPath, "not xml");
    EXPECT_FALSE(motor->parseMotorCtrlList());
    EXPECT_TRUE(motor->motorCtrlList().empty());
    root.writeFile("odm/etc/camera/fwk_config.json",
                   "{\"default\": {\"limit_3rd_app_size\": [\"com.cfg.app.main.preview\"],"
                   " \"limit_3rd_app_size_byLevel\": [\"com.cfg.app.level1\"]}}");
    initJsonParser("odm/etc/camera/fwk_config.json");
    testsupport::LogCapture log;
    motor->checkIfLimitSize(String8("com.cfg.app"), 0);
    EXPECT_TRUE(motor->isMainPreviewLimited());
    EXPECT_EQ(motor->getLimitThirdAppSizeLevel(), 1);
    motor->resetThirdAppParameters();
    motor->checkIfLimitSize(String8("com.cfg.other"), 0);
    EXPECT_FALSE(motor->isMainPreviewLimited());
    EXPECT_EQ(motor->getLimitThirdAppSizeLevel(), 0);
    initJsonParser("odm/etc/camera/absent.json");
}

}  // namespace
}  // namespace android
