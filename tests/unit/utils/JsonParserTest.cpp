// Per-app sections override "default" key by key; wrong types, nulls and broken files all
// degrade to the caller's default with the library's own messages.
#include <android/log.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "hostctl/Properties.h"
#include "support/TestSupport.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

// Heap allocations made by this test binary so far, or -1 when they are not counted
// (AllocationCount.cpp).
long allocationCount();

namespace {

using android::JsonParser;
using android::sp;

constexpr const char kPath[] = "odm/etc/camera/fwk_config.json";

constexpr const char kConfig[] = R"({
  "default": {
    "feature_cts_enable": true,
    "feature_fold_enable": false,
    "maxFps": 30,
    "ratio": 1.5,
    "whole": 5,
    "name": "dflt",
    "list": ["d1", "d2"],
    "defaultNull": null
  },
  "com.tencent.mm": {
    "feature_fold_enable": true,
    "maxFps": 24,
    "feature_cts_enable": null,
    "name": 7,
    "list": ["a", 3, "b"],
    "sizes": [1920, 1080.0, 1280, "720", 720],
    "flags": [true, 1, false, null],
    "ratios": [0.5, 2, 1.25],
    "nested": {"x": 1},
    "defaultNull": 3
  }
})";

class JsonParserTest : public ::testing::Test {
protected:
    void SetUp() override {
        android::setExtLogSwitch(0);
        android::setJsonPackageName(nullptr);
    }
    void TearDown() override {
        android::setExtLogSwitch(0);
        android::setJsonPackageName(nullptr);
    }

    sp<JsonParser> load(const std::string& text) {
        root.writeFile(kPath, text);
        return new JsonParser(kPath);
    }

    testsupport::TempDeviceRoot root;
};

TEST_F(JsonParserTest, AppSectionOverridesDefaultKeyByKeyOnlyForThatApp) {
    sp<JsonParser> p = load(kConfig);
    EXPECT_TRUE(p->getBool("feature_cts_enable", "com.unknown.app", false));
    EXPECT_EQ(30, p->getInt("maxFps", "com.whatsapp", 0));
    EXPECT_EQ(30, p->getInt("maxFps", "default", 0));
    EXPECT_EQ(30, p->getInt("maxFps", nullptr, 0)) << "a null package is the default section";
    EXPECT_TRUE(p->getBool("feature_fold_enable", "com.tencent.mm", false));
    EXPECT_FALSE(p->getBool("feature_fold_enable", "com.whatsapp", true));
    EXPECT_EQ(24, p->getInt("maxFps", "com.tencent.mm", 0));
    EXPECT_EQ(30, p->getInt("maxFps", "com.tencent.mm.other", 0)) << "section names match whole";
}

TEST_F(JsonParserTest, NullFallsBackToDefaultThenToTheCaller) {
    sp<JsonParser> p = load(kConfig);
    EXPECT_TRUE(p->getBool("feature_cts_enable", "com.tencent.mm", false));
    EXPECT_EQ(-1, p->getInt("defaultNull", "default", -1));
    EXPECT_EQ(-1, p->getInt("defaultNull", "com.whatsapp", -1));
    EXPECT_EQ(3, p->getInt("defaultNull", "com.tencent.mm", -1));
    EXPECT_EQ(-1, p->getInt("absent", "com.tencent.mm", -1));
}

// Configuration files were written for a reader that keeps the first of several members with
// one name; json-c alone keeps the last.
TEST_F(JsonParserTest, FirstOfDuplicateKeysAndSectionsWins) {
    sp<JsonParser> p = load(R"({
      "default": {"maxFps": 30, /* "maxFps": 1, */ "name": 'first', "maxFps": 24,
                  "list": ["a", {"maxFps": 2}], "name": "last", "list": [], "maxFps": 15},
      "com.a": {"maxFps": 60, "maxFps": null},
      "com.b": {"ratio": 1.5},
      "com.a": {"maxFps": 10, "whole": 5},
      "com.b": 7,
      "com.c": {"maxFps": null, "maxFps": 24}
    })");
    EXPECT_EQ(30, p->getInt("maxFps", "default", 0));
    EXPECT_EQ("first", p->getString("name", "default", ""));
    std::vector<std::string> list;
    p->getStringArray("list", "default", list);
    EXPECT_EQ((std::vector<std::string>{"a"}), list);
    // The first "com.a" is the section: its own duplicate keeps 60, and nothing of the second.
    EXPECT_EQ(60, p->getInt("maxFps", "com.a", 0));
    EXPECT_EQ(-1, p->getInt("whole", "com.a", -1));
    // A later member that is not an object does not hide the first, which is.
    EXPECT_EQ(1.5, p->getDouble("ratio", "com.b", 0.0));
    // A first member that is null falls back to "default", not to the later duplicate.
    EXPECT_EQ(30, p->getInt("maxFps", "com.c", 0));
}

