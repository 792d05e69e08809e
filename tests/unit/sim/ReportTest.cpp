// The report renders what the scenario process sent: a readable block per step, failures side
// by side, or the records themselves with --json.
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>

#include <string>

#include "SimRun.h"
#include "sim/Report.h"

namespace {

using namespace camext::sim;
using simtest::contains;
using simtest::lineWith;

Json parse(const std::string& text) {
    std::string error;
    Json v = Json::parse(text, &error);
    EXPECT_TRUE(error.empty()) << error;
    return v;
}

// Renders records through a Report and returns what it printed.
std::string render(bool json, const std::vector<std::string>& records) {
    char* buf = nullptr;
    size_t size = 0;
    FILE* out = open_memstream(&buf, &size);
    {
        Report report(out, json);
        for (const auto& r : records) report.record("f.json", parse(r));
    }
    fclose(out);
    std::string text(buf, size);
    free(buf);
    return text;
}

const char* kScenario = R"({"type": "scenario", "file": "f.json", "name": "n", "pid": 4242})";
const char* kStep = R"({"type": "step", "path": "steps[0]", "action": "open", "title": "t",
    "depth": 0, "at_ms": 60.0, "note": "",
    "calls": ["beforeConnect(\"0\", \"com.a/.M\", false) = 0"],
    "verdict": {"call": "beforeConnect", "value": 0},
    "changes": {"properties": [{"name": "vantu.camera.packname", "before": null, "after": "com.a"}],
                "metadata": [{"tag": "android.flash.mode", "before": [0], "after": [2],
                              "before_name": "OFF", "after_name": "TORCH"}]},
    "effects": {"motor": ["1,5000,com.a,1"], "services": {"battery": ["start 0 10100"]}},
    "log": [{"level": "E", "tag": "VantuCameraService", "text": "X.cpp: 1 boom\n"}],
    "expect": [{"key": "return", "ok": true, "expected": 0, "actual": 0},
               {"key": "client_events", "ok": false, "expected": ["0:disconnect"], "actual": []}],
    "ok": false})";

TEST(SimReport, StepBlockShowsCallsChangesEffectsAndLog) {
    const std::string text = render(false, {kScenario, kStep});
    EXPECT_TRUE(contains(text, "> beforeConnect(\"0\", \"com.a/.M\", false) = 0")) << text;
    EXPECT_TRUE(contains(text, "verdict: beforeConnect = 0")) << text;
    EXPECT_TRUE(lineWith(text, {"vantu.camera.packname", "(absent) -> \"com.a\""})) << text;
    EXPECT_TRUE(lineWith(text, {"android.flash.mode", "[0] (OFF) -> [2] (TORCH)"})) << text;
    EXPECT_TRUE(contains(text, "motor: 1,5000,com.a,1")) << text;
    EXPECT_TRUE(contains(text, "service battery: start 0 10100")) << text;
    // logcat's brief form, with the scenario process's pid and without the line's newline.
    EXPECT_TRUE(lineWith(text, {"E/VantuCameraService( 4242): X.cpp: 1 boom"})) << text;
    EXPECT_FALSE(contains(text, "boom\n\n")) << text;
    EXPECT_TRUE(contains(text, "ok: return")) << text;
    EXPECT_TRUE(contains(text, "FAIL expect client_events")) << text;
    EXPECT_TRUE(lineWith(text, {"! 0:disconnect", "| (none)"})) << text;
}

TEST(SimReport, JsonModePrintsEachStepRecordOnceWithItsFile) {
    const std::string text = render(true, {kScenario, R"({"type": "begin", "path": "steps[0]"})",
                                           kStep, R"({"type": "end", "pending": []})"});
    auto lines = simtest::lines(text);
    ASSERT_EQ(1u, lines.size()) << text;
    Json r = parse(lines[0]);
    EXPECT_EQ("f.json", r["file"].asString());
    EXPECT_EQ("steps[0]", r["path"].asString());
}

TEST(SimReport, SideBySideMarksOnlyTheRowsThatDiffer) {
    auto rows = sideBySide(Json::array({"a", "b", "c"}), Json::array({"a", "x"}), 10);
    ASSERT_EQ(4u, rows.size());
    EXPECT_EQ(0u, rows[1].find("  a")) << rows[1];
    EXPECT_EQ(0u, rows[2].find("! b")) << rows[2];
    EXPECT_TRUE(contains(rows[2], "| x")) << rows[2];
    EXPECT_TRUE(contains(rows[3], "c") && contains(rows[3], "| (none)")) << rows[3];
    // Values that are not lists take one row; null reads as absent.
    rows = sideBySide(Json(3), Json(), 10);
    ASSERT_EQ(2u, rows.size());
    EXPECT_TRUE(lineWith(rows[1], {"! 3", "| (absent)"})) << rows[1];
}

}  // namespace
