// The simulator's own behaviour, seen from outside: exit statuses, the diff of a failed
// expectation, JSON paths of malformed files, crash reports and the virtual-time order of
// scheduled steps. Each test runs build/bin/camext as a user would.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SimRun.h"

namespace {

using simtest::camext;
using simtest::CamextRun;
using simtest::contains;
using simtest::lines;
using simtest::simFile;
using simtest::TempScenario;

TEST(SimulatorExpectations, WrongExpectationFailsWithExpectedBesideActual) {
    CamextRun r = camext("run " + simFile("wrong_expectation.json"));
    EXPECT_EQ(1, r.status) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("FAIL expect properties debug.sim.marker")) << r.out;
    // One row holds both sides: the file's value, then what the property really is.
    EXPECT_TRUE(simtest::lineWith(r.out, {"\"off\"", "| \"on\""})) << r.out;
    // The expectations that hold are not reported as failures.
    EXPECT_EQ(std::string::npos, r.out.find("FAIL expect properties persist.sys")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("FAILED (1 of 2 steps)")) << r.out;
}

TEST(SimulatorExpectations, JsonModeWritesOneRecordPerStep) {
    CamextRun r = camext("run --json " + simFile("wrong_expectation.json") + " 2>/dev/null");
    EXPECT_EQ(1, r.status);
    auto records = lines(r.out);
    ASSERT_EQ(2u, records.size()) << r.out;
    EXPECT_NE(std::string::npos, records[0].find("\"path\": \"steps[0]\"")) << records[0];
    EXPECT_NE(std::string::npos, records[0].find("\"ok\": false")) << records[0];
    EXPECT_NE(std::string::npos, records[1].find("\"ok\": true")) << records[1];
}

// Each malformed file is refused before anything plays, with the JSON path of its fault.
TEST(SimulatorMalformedFiles, ExitTwoNamingTheJsonPath) {
    struct Case {
        const char* text;
        const char* where;
    } cases[] = {
        {R"({"steps": [{"open": {"camera": "0"}}]})", "steps[0].open.package: is required"},
        {R"({"steps": [{"close": {"camera": 0}}]})", "steps[0].close.camera: must be a string"},
        {R"({"steps": [{"opne": {}}]})", "steps[0]: names no action"},
        {R"({"steps": [{"close": {"camera": "0"}, "expect": {"metadata": {}}}]})",
         "steps[0].expect.metadata: is checked only after"},
        {R"({"steps": [{"request": {"camera": "0"}, "expect": {"metadata": {"android.flash.mode": {}}}}]})",
         "steps[0].expect.metadata[\"android.flash.mode\"]: must be a number"},
        {R"({"steps": [{"hook": "isPrivilegeApp", "args": [1]}]})",
         "steps[0].hook: \"isPrivilegeApp\" is not an operation"},
        {R"({"device": {"clock": {"wall": "now"}}, "steps": []})",
         "device.clock.wall: must be an integer"},
        {R"({"steps": [{"schedule": {"after_ms": 5, "step": {"advance_clock": {"ms": -1}}}}]})",
         "steps[0].schedule.step.advance_clock.ms: must not be negative"},
        {"{\"steps\": [\n  {\"close\": {\"camera\": \"0\"}},\n]}", "line 3"},
        // Metadata names and values are checked against the tags' types.
        {R"({"steps": [{"request": {"camera": "0", "settings": {"android.control.aeMod": 1}}}]})",
         "steps[0].request.settings[\"android.control.aeMod\"]: unknown tag"},
        {R"({"steps": [{"request": {"camera": "0", "settings": {"android.control.aeMode": 1.5}}}]})",
         "a byte tag takes integers"},
        {R"({"steps": [{"request": {"camera": "0", "settings": {"android.control.aeMode": 1}},
                 "expect": {"metadata": {"com.vantu.no.such.tag": 1}}}]})",
         "steps[0].expect.metadata[\"com.vantu.no.such.tag\"]: unknown vendor tag"},
        {R"({"device": {"vendor_tags": ["com.vantu.device.stat"]}, "steps": []})",
         "device.vendor_tags[0]: unknown vendor tag"},
    };
    for (const auto& c : cases) {
        TempScenario file(c.text);
        CamextRun r = camext("run " + file.path());
        EXPECT_EQ(2, r.status) << c.text << "\n" << r.out;
        EXPECT_NE(std::string::npos, r.out.find(c.where)) << c.text << "\n" << r.out;
    }
}

TEST(SimulatorMalformedFiles, OneMalformedFileDoesNotStopTheOthers) {
    TempScenario bad(R"({"steps": 3})");
    TempScenario good(R"({"steps": [{"set_properties": {"a.b": "1"}}]})");
    CamextRun r = camext("run " + bad.path() + " " + good.path());
    EXPECT_EQ(2, r.status) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("steps: must be an array")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("1 steps, every expectation held")) << r.out;
}

TEST(SimulatorCrashes, CrashIsReportedWithItsStepAndTheNextFileRuns) {
    TempScenario after(
        R"({"steps": [{"set_properties": {"a.b": "1"}, "expect": {"properties": {"a.b": "1"}}}]})");
    CamextRun r = camext("run " + simFile("crash.json") + " " + after.path());
    EXPECT_EQ(1, r.status) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("CRASH in [steps[1]]")) << r.out;
    // Nothing after the crash played in that file, and the next file played in full.
    EXPECT_EQ(std::string::npos, r.out.find("[steps[2]]")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("1 steps, every expectation held")) << r.out;
}

TEST(SimulatorVirtualTime, ScheduledStepsFireInTimeOrderInsideTheStepThatMovesTime) {
    CamextRun r = camext("run --json " + simFile("schedule_order.json") + " 2>/dev/null");
    EXPECT_EQ(0, r.status) << r.out;
    std::vector<std::string> order;
    for (const auto& l : lines(r.out)) {
        if (l.find("\"path\": \"steps[") == std::string::npos) continue;
        order.push_back(l.substr(l.find("\"path\": \"") + 9, 25));
    }
    // Records arrive as steps finish: the scheduled ones inside steps[3] before it.
    ASSERT_EQ(8u, order.size()) << r.out;
    EXPECT_EQ(0u, order[3].find("steps[1].schedule.step")) << r.out;
    EXPECT_EQ(0u, order[4].find("steps[0].schedule.step")) << r.out;
    EXPECT_EQ(0u, order[5].find("steps[3]")) << r.out;
    EXPECT_EQ(0u, order[6].find("steps[2].schedule.step")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\"at_ms\": 30.0")) << r.out;
    EXPECT_NE(std::string::npos, r.out.find("\"at_ms\": 60.0")) << r.out;
}

}  // namespace