TEST_F(JsonParserTest, WrongTypeAnswersTheCallerDefaultWithOneError) {
    testsupport::LogCapture log;
    sp<JsonParser> p = load(R"({"default": {"feature_cts_enable": 1, "f": 5.0, "i": 5}})");
    EXPECT_FALSE(p->getBool("feature_cts_enable", "default", false));
    EXPECT_EQ(9, p->getInt("f", "default", 9)) << "a double is not an integer";
    EXPECT_EQ(2.5, p->getDouble("i", "default", 2.5)) << "an integer is not a double";
    EXPECT_EQ("x", p->getString("i", "default", "x"));
    const auto lines = log.lines();
    ASSERT_EQ(4u, lines.size()) << log.dump();
    EXPECT_NE(std::string::npos,
              lines[0].text.find(" getBool(default, feature_cts_enable) type is error"));
    EXPECT_EQ(0u, lines[0].text.find("JsonParser.cpp: "));
    EXPECT_EQ(ANDROID_LOG_ERROR, lines[0].priority);
    EXPECT_EQ("VantuCameraService", lines[0].tag);
    EXPECT_NE(std::string::npos, lines[1].text.find("getInt(default, f) type is error"));
    EXPECT_NE(std::string::npos, lines[2].text.find("getDouble(default, i) type is error"));
    EXPECT_NE(std::string::npos, lines[3].text.find("getString(default, i) type is error"));
}

TEST_F(JsonParserTest, WrongTypeInAppSectionDoesNotFallBackToDefault) {
    sp<JsonParser> p = load(kConfig);
    testsupport::LogCapture log;
    EXPECT_EQ("caller", p->getString("name", "com.tencent.mm", "caller"));
    EXPECT_EQ("dflt", p->getString("name", "com.whatsapp", "caller"));
    EXPECT_EQ(1.5, p->getDouble("ratio", "com.tencent.mm", 0.0));
}

TEST_F(JsonParserTest, ArraysAppendElementsOfTheRightTypeAndSkipOthers) {
    sp<JsonParser> p = load(kConfig);
    testsupport::LogCapture log;
    std::vector<std::string> names{"kept"};
    p->getStringArray("list", "com.tencent.mm", names);
    EXPECT_EQ((std::vector<std::string>{"kept", "a", "b"}), names);
    EXPECT_EQ(1u, log.count("getStringArray(com.tencent.mm, list) array type is error"));

    std::vector<int> sizes;
    p->getIntArray("sizes", "com.tencent.mm", sizes);
    EXPECT_EQ((std::vector<int>{1920, 1280, 720}), sizes);
    std::vector<bool> flags;
    p->getBoolArray("flags", "com.tencent.mm", flags);
    EXPECT_EQ((std::vector<bool>{true, false}), flags);
    std::vector<double> ratios;
    p->getDoubleArray("ratios", "com.tencent.mm", ratios);
    EXPECT_EQ((std::vector<double>{0.5, 1.25}), ratios);
    EXPECT_EQ(1u + 2u + 2u + 1u, log.count("array type is error")) << log.dump();
}

TEST_F(JsonParserTest, ArrayGetterOnAScalarOrObjectLeavesTheListAlone) {
    sp<JsonParser> p = load(kConfig);
    testsupport::LogCapture log;
    std::vector<int> out{1};
    p->getIntArray("maxFps", "com.tencent.mm", out);
    p->getIntArray("nested", "com.tencent.mm", out);
    p->getIntArray("absent", "com.tencent.mm", out);
    EXPECT_EQ(std::vector<int>{1}, out);
    EXPECT_EQ(2u, log.count("type is error")) << log.dump();
    std::vector<std::string> names;
    p->getStringArray("list", "com.whatsapp", names);
    EXPECT_EQ((std::vector<std::string>{"d1", "d2"}), names);
}

TEST_F(JsonParserTest, NullKeyAnswersTheDefault) {
    sp<JsonParser> p = load(kConfig);
    EXPECT_TRUE(p->getBool(nullptr, "default", true));
    std::vector<int> out;
    p->getIntArray(nullptr, nullptr, out);
    EXPECT_TRUE(out.empty());
}

TEST_F(JsonParserTest, LoadLogsEachScalarWhileTheSwitchIsOn) {
    android::setExtLogSwitch(1);
    testsupport::LogCapture log;
    sp<JsonParser> p = load(R"({"default": {"b": true, "i": 3, "d": 0.5, "s": "x", "a": [1]}})");
    for (const char* line :
         {" default b: 1", " default i: 3", " default d: 0.500000", " default s: x"}) {
        EXPECT_EQ(1u, log.count(line)) << line;
    }
    EXPECT_EQ(4u, log.lines().size()) << log.dump();
    log.clear();
    EXPECT_TRUE(p->getBool("b", "default", false));
    EXPECT_EQ(0u, log.count("success")) << "the success line is verbose and stays silent";
}

