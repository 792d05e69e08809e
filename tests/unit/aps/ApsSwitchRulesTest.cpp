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

    static bool supports(const char* activity, const char* value, const char* package) {
        return APSInterface::isSupportActivity(nullptr, package, activity, value);
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::LogCapture mLog;
};

TEST_F(ApsSwitchRulesTest, ActivityAnswersFollowTheTextOfTheValue) {
    const char* const app = "com.example.app";
    const char* const voip = "com.tencent.mm.plugin.voip.ui.VideoActivity";
    // A member longer than the buffer keeps 91 characters: the three of ":" and 88 of the name.
    const std::string longMember =
        "{\"activityName\":\"" + std::string(200, 'A') + "\",\"fbParam\":\"1\"}";
    const std::string cutName = "x." + std::string(89, 'A');
    const std::string hugeName(4000, 'V');
    const std::string hugeMatching = hugeName + "VideoActivity";
    const struct {
        const char* why;
        const char* activity;
        const char* value;
        const char* package;
        bool expected;
    } rows[] = {
        {"contains the token", "com.example.app.VideoActivity", kValue, app, true},
        {"lacks the token", "com.example.app.MainActivity", kValue, app, false},
        {"empty member", "Any", R"({"activityName":"","fbParam":"1","isOpen":"1"})", app, true},
        {"no member", "Any", R"({"fbParam":"1","isOpen":"1"})", app, true},
        {"no fbParam", "Any", R"({"activityName":"X","isOpen":"1"})", app, true},
        // No text lies between "fbParam" and a later "activityName".
        {"fbParam first", "Any", R"({"fbParam":"1","activityName":"X"})", app, true},
        {"null value", "Any", nullptr, app, true},
        {"unset value", "Any", "-1", app, true},
        // Without quotes or colons the whole member is the token.
        {"bare member", "a.FooActivity", "activityNameFooActivityfbParam", app, true},
        {"bare member, other", "a.BarActivity", "activityNameFooActivityfbParam", app, false},
        {"no closing member", "a.BarActivity", R"({"activityName":"FooActivity)", app, true},
        {"first token only", "a.Foo", R"({"activityName":"Foo,Bar","fbParam":""})", app, true},
        {"member cut at 91", cutName.c_str(), longMember.c_str(), app, true},
        {"member cut at 91, short", "x.A", longMember.c_str(), app, false},
        {"huge activity", hugeName.c_str(), kValue, app, false},
        {"huge activity with token", hugeMatching.c_str(), kValue, app, true},
        {"disabled for its package", voip, kValue, kWeChat, false},
        {"another package's list", voip, kValue, app, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.expected, supports(row.activity, row.value, row.package)) << row.why;
    }
    EXPECT_TRUE(mLog.contains(
        "isSupportActivity ActivityName: com.example.app.MainActivity does not need APS "
        "Process"));
    EXPECT_TRUE(mLog.contains(
        "disable fb activity white list: com.tencent.mm.plugin.voip.ui.VideoActivity"));
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
