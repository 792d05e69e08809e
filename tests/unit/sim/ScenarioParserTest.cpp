// Reading scenario files into the model: defaults, the caller chain, and the paths of faults.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/Player.h"
#include "sim/Scenario.h"

namespace {

using namespace camext::sim;

struct Parsed {
    bool ok;
    Scenario scenario;
    std::vector<ParseError> errors;
    bool hasError(const std::string& path, const std::string& text) const {
        for (const auto& e : errors) {
            if (e.path == path && e.message.find(text) != std::string::npos) return true;
        }
        return false;
    }
    std::string dump() const {
        std::string out;
        for (const auto& e : errors) out += e.path + ": " + e.message + "\n";
        return out;
    }
};

Parsed parse(const std::string& text, const std::string& file = "/work/x/scenario.json") {
    Parsed p;
    p.ok = parseScenario(text, file, tagChecker(), &p.scenario, &p.errors);
    return p;
}

TEST(ScenarioDefaults, AnEmptyDeviceIsTheDocumentedPhone) {
    Parsed p = parse(R"({"steps": []})");
    ASSERT_TRUE(p.ok) << p.dump();
    const Device& d = p.scenario.device;
    EXPECT_EQ("scenario.json", p.scenario.name);
    ASSERT_EQ(2u, d.cameras.size());
    EXPECT_EQ("0", d.cameras[0].id);
    EXPECT_EQ("back", d.cameras[0].facing);
    EXPECT_EQ("front", d.cameras[1].facing);
    EXPECT_EQ(1u, d.vendorId);
    EXPECT_TRUE(d.allVendorTags);
    EXPECT_FALSE(d.vendorTagsGlobal);
    EXPECT_FALSE(d.hasConfig);
    EXPECT_TRUE(d.apsLibrary.isNull());
}

TEST(ScenarioDefaults, NamedCamerasReplaceTheDefaultPair) {
    Parsed p = parse(R"({"device": {"cameras": {"2": {"facing": "external"}}}, "steps": []})");
    ASSERT_TRUE(p.ok) << p.dump();
    ASSERT_EQ(1u, p.scenario.device.cameras.size());
    EXPECT_EQ("external", p.scenario.device.cameras[0].facing);
}

TEST(ScenarioCallers, EachStepKeepsThePreviousCallerUntilOneIsGiven) {
    Parsed p = parse(R"({"steps": [
        {"hook": "isCtsCamera"},
        {"hook": "isCtsCamera", "as": {"uid": 10200, "pid": 7, "permissions": ["p"]}},
        {"schedule": {"after_ms": 5, "step": {"hook": "isCtsCamera", "as": {"uid": 1}}}},
        {"hook": "isCtsCamera"}]})");
    ASSERT_TRUE(p.ok) << p.dump();
    const auto& s = p.scenario.steps;
    EXPECT_EQ(10100, s[0].caller.uid);
    EXPECT_EQ(5000, s[0].caller.pid);
    EXPECT_TRUE(s[0].caller.permissions.empty());
    EXPECT_EQ(10200, s[1].caller.uid);
    ASSERT_TRUE(s[2].inner);
    EXPECT_EQ(1, s[2].inner->caller.uid);
    // A scheduled step runs at another time: its caller does not pass to the next step.
    EXPECT_EQ(10200, s[3].caller.uid);
    EXPECT_EQ(std::vector<std::string>{"p"}, s[3].caller.permissions);
    EXPECT_EQ("steps[2].schedule.step", s[2].inner->path);
}

