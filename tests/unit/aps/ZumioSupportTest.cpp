// The avatar support file and the built-in lists: what the file says decides, and files of the
// wrong shape degrade to the built-in lists without a crash.
#include <gtest/gtest.h>

#include <string>

#include "features/aps/JsonParserZumio.h"
#include "features/aps/ZumioManager.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"

namespace {

using android::JsonParserZumio;
using android::ZumioManager;

constexpr const char kDataFile[] = "/data/vantu/common/zumio/app_zumio_videocall_config.json";
constexpr const char kPlinthFile[] = "/my_plinth/Zumio/app_zumio_videocall_config.json";

class ZumioSupportTest : public ::testing::Test {
protected:
    void SetUp() override { android::setExtLogSwitch(1); }
    void TearDown() override {
        android::setExtLogSwitch(0);
        hostctl::clearProperties();
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::LogCapture mLog;
};

TEST_F(ZumioSupportTest, ParserReadsStringsBySectionAndKey) {
    mRoot.writeFile(kPlinthFile, R"({"version": {"str": "7"}, "packages": {"a.b": "1"},
                                     "activitys": {"a.b.Call": "0", "n": 3, "o": {"x": "1"}}})");
    ASSERT_STREQ(kPlinthFile, JsonParserZumio::findSupportFile());
    auto parser = JsonParserZumio::parse(JsonParserZumio::findSupportFile());
    ASSERT_NE(nullptr, parser);
    EXPECT_EQ(3, parser->contentCount());
    EXPECT_TRUE(mLog.contains("have 3 content"));
    std::string value = "untouched";
    EXPECT_TRUE(parser->getString("version", "str", value));
    EXPECT_EQ("7", value);
    EXPECT_TRUE(mLog.contains("getString(version, str) success"));
    EXPECT_TRUE(parser->getString("activitys", "a.b.Call", value));
    EXPECT_EQ("0", value);
    value = "untouched";
    EXPECT_FALSE(parser->getString("activitys", "n", value));
    EXPECT_TRUE(mLog.contains("getString(activitys, n) type is error"));
    EXPECT_FALSE(parser->getString("activitys", "o", value));
    EXPECT_FALSE(parser->getString("packages", "missing", value));
    EXPECT_FALSE(parser->getString("missing", "a.b", value));
    EXPECT_FALSE(parser->getString("version", nullptr, value));
    EXPECT_EQ("untouched", value);
}

TEST_F(ZumioSupportTest, DataFileComesBeforeThePlinthFile) {
    mRoot.writeFile(kPlinthFile, "{}");
    mRoot.writeFile(kDataFile, "{}");
    EXPECT_STREQ(kDataFile, JsonParserZumio::findSupportFile());
}

TEST_F(ZumioSupportTest, NoFileIsNoParser) {
    EXPECT_EQ(nullptr, JsonParserZumio::findSupportFile());
    EXPECT_EQ(nullptr, JsonParserZumio::parse(kDataFile));
    EXPECT_TRUE(mLog.contains("parse json file " + std::string(kDataFile) + " failed"));
}

TEST_F(ZumioSupportTest, WrongShapesAnswerNothing) {
    for (const char* text :
         {"[1, 2, 3]", "42", R"({"packages": ["a.b"]})", R"({"packages": {"a.b": 1}})",
          R"({"packages": {"a.b": {"c": "1"}}})", "{", "", "{}"}) {
        mRoot.writeFile(kDataFile, text);
        auto parser = JsonParserZumio::parse(kDataFile);
        std::string value;
        if (parser != nullptr) {
            EXPECT_FALSE(parser->getString("packages", "a.b", value)) << text;
        }
    }
    EXPECT_TRUE(mLog.contains("have no content"));
}

TEST_F(ZumioSupportTest, HugeFileIsRefused) {
    std::string text = R"({"packages": {"a.b": ")";
    text += std::string(10 * 1024 * 1024, 'x');
    text += "\"}}";
    mRoot.writeFile(kDataFile, text);
    EXPECT_EQ(nullptr, JsonParserZumio::parse(kDataFile));
    EXPECT_TRUE(mLog.contains("failed: file too large"));
}

