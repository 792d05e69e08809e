// camext run --trace: the example tour's trace is a valid Chrome JSON trace with the tracks,
// hook slices, atrace sections and side effects a camera engineer looks for, on virtual time.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <set>
#include <sstream>

#include "sim/Json.h"
#include "unit/sim/SimRun.h"

namespace {

using camext::sim::Json;

class TraceTest : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/camext-trace-XXXXXX.json";
        const int fd = mkstemps(tmpl, 5);
        ASSERT_GE(fd, 0);
        close(fd);
        mPath = tmpl;
    }
    void TearDown() override { unlink(mPath.c_str()); }

    Json play(const std::string& scenario) {
        const auto run = simtest::camext("run --trace " + mPath + " " + scenario);
        EXPECT_EQ(0, run.status) << run.out;
        std::ifstream in(mPath);
        std::stringstream text;
        text << in.rdbuf();
        std::string error;
        Json doc = Json::parse(text.str(), &error);
        EXPECT_EQ("", error);
        return doc;
    }

    std::string mPath;
};

const Json* findEvent(const Json& events, const std::string& ph, const std::string& name) {
    for (const auto& e : events.items()) {
        if (e["ph"].asString() == ph && e["name"].asString() == name) return &e;
    }
    return nullptr;
}

TEST_F(TraceTest, ExampleTourOpensAsATimeline) {
    const Json doc = play(std::string(CAMEXT_SOURCE_DIR) + "/examples/device/tour.json");
    ASSERT_TRUE(doc.isObject());
    const Json& events = doc["traceEvents"];
    ASSERT_TRUE(events.isArray());
    ASSERT_GT(events.size(), 100u);

    std::set<std::string> tracks;
    for (const auto& e : events.items()) {
        ASSERT_TRUE(e["ph"].isString()) << e.dump();
        ASSERT_TRUE(e["pid"].isInt()) << e.dump();
        ASSERT_TRUE(e["tid"].isInt()) << e.dump();
        const std::string ph = e["ph"].asString();
        if (ph == "M" && e["name"].asString() == "thread_name") {
            tracks.insert(e["args"]["name"].asString());
        } else if (ph != "M") {
            ASSERT_TRUE(e["ts"].isNumber()) << e.dump();
            ASSERT_GE(e["ts"].asDouble(), 0.0) << e.dump();
        }
        if (ph == "X") {
            ASSERT_GE(e["dur"].asDouble(), 0.0) << e.dump();
        }
    }
    for (const char* t : {"camera 0", "camera 1", "binder transactions", "thread 1288"}) {
        EXPECT_TRUE(tracks.count(t)) << t;
    }

    // A slice per hook call, with its arguments and verdict.
    for (const char* hook : {"beforeConnect", "afterConnect", "IsNewRequest",
                             "onPrepareHalRequestsUpdateMetadata", "beforeMetadataSendToApp",
                             "onTransact", "SetUxthread", "afterEndConfigure", "beforeDisconnect"}) {
        EXPECT_NE(nullptr, findEvent(events, "X", hook)) << hook;
    }
    const Json* connect = findEvent(events, "X", "beforeConnect");
    ASSERT_NE(nullptr, connect);
    EXPECT_EQ("0", (*connect)["args"]["verdict"].asString());
    EXPECT_GE((*connect)["tid"].asInt(), 100);

    // The configuration that waits for the authorisation lasts its 120 ms of virtual time.
    bool waited = false;
    for (const auto& e : events.items()) {
        if (e["ph"].asString() == "X" && e["name"].asString() == "afterEndConfigure" &&
            e["dur"].asDouble() == 120000.0) {
            waited = true;
        }
    }
    EXPECT_TRUE(waited);

    // The library's atrace sections on the thread that made them, balanced.
    const Json* section = findEvent(events, "B", "SetUxthread");
    ASSERT_NE(nullptr, section);
    EXPECT_EQ(1288, (*section)["tid"].asInt());
    int depth = 0;
    for (const auto& e : events.items()) {
        if (e["cat"].asString() != "atrace") continue;
        depth += e["ph"].asString() == "B" ? 1 : e["ph"].asString() == "E" ? -1 : 0;
        ASSERT_GE(depth, 0);
    }
    EXPECT_EQ(0, depth);
    EXPECT_NE(nullptr, findEvent(events, "B", "Already set 1288 to 1, No need to set again"));

    // Side effects as instant events.
    EXPECT_NE(nullptr, findEvent(events, "i", "service performance: [\"136\", \"1200\", \"1288\"]"));
    EXPECT_NE(nullptr, findEvent(events, "i", "client_events: 0:disconnect"));
    EXPECT_NE(nullptr, findEvent(events, "i", "property vantu.camera.packname = com.vantu.camera"));
}

TEST_F(TraceTest, UnwritableTraceFileIsAnError) {
    const auto run =
        simtest::camext("run --trace /nonexistent/dir/trace.json " +
                        std::string(CAMEXT_SOURCE_DIR) + "/tests/scenarios/jpeg_buffer_qcom.json");
    EXPECT_EQ(2, run.status);
    EXPECT_TRUE(simtest::contains(run.out, "cannot write the trace")) << run.out;
}

}  // namespace