struct BrokenFile {
    const char* name;
    const char* text;  // nullptr: no file
    const char* message;
};

class BrokenFileTest : public ::testing::TestWithParam<BrokenFile> {};

TEST_P(BrokenFileTest, EveryGetterAnswersItsDefaultAfterOneErrorLine) {
    testsupport::TempDeviceRoot root;
    if (GetParam().text != nullptr) root.writeFile(kPath, GetParam().text);
    testsupport::LogCapture log;
    sp<JsonParser> p = new JsonParser(kPath);
    const auto lines = log.lines();
    ASSERT_EQ(1u, lines.size()) << log.dump();
    EXPECT_NE(std::string::npos, lines[0].text.find(GetParam().message)) << lines[0].text;
    EXPECT_EQ(ANDROID_LOG_ERROR, lines[0].priority);

    log.clear();
    EXPECT_TRUE(p->getBool("feature_cts_enable", "default", true));
    EXPECT_EQ(7, p->getInt("maxFps", "com.x", 7));
    EXPECT_EQ(0.25, p->getDouble("d", "com.x", 0.25));
    EXPECT_EQ("s", p->getString("s", "com.x", "s"));
    std::vector<std::string> out;
    p->getStringArray("privileged_app_list", "com.x", out);
    EXPECT_TRUE(out.empty());
    EXPECT_TRUE(log.lines().empty()) << log.dump();
}

INSTANTIATE_TEST_SUITE_P(
    Files, BrokenFileTest,
    ::testing::Values(
        BrokenFile{"Missing", nullptr, "Parser json file odm/etc/camera/fwk_config.json failed : "},
        BrokenFile{"Empty", "", "Parser json file odm/etc/camera/fwk_config.json failed"},
        BrokenFile{"Malformed", "{\"default\": {\"a\": tru}}",
                   "Parser json file odm/etc/camera/fwk_config.json failed"},
        BrokenFile{"EmptyRoot", "{}", "json file odm/etc/camera/fwk_config.json have no content"},
        BrokenFile{"ArrayRoot", "[1, 2]",
                   "json file odm/etc/camera/fwk_config.json have no content"},
        BrokenFile{"StringRoot", "\"default\"",
                   "json file odm/etc/camera/fwk_config.json have no content"}),
    [](const ::testing::TestParamInfo<BrokenFile>& info) { return info.param.name; });

TEST(JsonParserFiles, NullPathLeavesTheParserEmpty) {
    testsupport::LogCapture log;
    sp<JsonParser> p = new JsonParser(nullptr);
    EXPECT_EQ(1u, log.count("json file pathis NULL"));
    EXPECT_EQ(0u, p->sectionCount());
}

TEST_F(JsonParserTest, OversizedFileIsRefusedWithoutReadingIt) {
    root.writeFile(kPath, "{}");
    ASSERT_EQ(0, truncate(root.hostPath(kPath).c_str(), 64LL * 1024 * 1024));
    testsupport::LogCapture log;
    sp<JsonParser> p = new JsonParser(kPath);
    EXPECT_EQ(1u, log.count("Parser json file odm/etc/camera/fwk_config.json failed : file of"));
    EXPECT_EQ(1u, log.lines().size()) << log.dump();
}

TEST_F(JsonParserTest, SectionThatIsNotAnObjectIsSkipped) {
    testsupport::LogCapture log;
    sp<JsonParser> p = load(R"({"com.a": [1], "default": {"k": 2}, "com.b": null})");
    EXPECT_EQ(1u, p->sectionCount());
    EXPECT_EQ(2, p->getInt("k", "com.a", 0));
    EXPECT_EQ(2u, log.count("is not an object")) << log.dump();
}

TEST_F(JsonParserTest, ResolveNamesWhereEachValueComesFrom) {
    sp<JsonParser> p = load(kConfig);
    using Origin = JsonParser::Origin;
    EXPECT_EQ(Origin::App, p->resolve("maxFps", "com.tencent.mm", json_type_int).origin);
    EXPECT_EQ(Origin::Default, p->resolve("maxFps", "com.whatsapp", json_type_int).origin);
    EXPECT_EQ(Origin::Default, p->resolve("maxFps", "default", json_type_int).origin);
    EXPECT_EQ(Origin::Default,
              p->resolve("feature_cts_enable", "com.tencent.mm", json_type_boolean).origin);
    EXPECT_EQ(Origin::Missing, p->resolve("absent", "com.tencent.mm", json_type_int).origin);
    EXPECT_EQ(Origin::WrongType, p->resolve("name", "com.tencent.mm", json_type_string).origin);
}

class CurrentParserTest : public JsonParserTest {};

