// How expectations of each kind are compared and how their failures read.
#include <gtest/gtest.h>

#include <string>

#include "SimRun.h"

namespace {

using simtest::camext;
using simtest::CamextRun;
using simtest::contains;
using simtest::lineWith;
using simtest::simFile;
using simtest::TempScenario;

TEST(SimulatorMetadataExpectations, NumbersFloatsAndAbsenceCompareAsEntries) {
    CamextRun r = camext("run " + simFile("metadata_expectations.json"));
    EXPECT_EQ(1, r.status) << r.out;
    // The first step holds: a float read back from the packet equals the file's decimal, a
    // single number equals a one-value array, and null means "no such entry".
    EXPECT_FALSE(contains(r.out, "FAIL expect metadata android.lens.focalLength")) << r.out;
    EXPECT_FALSE(contains(r.out, "FAIL expect metadata android.sensor.exposureTime")) << r.out;
    // The second fails twice, each with both sides.
    EXPECT_TRUE(lineWith(r.out, {"3", "| [1]"})) << r.out;
    EXPECT_TRUE(contains(r.out, "FAIL expect metadata android.flash.mode")) << r.out;
    EXPECT_TRUE(lineWith(r.out, {"(absent)", "| [2]"})) << r.out;
    EXPECT_TRUE(contains(r.out, "FAILED (1 of 2 steps)")) << r.out;
}

TEST(SimulatorMetadataExpectations, StringStandsForTheBytesOfAByteTag) {
    TempScenario file(R"({"steps": [{
        "hook": "parseResult",
        "args": {"metadata": {"com.vantu.packageName": "com.whatsapp"}},
        "expect": {"metadata": {"com.vantu.packageName": "com.whatsap"}}}]})");
    CamextRun r = camext("run " + file.path());
    EXPECT_EQ(1, r.status) << r.out;
    // The actual side reads as text too, not as a list of byte values.
    EXPECT_TRUE(lineWith(r.out, {"\"com.whatsap\"", "| \"com.whatsapp\""})) << r.out;
}

TEST(SimulatorMetadataExpectations, VendorTagsLeftOutOfTheDeviceCannotBeWritten) {
    TempScenario file(R"({"device": {"vendor_tags": []}, "steps": [{
        "hook": "parseResult", "args": {"metadata": {"com.vantu.device.state": 1}}}]})");
    CamextRun r = camext("run " + file.path());
    EXPECT_EQ(1, r.status) << r.out;
    EXPECT_TRUE(contains(r.out, "problem: cannot write the metadata: com.vantu.device.state"))
        << r.out;
}

TEST(SimulatorOtherExpectations, ReplyAndSideEffectsListExpectedBesideActual) {
    CamextRun r = camext("run " + simFile("reply_and_effects.json"));
    EXPECT_EQ(1, r.status) << r.out;
    EXPECT_TRUE(contains(r.out, "ok: return")) << r.out;
    EXPECT_TRUE(lineWith(r.out, {"! {\"int32\": 0}", "| {\"missing\": \"int32\"}"})) << r.out;
    EXPECT_TRUE(lineWith(r.out, {"! 0:disconnect", "| (none)"})) << r.out;
}

TEST(SimulatorOtherExpectations, LogExpectationsSeeTheLinesOfTheLibraryLoad) {
    // Without a configuration file the library says so while it is built; that line belongs to
    // the first step.
    TempScenario file(R"({"steps": [
        {"hook": "isEnableFwkTimer", "expect": {"log": ["fwk_config.json"]}},
        {"hook": "isEnableFwkTimer", "expect": {"log_absent": ["fwk_config.json"]}}]})");
    CamextRun r = camext("run " + file.path());
    EXPECT_EQ(0, r.status) << r.out;
    TempScenario configured(R"({"device": {"config": {"default": {}}}, "steps": [
        {"hook": "isEnableFwkTimer", "expect": {"log": ["fwk_config.json"]}}]})");
    r = camext("run " + configured.path());
    EXPECT_EQ(1, r.status) << r.out;
    EXPECT_TRUE(lineWith(r.out, {"fwk_config.json", "| \"no log line of this step contains it\""}))
        << r.out;
}

TEST(SimulatorVirtualTime, ScheduledStepThatNeverRunsFailsTheFile) {
    CamextRun r = camext("run " + simFile("never_reached.json"));
    EXPECT_EQ(1, r.status) << r.out;
    EXPECT_TRUE(contains(r.out, "[steps[0].schedule.step] never ran")) << r.out;
}

}  // namespace
