// The key table is the one list the tools check files against, and the example device is a
// consistent device: its properties load, and its configuration answers what it says.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <set>
#include <string>

#include "hostctl/HostEnv.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"
#include "utils/ConfigKeys.h"
#include "utils/JsonParser.h"

namespace {

using android::vantu::ConfigKey;
using android::vantu::ConfigType;

TEST(ConfigKeys, NamesAreUniqueAndFoundExactly) {
    std::set<std::string> names;
    for (const ConfigKey& key : android::vantu::configKeys()) {
        EXPECT_TRUE(names.insert(key.name).second) << "listed twice: " << key.name;
        EXPECT_EQ(&key, android::vantu::findConfigKey(key.name));
        ASSERT_NE(nullptr, key.usedBy);
        EXPECT_NE('\0', key.usedBy[0]) << key.name;
    }
    EXPECT_EQ(nullptr, android::vantu::findConfigKey("Feature_cts_enable"));
    EXPECT_EQ(nullptr, android::vantu::findConfigKey("feature_cts_enable "));
    EXPECT_EQ(nullptr, android::vantu::findConfigKey(""));
}

// A default the tools cannot turn into the getter's argument would make explain disagree with
// the library.
TEST(ConfigKeys, ConstantDefaultsAreValuesOfTheKeysType) {
    for (const ConfigKey& key : android::vantu::configKeys()) {
        if (key.defaultValue == nullptr) continue;
        const std::string d = key.defaultValue;
        switch (key.type) {
            case ConfigType::Bool:
                EXPECT_TRUE(d == "true" || d == "false") << key.name << " = " << d;
                break;
            case ConfigType::Int: {
                char* end = nullptr;
                strtol(d.c_str(), &end, 10);
                EXPECT_TRUE(!d.empty() && *end == '\0') << key.name << " = " << d;
                break;
            }
            default:
                ADD_FAILURE() << key.name << ": only scalar keys have a constant default";
        }
    }
}

class ExampleDevice : public ::testing::Test {
protected:
    void SetUp() override { hostctl::clearProperties(); }
    void TearDown() override {
        hostctl::clearProperties();
        hostctl::setDeviceRoot("/");
    }
    static std::string dir() { return std::string(CAMEXT_SOURCE_DIR) + "/examples/device"; }
};

TEST_F(ExampleDevice, AQualcommKonaPhoneWhoseConfigurationLoadsCleanly) {
    std::string error;
    ASSERT_TRUE(hostctl::loadPropertyFile(dir() + "/build.prop", &error)) << error;
    const auto props = hostctl::properties();
    EXPECT_EQ("kona", props.at("ro.board.platform"));
    EXPECT_EQ("qcom", props.at("ro.hardware"));
    EXPECT_EQ("false", props.at("persist.sys.assert.panic"));
    const std::string systemCamera = props.at("ro.vantu.system.camera.name");
    EXPECT_FALSE(systemCamera.empty());
    hostctl::setDeviceRoot(dir());
    testsupport::LogCapture log;
    android::sp<android::JsonParser> parser =
        new android::JsonParser("odm/etc/camera/fwk_config.json");
    EXPECT_TRUE(log.lines().empty()) << log.dump();
    for (const char* app : {"default", "com.whatsapp", "com.tencent.mm", "com.snapchat.android",
                            "android.camera.cts"}) {
        EXPECT_TRUE(parser->hasSection(app)) << app;
    }
    EXPECT_TRUE(parser->hasSection(systemCamera.c_str())) << "the system camera has a section";
    EXPECT_EQ(1920, parser->getInt("thirdPartyAppWidthLimitForCam0", "com.whatsapp", 0));
    EXPECT_EQ(4000, parser->getInt("thirdPartyAppWidthLimitForCam0", "com.other.app", 0));
    EXPECT_FALSE(parser->getBool("feature_evication_enable", "android.camera.cts", true));
    EXPECT_TRUE(log.lines().empty()) << log.dump();
}

}  // namespace
