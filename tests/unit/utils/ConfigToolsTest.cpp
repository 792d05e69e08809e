// camext lint and camext explain, run as built: lint reports what the library would silently
// ignore or refuse, at the right line; explain answers what the library answers.
#include <gtest/gtest.h>

#include <string>

#include "support/CamextTool.h"
#include "support/TestSupport.h"
#include "utils/ConfigKeys.h"

namespace {

using testsupport::ToolRun;

class ConfigToolsTest : public ::testing::Test {
protected:
    void SetUp() override {
        tool = testsupport::camextPath();
        if (tool.empty()) GTEST_SKIP() << "camext is not built in " << CAMEXT_BUILD_DIR;
    }

    ToolRun camext(const std::string& args) { return testsupport::runCamext(args, scratch.path()); }

    // Writes `text` as a file of the scratch folder and returns its path.
    std::string file(const std::string& text, const std::string& name = "fwk_config.json") {
        scratch.writeFile("/" + name, text);
        return scratch.hostPath("/" + name);
    }

    static std::string example() {
        return std::string(CAMEXT_SOURCE_DIR) + "/examples/device/odm/etc/camera/fwk_config.json";
    }

    std::string tool;
    testsupport::TempDeviceRoot scratch;
};

TEST_F(ConfigToolsTest, LintSuggestsTheKnownSpellingOfAMisspelledKey) {
    const std::string f = file(
        "{\n"
        "  \"default\": {\n"
        "    \"feature_eviction_enable\": true,\n"
        "    \"feature_government_enable\": true,\n"
        "    \"limit_intelligent_eviction\": true\n"
        "  }\n"
        "}\n");
    const ToolRun r = camext("lint '" + f + "'");
    EXPECT_EQ(1, r.status);
    EXPECT_NE(std::string::npos,
              r.out.find(f + ":3: error: unknown key \"feature_eviction_enable\"; did you mean "
                             "\"feature_evication_enable\"?"))
        << r.out;
    EXPECT_NE(std::string::npos, r.out.find(":4: error: unknown key \"feature_government_enable\"; "
                                            "did you mean \"feature_government_enalbe\"?"))
        << r.out;
    EXPECT_NE(std::string::npos, r.out.find("did you mean \"Limit_Intelligent_Eviction\"?"));
}

TEST_F(ConfigToolsTest, LintReportsValuesTheGetterWouldRefuse) {
    const std::string f = file(
        "{\"default\": {\n"
        "  \"feature_cts_enable\": 1,\n"
        "  \"maxFps\": 30.0,\n"
        "  \"privileged_app_list\": [\"com.a\",\n"
        "      3, \"com.b\"],\n"
        "  \"limitSizeListForCts\": \"1920x1080\"\n"
        "}}\n");
    const ToolRun r = camext("lint '" + f + "'");
    EXPECT_EQ(1, r.status);
    EXPECT_NE(std::string::npos,
              r.out.find(":2: error: \"feature_cts_enable\" is read as bool but holds an integer"))
        << r.out;
    EXPECT_NE(std::string::npos, r.out.find(":3: error: \"maxFps\" is read as int but holds a "
                                            "double"));
    EXPECT_NE(std::string::npos, r.out.find(":5: error: element 1 of \"privileged_app_list\" is "
                                            "an integer: getStringArray skips it"));
    EXPECT_NE(std::string::npos, r.out.find(":6: error: \"limitSizeListForCts\" is read as int[]"));
}

TEST_F(ConfigToolsTest, LintWarnsAboutDuplicatesNamingTheOneTheLibraryUses) {
    const std::string f = file(
        "{\"default\": {\"maxFps\": 30,\n"
        "               \"maxFps\": 24},\n"
        " \"com.whatsapp\": {},\n"
        " \"com.whatsapp\": {\"maxFps\": 15}}\n");
    const ToolRun r = camext("lint '" + f + "'");
    EXPECT_EQ(0, r.status) << r.out;
    EXPECT_NE(std::string::npos,
              r.out.find(":2: warning: duplicate key \"maxFps\" (first at line 1): the library "
                         "uses the first, at line 1, and ignores this one; json-c alone would "
                         "keep the last"))
        << r.out;
    EXPECT_NE(std::string::npos,
              r.out.find(":4: warning: duplicate section \"com.whatsapp\" (first at line 3): "
                         "the library uses the first, at line 3"))
        << r.out;
    EXPECT_EQ(std::string::npos, r.out.find("error")) << r.out;
}

TEST_F(ConfigToolsTest, LintWarnsAboutAnEmptyEntryOnlyInAPrefixList) {
    const std::string f = file(
        "{\"default\": {\n"
        "  \"privileged_app_list\": [\"com.tencent\",\n"
        "      \"\"],\n"
        "  \"skip_rus_check_list\": [\"\"]\n"
        "}}\n");
    const ToolRun r = camext("lint '" + f + "'");
    EXPECT_EQ(0, r.status) << r.out;
    EXPECT_NE(std::string::npos,
              r.out.find(":3: warning: element 1 of \"privileged_app_list\" is empty: as a "
                         "package prefix it matches every package"))
        << r.out;
    // Exact-match lists: an empty entry matches no package, so it is harmless.
    EXPECT_EQ(std::string::npos, r.out.find("skip_rus_check_list")) << r.out;
}

TEST_F(ConfigToolsTest, LintOnlyWarnsAboutNullsNestedObjectsAndAMissingDefault) {
    const std::string f = file(
        "{\"com.whatsapp\": {\n"
        "  \"maxFps\": null,\n"
        "  \"vendor_extras\": {\"a\": 1},\n"
        "  \"my_own_switch\": true\n"
        "}}\n");
    const ToolRun r = camext("lint '" + f + "'");
    EXPECT_EQ(0, r.status) << r.out;
    EXPECT_NE(std::string::npos, r.out.find(":1: warning: no \"default\" section")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find(":2: warning: \"maxFps\" is null")) << r.out;
    EXPECT_NE(std::string::npos,
              r.out.find(":3: warning: \"vendor_extras\" holds a nested object"));
    EXPECT_NE(std::string::npos, r.out.find(":4: warning: unknown key \"my_own_switch\""));
    EXPECT_EQ(std::string::npos, r.out.find("error"));
}

// The example device is clean; and the library reads with json-c's lenient parser, so what it
// accepts must not confuse lint.
TEST_F(ConfigToolsTest, LintFindsCleanFilesCleanInTheSyntaxJsonCAccepts) {
    const std::string lenient = file(
        "// device overrides\n"
        "{ /* switches */ 'default': {'feature_cts_enable': TRUE, \"maxFps\": 30,},\n"
        "  \"com.whatsapp\": {\"limitSizeListForCts\": [1920, 1080,],\n"
        "  \"maxFps\": 24}}\n");
    for (const std::string& f : {example(), lenient}) {
        const ToolRun r = camext("lint '" + f + "'");
        EXPECT_EQ(0, r.status) << f << ": " << r.out << r.err;
        EXPECT_EQ("", r.out) << f;
    }
}

// json-c reads "-.5" as a number; lint must read the same document.
TEST_F(ConfigToolsTest, LintReadsAFractionWithoutItsIntegerPartAfterAMinus) {
    const ToolRun r = camext("lint '" +
                             file("{\"default\": {\"feature_fold_enable\": true},\n"
                                  "\"com.example.app\": {\"some_double\": -.5}}") +
                             "'");
    // Read through to the value: its key is reported, and nothing is refused.
    EXPECT_EQ(0, r.status) << r.out << r.err;
    EXPECT_NE(std::string::npos, r.out.find(":2: warning: unknown key \"some_double\"")) << r.out;
    EXPECT_EQ(std::string::npos, r.out.find("a value was expected")) << r.out << r.err;
    EXPECT_EQ(std::string::npos, r.err.find("a value was expected")) << r.err;
}

// What the library would load but not use exits with 1, what it cannot load with 2.
TEST_F(ConfigToolsTest, LintRefusesDocumentsTheLibraryCannotUse) {
    struct {
        const char* text;  // nullptr: no such file
        int status;
        const char* out;  // in stdout ("" for anything)
        const char* err;  // in stderr ("" for anything)
    } cases[] = {
        {"{\"default\": {}, \"maxFps\": 30}", 1,
         "error: section \"maxFps\" is an integer, not an object", ""},
        {"[{\"default\": {}}]", 1, ":1: error: the document is an array", ""},
        {"{}", 1, "the document has no sections", ""},
        // json-c ends a literal as soon as it is complete and ignores text after the document,
        // so a file that begins "nanef" is a number to the library, not a syntax error.
        {"nanef, {\"default\": {}}", 1, ":1: error: the document is a double", ""},
        {"nanef, {\"default\": {}}", 1, "text after the end of the document is ignored", ""},
        {nullptr, 2, "", "cannot read the file"},
        {"{\"default\": {\n\"maxFps\": tru}}", 2, "",
         ":2: error: not JSON the library can load: json_tokener_parse_ex failed"},
        {"", 2, "", "ends early or is empty"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text != nullptr ? c.text : "(no file)");
        const ToolRun r =
            camext("lint '" + (c.text != nullptr ? file(c.text) : scratch.path() + "/absent") + "'");
        EXPECT_EQ(c.status, r.status) << r.out << r.err;
        EXPECT_NE(std::string::npos, r.out.find(c.out)) << r.out;
        EXPECT_NE(std::string::npos, r.err.find(c.err)) << r.err;
    }
    EXPECT_EQ(2, camext("lint").status);
}

TEST_F(ConfigToolsTest, ExplainShowsWhereEachValueComesFrom) {
    const ToolRun r = camext("explain --package com.whatsapp --config '" + example() + "'");
    ASSERT_EQ(0, r.status) << r.err;
    auto row = [&](const std::string& key) {
        const size_t at = r.out.find("\n" + key + " ");
        if (at == std::string::npos) return std::string();
        std::istringstream line(r.out.substr(at + 1, r.out.find('\n', at + 1) - at - 1));
        std::string k, type, from, value;
        line >> k >> type >> from >> value;
        return from + " " + value;
    };
    EXPECT_EQ("com.whatsapp 1920", row("thirdPartyAppWidthLimitForCam0"));
    EXPECT_EQ("default 1920", row("maxPreviewWidth"));
    EXPECT_EQ("default true", row("feature_cts_enable"));
    EXPECT_EQ("caller false", row("Limit_Intelligent_Eviction"));
    EXPECT_EQ("caller -", row("explorer_override_cost"));
    EXPECT_EQ("caller 99999", row("maxFrontWidthForCts"));
}

TEST_F(ConfigToolsTest, ExplainListsEveryKnownKeyOnce) {
    const ToolRun r = camext("explain --package com.x --config '" + example() + "'");
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.out.find("com.x has no section of its own"));
    for (const auto& key : android::vantu::configKeys()) {
        const std::string needle = std::string("\n") + key.name + " ";
        const size_t first = r.out.find(needle);
        EXPECT_NE(std::string::npos, first) << key.name;
        EXPECT_EQ(std::string::npos, r.out.find(needle, first + 1)) << key.name;
    }
}