TEST_F(ZumioSupportTest, BuiltInListsNeedTheKeyWordAndNoExcludedWord) {
    // Video calls.
    EXPECT_TRUE(ZumioManager::isSupportByBuiltInList(
        "com.tencent.mm", "com.tencent.mm.plugin.voip.ui.VideoActivity", false));
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList(
        "com.tencent.mm", "com.tencent.mm.plugin.camera.VideoActivity", false));
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList("com.tencent.mm", "VideoActivity", false));
    EXPECT_TRUE(ZumioManager::isSupportByBuiltInList("us.zoom.videomeetings",
                                                     "com.zipow.zoom.ConfActivity", false));
    // Capture only: a meeting app has no capture entry.
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList("us.zoom.videomeetings",
                                                      "com.zipow.zoom.ConfActivity", true));
    EXPECT_TRUE(ZumioManager::isSupportByBuiltInList(
        "com.smile.gifmaker", "com.yxcorp.gifshow.camera.record.CameraActivity", true));
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList(
        "com.smile.gifmaker", "com.yxcorp.gifshow.followshoot.FollowShootActivity", true));
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList(
        "com.smile.gifmaker", "com.yxcorp.gifshow.camera.record.CameraActivity", false));
    // The package must match whole.
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList("com.tencent.m", "com.tencent.x", false));
    EXPECT_FALSE(ZumioManager::isSupportByBuiltInList(nullptr, nullptr, false));
    const std::string longName = "com.tencent." + std::string(4000, 'a');
    EXPECT_TRUE(ZumioManager::isSupportByBuiltInList("com.tencent.mm", longName.c_str(), false));
}

TEST_F(ZumioSupportTest, FileDecidesWhileTheSwitchIsOn) {
    mRoot.writeFile(kDataFile, R"({"version": {"str": "1"}, "packages": {"com.tencent.mm": "1"},
                                   "activitys": {"A.Camera": "1", "com.tencent.mm.Voip": "0"}})");
    // Reference counted, as the extension holds it: a RefBase on the stack leaks its counts.
    android::sp<ZumioManager> manager = new ZumioManager();
    hostctl::setProperty("persist.sys.vantu.zumio.voip.switch", "1");
    EXPECT_TRUE(manager->isSupportZumio("com.tencent.mm", "A.Camera", false));
    EXPECT_FALSE(manager->isSupportZumio("com.tencent.mm", "com.tencent.mm.Voip", false));
    // Not named in the file: the built-in lists decide.
    EXPECT_TRUE(manager->isSupportZumio("com.tencent.mm", "com.tencent.mm.VideoCall", false));
    EXPECT_EQ(1u, mLog.count("json version old:"));

    // Same version: the changed file is not read again; a new version is.
    mRoot.writeFile(kDataFile, R"({"version": {"str": "2"}, "packages": {}, "activitys": {}})");
    hostctl::setProperty("persist.sys.vantu.zumio.voip.version", "1");
    EXPECT_TRUE(manager->isSupportZumio("com.tencent.mm", "A.Camera", false));
    hostctl::setProperty("persist.sys.vantu.zumio.voip.version", "2");
    EXPECT_FALSE(manager->isSupportZumio("com.tencent.mm", "A.Camera", false));
    EXPECT_EQ(2u, mLog.count("json version old:"));

    hostctl::setProperty("persist.sys.vantu.zumio.voip.switch", "0");
    EXPECT_TRUE(manager->isSupportZumio("com.tencent.mm", "com.tencent.mm.VideoCall", false));
    EXPECT_EQ(2u, mLog.count("json version old:"));
}

}  // namespace
