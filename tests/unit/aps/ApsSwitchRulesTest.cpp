// The text rules of the APS switch: which activity the per-app property names, and the bound on
// the per-app property name. The property value is searched as text, never parsed, so malformed
// values must answer a default without reading past the buffer.
#include <gtest/gtest.h>

#include <string>

#include "features/aps/APSInterface.h"
#include "support/TestSupport.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace {

using android::APSInterface;

constexpr const char kWeChat[] = "com.tencent.mm";
constexpr const char kValue[] =
    R"({"activityName":"VideoActivity","fbParam":"100,0,0,0,0,0,0,0,100,0,0","isOpen":"1"})";

class ApsSwitchRulesTest : public ::testing::Test {
protected:
    void SetUp() override {
        mRoot.writeFile("odm/etc/camera/fwk_config.json",
                        R"({"default": {}, "com.tencent.mm": {"app_disable_fb_activity":
                            ["com.tencent.mm.plugin.voip.ui.VideoActivity"]}})");
        android::initJsonParser("odm/etc/camera/fwk_config.json");
        android::setExtLogSwitch(1);
    }
    void TearDown() override {
        android::setExtLogSwitch(0);
        android::initJsonParser("odm/etc/camera/none.json");
    }

    static bool supports(const char* activity, const char* value,
                         const char* package = "com.example.app") {
        return APSInterface::isSupportActivity(nullptr, package, activity, value);
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::LogCapture mLog;
};

TEST_F(ApsSwitchRulesTest, ActivityMustContainTheNamedToken) {
    EXPECT_TRUE(supports("com.example.app.VideoActivity", kValue));
    EXPECT_FALSE(supports("com.example.app.MainActivity", kValue));
    EXPECT_TRUE(mLog.contains(
        "isSupportActivity ActivityName: com.example.app.MainActivity does not need APS "
        "Process"));
}

TEST_F(ApsSwitchRulesTest, EmptyOrMissingActivityMemberAllowsEveryActivity) {
    EXPECT_TRUE(supports("Any", R"({"activityName":"","fbParam":"1","isOpen":"1"})"));
    EXPECT_TRUE(supports("Any", R"({"fbParam":"1","isOpen":"1"})"));
    EXPECT_TRUE(supports("Any", R"({"activityName":"X","isOpen":"1"})"));
    // "fbParam" before "activityName": no text lies between them.
    EXPECT_TRUE(supports("Any", R"({"fbParam":"1","activityName":"X"})"));
    EXPECT_TRUE(supports("Any", nullptr));
    EXPECT_TRUE(supports("Any", "-1"));
}

TEST_F(ApsSwitchRulesTest, ValueWithoutQuotesOrColonsTakesTheWholeMember) {
    EXPECT_TRUE(supports("a.FooActivity", "activityNameFooActivityfbParam"));
    EXPECT_FALSE(supports("a.BarActivity", "activityNameFooActivityfbParam"));
    // No closing member: nothing names an activity.
    EXPECT_TRUE(supports("a.BarActivity", R"({"activityName":"FooActivity)"));
    // Only the first token counts.
    EXPECT_TRUE(supports("a.Foo", R"({"activityName":"Foo,Bar","fbParam":""})"));
}

TEST_F(ApsSwitchRulesTest, LongActivityMemberIsCutAt91Characters) {
    const std::string token(200, 'A');
    const std::string value = "{\"activityName\":\"" + token + "\",\"fbParam\":\"1\"}";
    // The member keeps 91 characters: the three of ":" and 88 of the name.
    const std::string activity = "x." + std::string(89, 'A');
    EXPECT_TRUE(supports(activity.c_str(), value.c_str()));
    EXPECT_FALSE(supports("x.A", value.c_str()));
}

TEST_F(ApsSwitchRulesTest, VeryLongActivityNameIsSearchedSafely) {
    const std::string activity(4000, 'V');
    EXPECT_FALSE(supports(activity.c_str(), kValue));
    const std::string matching = activity + "VideoActivity";
    EXPECT_TRUE(supports(matching.c_str(), kValue));
}

TEST_F(ApsSwitchRulesTest, DisabledActivityOfThePackageIsRefused) {
    EXPECT_FALSE(supports("com.tencent.mm.plugin.voip.ui.VideoActivity", kValue, kWeChat));
    EXPECT_TRUE(mLog.contains(
        "disable fb activity white list: com.tencent.mm.plugin.voip.ui.VideoActivity"));
    // Another package's list does not apply.
    EXPECT_TRUE(supports("com.tencent.mm.plugin.voip.ui.VideoActivity", kValue));
}

TEST(ApsPropNameTest, NameIsWrittenOnlyWhenPrefixAndPackageFit) {
    char name[APSInterface::kApkPropNameSize] = "previous";
    const std::string prefix = "persist.camera.beauty.";  // 22 characters
    // 92 - 22 = 70 must exceed the package length: 69 fits, 70 does not.
    const std::string fits(69, 'p');
    const std::string tooLong(70, 'p');
    EXPECT_FALSE(APSInterface::buildApkPropName(name, prefix.c_str(), tooLong.c_str()));
    EXPECT_STREQ("previous", name);
    EXPECT_TRUE(APSInterface::buildApkPropName(name, prefix.c_str(), fits.c_str()));
    EXPECT_EQ(prefix + fits, std::string(name));
    EXPECT_EQ(91u, strlen(name));
}

TEST(ApsPropNameTest, NinetyOneAndNinetyTwoCharacterNames) {
    char name[APSInterface::kApkPropNameSize] = "previous";
    // With the default prefix "0", a package of 90 characters makes a 91-character name.
    EXPECT_TRUE(APSInterface::buildApkPropName(name, "0", std::string(90, 'q').c_str()));
    EXPECT_EQ(91u, strlen(name));
    EXPECT_FALSE(APSInterface::buildApkPropName(name, "0", std::string(91, 'r').c_str()));
    EXPECT_EQ(std::string("0") + std::string(90, 'q'), std::string(name));
    EXPECT_FALSE(APSInterface::buildApkPropName(name, std::string(95, 's').c_str(), "a"));
    EXPECT_FALSE(APSInterface::buildApkPropName(name, "0", ""));
    EXPECT_FALSE(APSInterface::buildApkPropName(name, "0", nullptr));
}

int gData = 0;

TEST(ApsSymbolTest, OnlyCodeCountsAsAnEntryPoint) {
    EXPECT_TRUE(
        APSInterface::isCodeAddress(reinterpret_cast<const void*>(&APSInterface::isCodeAddress)));
    EXPECT_FALSE(APSInterface::isCodeAddress(&gData));
    EXPECT_FALSE(APSInterface::isCodeAddress(nullptr));
    int local = 0;
    EXPECT_FALSE(APSInterface::isCodeAddress(&local));
}

}  // namespace