TEST(ScenarioFaults, EveryFaultIsReportedWithItsPath) {
    Parsed p =
        parse(R"({"nmae": "x", "device": {"vendor_id": -1, "cameras": {"0": {"facing": "up"}}},
        "steps": [{"open": {"camera": "0", "package": "a", "apilevel": 2}},
                  {"close": {"camera": "0"}, "hook": "flush"},
                  {"configure": {"camera": "0", "streams": [{"id": 1, "width": 1, "height": 1},
                                                            {"id": 1, "width": 2, "height": 2}]}}]})");
    EXPECT_FALSE(p.ok);
    EXPECT_TRUE(p.hasError("nmae", "unknown key")) << p.dump();
    EXPECT_TRUE(p.hasError("device.vendor_id", "between 0")) << p.dump();
    EXPECT_TRUE(p.hasError("device.cameras[\"0\"].facing", "\"back\"")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[0].open.apilevel", "unknown key")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[1]", "2 actions")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[2].configure.streams[1].id", "used twice")) << p.dump();
}

TEST(ScenarioFaults, ConfigFilesResolveNextToTheScenario) {
    Parsed both = parse(R"({"device": {"config": {}, "config_file": "c.json"}, "steps": []})");
    EXPECT_TRUE(both.hasError("device.config_file", "not both")) << both.dump();
    Parsed missing =
        parse(R"({"device": {"config_file": "nope/c.json"}, "steps": []})", "/tmp/dir/s.json");
    EXPECT_TRUE(missing.hasError("device.config_file", "/tmp/dir/nope/c.json")) << missing.dump();
}

TEST(ScenarioHookArgs, ArgumentsAreCheckedAgainstTheOperation) {
    struct Case {
        const char* step;
        const char* path;
        const char* text;
    } cases[] = {
        {R"({"hook": "isPrivilegedApp", "args": [1, 2]})", "steps[0].args[1]", "takes 1"},
        {R"({"hook": "isPrivilegedApp", "args": {"pid": 1}})", "steps[0].args.pid",
         "not a parameter of isPrivilegedApp (uid)"},
        {R"({"hook": "beforeSetTorchMode", "args": {"cameraId": 0}})", "steps[0].args.cameraId",
         "must be a string"},
        {R"({"hook": "isCtsCamera", "args": {"x": 1}})", "steps[0].args.x", "takes none"},
        {R"({"hook": "parseResult", "args": [{"android.control.aeTargetFpsRange": "x"}]})",
         "steps[0].args[0][\"android.control.aeTargetFpsRange\"]", "only for a byte tag"},
        {R"({"hook": "onTransact", "args": {"parcel": [{"int33": 1}]}})",
         "steps[0].args.parcel[0].int33", "unknown parcel item"},
        {R"({"hook": "isPrivilegedApp", "args": 3})", "steps[0].args", "array or an object"},
    };
    for (const auto& c : cases) {
        Parsed p = parse(std::string(R"({"steps": [)") + c.step + "]}");
        EXPECT_TRUE(p.hasError(c.path, c.text)) << c.step << "\n" << p.dump();
    }
    // Camera ids of integer parameters may be written either way; omitted ones are neutral.
    Parsed ok = parse(R"({"steps": [
        {"hook": "customIntelligentEviction", "args": ["1", "com.a"]},
        {"hook": "customIntelligentEviction", "args": {"cameraId": 1}},
        {"hook": "openAON", "args": {"name": null}}]})");
    EXPECT_TRUE(ok.ok) << ok.dump();
}

TEST(ScenarioExpectations, KeysAreRefusedWhereNothingCanHoldThem) {
    Parsed p = parse(R"({"steps": [
        {"set_properties": {"a": "1"}, "expect": {"return": 0}},
        {"open": {"camera": "0", "package": "p"}, "expect": {"reply": []}},
        {"transact": {"code": 1}, "expect": {"return": {"serviceSpecificError": "x"}}},
        {"configure": {"camera": "0"}, "expect": {"hal_streams": ["0"], "torch_status": [{"cameraId": 0}]}}]})");
    EXPECT_TRUE(p.hasError("steps[0].expect.return", "checked only after")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[1].expect.reply", "checked only after transact")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[2].expect.return.serviceSpecificError", "integer")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[3].expect.hal_streams[0]", "integer")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[3].expect.torch_status[0].cameraId", "string")) << p.dump();
    EXPECT_TRUE(p.hasError("steps[3].expect.torch_status[0].status", "required")) << p.dump();
}

}  // namespace