TEST_F(ConfigToolsTest, ExplainNotesRefusedValuesAndSkippedElements) {
    const std::string f = file(
        R"({"default": {"feature_cts_enable": false, "maxFps": 30},
                "com.a": {"feature_cts_enable": 1, "privileged_app_list": ["x", 2, "y"]}})");
    const ToolRun r = camext("explain --package com.a --config '" + f + "'");
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_NE(std::string::npos, r.out.find("true  # com.a holds int, which getBool refuses"))
        << r.out;
    EXPECT_NE(std::string::npos, r.out.find("[\"x\", \"y\"]  # 1 of 3 elements skipped")) << r.out;
    EXPECT_NE(std::string::npos, r.err.find("getBool(com.a, feature_cts_enable) type is error"))
        << "the library's own message reaches stderr: " << r.err;
}

TEST_F(ConfigToolsTest, ExplainReadsTheLibraryPathUnderTheDeviceRoot) {
    scratch.writeFile("odm/etc/camera/fwk_config.json", R"({"default": {"maxFps": 12}})");
    ToolRun r = camext("explain --package com.a --root '" + scratch.path() + "'");
    ASSERT_EQ(0, r.status) << r.err;
    EXPECT_NE(std::string::npos,
              r.out.find("odm/etc/camera/fwk_config.json under " + scratch.path()));
    EXPECT_NE(std::string::npos, r.out.find("default  12")) << r.out;

    r = camext("explain --package com.a --root '" + scratch.path() + "/nothing'");
    EXPECT_EQ(1, r.status);
    EXPECT_NE(std::string::npos, r.out.find("could not be loaded"));
    EXPECT_NE(std::string::npos, r.err.find("Parser json file odm/etc/camera/fwk_config.json "
                                            "failed"))
        << r.err;
}

TEST_F(ConfigToolsTest, ExplainNeedsAPackage) {
    EXPECT_EQ(2, camext("explain").status);
    EXPECT_EQ(2, camext("explain --package").status);
    EXPECT_EQ(2, camext("explain --package a --bogus").status);
    EXPECT_EQ(0, camext("explain --help").status);
}

}  // namespace
