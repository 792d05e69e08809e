// The comparisons behind each expectation, on a hand-made step record.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "sim/StepRun.h"

namespace {

using namespace camext::sim;

struct Fixture {
    Step step;
    StepRun run{step};
    std::map<std::string, std::string> props;

    std::vector<Verdict> check(const std::string& expectJson) {
        std::string error;
        Json expect = Json::parse(expectJson, &error);
        EXPECT_TRUE(error.empty()) << error;
        return checkExpectations(expect, run, props);
    }
};

bool allOk(const std::vector<Verdict>& v) {
    for (const auto& x : v) {
        if (!x.ok) return false;
    }
    return !v.empty();
}

TEST(SimExpectReturn, BoolResultsMatchZeroAndOneAndAMissingVerdictFails) {
    Fixture f;
    EXPECT_FALSE(allOk(f.check(R"({"return": 0})")));  // the step had no main call
    f.run.setVerdict("isPrivilegedApp", Json(true));
    EXPECT_TRUE(allOk(f.check(R"({"return": true})")));
    EXPECT_TRUE(allOk(f.check(R"({"return": 1})")));
    EXPECT_FALSE(allOk(f.check(R"({"return": 0})")));
    f.run.setVerdict("afterEndConfigure", Json::object({{"serviceSpecificError", 1}}));
    EXPECT_TRUE(allOk(f.check(R"({"return": {"serviceSpecificError": 1}})")));
    EXPECT_FALSE(allOk(f.check(R"({"return": 0})")));
}

TEST(SimExpectProperties, EmptyCountsAsUnsetAndEachNameIsItsOwnVerdict) {
    Fixture f;
    f.props = {{"a", ""}, {"b", "x"}};
    auto v = f.check(R"({"properties": {"a": null, "b": "x", "c": null, "d": "1"}})");
    ASSERT_EQ(4u, v.size());
    EXPECT_TRUE(v[0].ok);
    EXPECT_TRUE(v[1].ok);
    EXPECT_TRUE(v[2].ok);
    EXPECT_FALSE(v[3].ok);
    EXPECT_EQ("properties d", v[3].key);
    EXPECT_TRUE(v[3].actual.isNull());
}

TEST(SimExpectEffects, ListsMustMatchExactlyAndInOrder) {
    Fixture f;
    f.run.effect("client_events", "0:notifyError(0)");
    f.run.effect("client_events", "0:disconnect");
    EXPECT_TRUE(allOk(f.check(R"j({"client_events": ["0:notifyError(0)", "0:disconnect"]})j")));
    EXPECT_FALSE(allOk(f.check(R"j({"client_events": ["0:disconnect", "0:notifyError(0)"]})j")));
    EXPECT_FALSE(allOk(f.check(R"j({"client_events": ["0:notifyError(0)"]})j")));
    // Nothing happened of a kind: only the empty list holds.
    EXPECT_TRUE(allOk(f.check(R"({"motor": []})")));
    EXPECT_FALSE(allOk(f.check(R"({"motor": ["1,5000,com.a,1"]})")));
}

TEST(SimExpectServices, OnlyTheNamedServicesAreCompared) {
    Fixture f;
    f.run.serviceCall("performance", Json::array({"136", "5000", "5001"}));
    f.run.serviceCall("battery", "start 0 10100");
    auto v =
        f.check(R"({"services": {"performance": [["136", "5000", "5001"]], "camera_mdm": []}})");
    EXPECT_TRUE(allOk(v));
    EXPECT_FALSE(allOk(f.check(R"({"services": {"battery": []}})")));
}

TEST(SimExpectLog, EachNeedleIsCheckedAgainstEveryLineOfTheStep) {
    Fixture f;
    f.run.log.push_back({6, "VantuCameraService", "CameraServiceExtImpl.cpp: 1 beforeConnect x"});
    f.run.log.push_back({4, "VantuCameraService", "JsonParser.cpp: 2 y"});
    auto v = f.check(R"({"log": ["beforeConnect", "zzz"], "log_absent": ["JsonParser", "qqq"]})");
    ASSERT_EQ(4u, v.size());
    EXPECT_TRUE(v[0].ok);
    EXPECT_FALSE(v[1].ok);
    EXPECT_FALSE(v[2].ok);
    EXPECT_EQ(Json::array({"JsonParser.cpp: 2 y"}), v[2].actual);
    EXPECT_TRUE(v[3].ok);
}

TEST(SimExpectMetadata, ValuesCompareAsEntries) {
    EXPECT_TRUE(metadataValuesMatch(Json(3), Json::array({3})));
    EXPECT_TRUE(metadataValuesMatch(Json("ab"), Json::array({97, 98, 0})));
    EXPECT_FALSE(metadataValuesMatch(Json("ab"), Json::array({97, 98})));
    // Float entries hold about seven digits: 4.71 stored as a float reads back a hair off.
    EXPECT_TRUE(metadataValuesMatch(Json(4.71), Json(static_cast<double>(4.71f))));
    EXPECT_FALSE(metadataValuesMatch(Json(4.71), Json(4.7101)));
    EXPECT_FALSE(metadataValuesMatch(Json::array({1, 2}), Json::array({1, 2, 3})));
    EXPECT_FALSE(metadataValuesMatch(Json(1), Json()));
    // Integers compare exactly, even when large.
    EXPECT_FALSE(metadataValuesMatch(Json(9007199254740993LL), Json(9007199254740992LL)));
}

TEST(SimExpectMetadata, NullMeansAbsent) {
    Fixture f;
    Json after = Json::object({{"android.flash.mode", Json::array({2})}});
    f.run.metadataEntry = [after](const std::string& tag) { return after[tag]; };
    auto v =
        f.check(R"({"metadata": {"android.flash.mode": null, "android.control.aeMode": null}})");
    ASSERT_EQ(2u, v.size());
    EXPECT_FALSE(v[0].ok);
    EXPECT_TRUE(v[1].ok);
}

}  // namespace