TEST_F(CurrentParserTest, FreeGettersUseTheCurrentPackage) {
    root.writeFile(kPath, kConfig);
    android::initJsonParser(kPath);
    EXPECT_STREQ("default", android::getJsonPackageName());
    EXPECT_EQ(30, android::getInt("maxFps", 0));
    android::setJsonPackageName("com.tencent.mm");
    testsupport::LogCapture log;
    EXPECT_EQ(24, android::getInt("maxFps", 0));
    EXPECT_TRUE(android::getBool("feature_fold_enable", false));
    EXPECT_EQ(30, android::getInt("maxFps", 0, "com.whatsapp")) << "an explicit package wins";
    std::vector<std::string> list;
    android::getStringArray("list", list);
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), list);
    android::setJsonPackageName(nullptr);
    EXPECT_EQ(30, android::getInt("maxFps", 0));
}

TEST_F(CurrentParserTest, StringListMembershipIsByWholeEntry) {
    root.writeFile(kPath, R"({"default": {"list": ["com.a", 3, "com.b"]},
                              "com.x": {"list": ["com.c"]}})");
    android::initJsonParser(kPath);
    EXPECT_TRUE(android::stringArrayHas("list", "com.b"));
    EXPECT_FALSE(android::stringArrayHas("list", "com."));
    EXPECT_FALSE(android::stringArrayHas("list", "com.a.b"));
    EXPECT_FALSE(android::stringArrayHas("list", nullptr));
    EXPECT_FALSE(android::stringArrayHas("missing", "com.a"));
    EXPECT_TRUE(android::stringArrayHas("list", "com.c", "com.x"));
    EXPECT_FALSE(android::stringArrayHas("list", "com.a", "com.x"));
}

TEST_F(CurrentParserTest, ReplacingTheParserAnswersFromTheNewFile) {
    root.writeFile(kPath, R"({"default": {"maxFps": 1}})");
    android::initJsonParser(kPath);
    EXPECT_EQ(1, android::getInt("maxFps", 0));
    root.writeFile(kPath, R"({"default": {"maxFps": 2}})");
    android::setExtLogSwitch(1);
    testsupport::LogCapture log;
    android::initJsonParser(kPath);
    EXPECT_EQ(2, android::getInt("maxFps", 0));
    EXPECT_EQ(1u, log.count("initJsonParser with odm/etc/camera/fwk_config.json"));
    android::initJsonParser(nullptr);
    EXPECT_EQ(5, android::getInt("maxFps", 5));
    std::vector<double> out{1.0};
    android::getDoubleArray("maxFps", out);
    EXPECT_EQ(std::vector<double>{1.0}, out);
}

// Package names longer than a short-string buffer, so that any std::string built on the way
// would show up as an allocation.
TEST_F(CurrentParserTest, ScalarLookupsDoNotAllocate) {
    root.writeFile(kPath, R"({"default": {"feature_cts_enable": true, "ratio": 0.5},
                             "com.example.videocall.app": {"maxFps": 24,
                                                           "feature_cts_enable": null}})");
    android::initJsonParser(kPath);
    android::setJsonPackageName("com.example.videocall.app");
    const long before = allocationCount();
    if (before < 0) GTEST_SKIP() << "the sanitizer runtime owns operator new: nothing is counted";
    int sum = 0;
    for (int i = 0; i < 100; ++i) {
        sum += android::getInt("maxFps", 0);                   // app section
        sum += android::getBool("feature_cts_enable", false);  // from "default"
        sum += android::getInt("absent_key_of_some_length", 1, "com.example.other.app");
        sum += static_cast<int>(2 * android::getDouble("ratio", 0.0, "com.example.other.app"));
    }
    EXPECT_EQ(before, allocationCount());
    EXPECT_EQ(100 * (24 + 1 + 1 + 1), sum);
}

// Under TSan: getters on host threads run while the package changes and the parser is replaced.
TEST_F(CurrentParserTest, ConcurrentLookupsAndChangesAreRaceFree) {
    root.writeFile(kPath, kConfig);
    android::initJsonParser(kPath);
    std::atomic<bool> stop{false};
    std::vector<std::thread> readers;
    for (int t = 0; t < 2; ++t) {
        readers.emplace_back([&stop] {
            while (!stop.load()) {
                const int fps = android::getInt("maxFps", 0);
                EXPECT_TRUE(fps == 24 || fps == 30 || fps == 0) << fps;
                std::vector<std::string> names;
                android::getStringArray("privileged_app_list", names);
                android::getBool("feature_fold_enable", false);
            }
        });
    }
    for (int i = 0; i < 200; ++i) {
        android::setJsonPackageName(i % 2 ? "com.tencent.mm" : "com.whatsapp");
        if (i % 50 == 0) android::initJsonParser(kPath);
    }
    stop.store(true);
    for (auto& t : readers) t.join();
}

}  // namespace
