// Every wait of the rules ends at its bound, and no input reaches outside the 22 client slots.
// Runs in virtual time: sleeps move the clock without taking real time.
#include <gtest/gtest.h>
#include <limits.h>

#include <string>

#include "EvictionTestSupport.h"
#include "ExtFactory.h"
#include "platform/CameraServiceExtImpl_mtk.h"
#include "utils/Env.h"

namespace {

using namespace android;
using evictiontest::EvictionTest;
using evictiontest::Exposed;

constexpr nsecs_t kMs = 1000000LL;

class EvictionBounds : public EvictionTest {
protected:
    // Virtual milliseconds one decision takes.
    template <typename Ext>
    int64_t msTaken(Ext& ext, int cameraId, const char* package, bool* verdict) {
        const nsecs_t start = vantu::monotonicNs();
        *verdict = ext.customIntelligentEviction(cameraId, String16(package));
        return (vantu::monotonicNs() - start) / kMs;
    }

    testsupport::VirtualTime mTime;
};

// Each bounded wait of the base rules, with an occupant that never leaves: the verdict is a
// refusal after exactly the rule's bound.
TEST_F(EvictionBounds, WaitsForAnOccupantThatStaysEndAtTheirBound) {
    struct Row {
        int slot;
        const char* occupant;
        bool disconnecting;
        int cameraId;
        const char* caller;
        int64_t ms;
    };
    const Row rows[] = {
        {0, "com.app", true, 1, "android", 300},            // ten sleeps for the system client
        {3, "com.vantu.camera", false, 1, "android", 300},  // an idle system camera
        {0, "com.viber.voip", true, 1, "org.codeaurora.ims", 600},  // twenty sleeps for Viber
        {21, "com.mediatek.ims", true, 0, "com.app", 1500},         // the MediaTek IMS poll
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.caller) + " beside " + row.occupant);
        sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
        occupy(*ext, row.slot, row.occupant, false);
        if (row.disconnecting) ext->setDoingDisconnect(true);
        bool admitted = true;
        EXPECT_EQ(row.ms, msTaken(*ext, row.cameraId, row.caller, &admitted));
        EXPECT_FALSE(admitted);
    }
}

// Disconnects that never report back cost 600 ms each, and the waiter mark does not outlive
// the wait: a late afterDisconnect finds nobody to signal.
TEST_F(EvictionBounds, FreeDomWaitStopsAt600msPerDisconnect) {
    testsupport::LogCapture log;
    sp<Exposed<CameraServiceExtImpl_mtk>> ext = new Exposed<CameraServiceExtImpl_mtk>();
    occupy(*ext, 0, "com.a", false);
    occupy(*ext, 5, "com.b", false);
    ext->armFreeDom(true);
    bool admitted = false;
    EXPECT_EQ(1200, msTaken(*ext, 1, "com.app", &admitted));
    EXPECT_TRUE(admitted);
    EXPECT_FALSE(ext->freeDomArmed());
    EXPECT_FALSE(ext->waitPending());
    EXPECT_EQ(2u, log.count("waitRelative result " + std::to_string(-TIMED_OUT)));
    ext->afterDisconnect(String8("0"), String16("com.a"), nullptr);
    EXPECT_FALSE(log.contains("afterDisconnect, signal"));
}

TEST_F(EvictionBounds, DeadOccupantCountsAsEmpty) {
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    {
        sp<hostctl::HostCameraClient> gone =
            new hostctl::HostCameraClient(String8("0"), String16("com.vantu.camera"), 10100, 5000);
        ext->storeClient(0, gone);
    }
    ext->setDoingDisconnect(true);
    bool admitted = false;
    EXPECT_EQ(0, msTaken(*ext, 1, "android", &admitted));
    EXPECT_TRUE(admitted);
}

// The front/rear rule sums two camera ids the server passes unchecked.
TEST_F(EvictionBounds, FrontRearSwitchSumsExtremeIdsWithoutOverflow) {
    sp<Exposed<CameraServiceExtImpl_mtk>> ext = new Exposed<CameraServiceExtImpl_mtk>();
    ext->setCurrentPackageName(String16("com.app"));
    ext->customSaveIntelligentEviction(INT_MAX, String16("com.app"));
    EXPECT_TRUE(ext->customIntelligentEviction(INT_MAX, String16("com.app")));
    EXPECT_TRUE(ext->customIntelligentEviction(INT_MIN, String16("com.app")));
    ext->customSaveIntelligentEviction(INT_MIN, String16("com.app"));
    EXPECT_TRUE(ext->customIntelligentEviction(INT_MIN, String16("com.app")));
}

// Every chip, every slot full, ids and names the server should never send: each decision
// stays inside the table and inside the longest bound of any rule.
class OddInputs : public EvictionTest, public ::testing::WithParamInterface<BoardEntry> {
protected:
    testsupport::VirtualTime mTime;
};

TEST_P(OddInputs, StayInsideTheTableAndTheBounds) {
    writeConfig(R"("feature_explorer_enable": true, "feature_fold_enable": true,
        "isForceEviction": true, "disconnect_wait_list": ["com.app"],
        "enable_occupied_duration_list": ["", "com.app"])");
    sp<CameraServiceExtImpl> ext = GetParam().create();
    for (int id = 0; id < kMaxCameraSlots; ++id) occupy(*ext, id, id % 2 ? "com.app" : "", false);
    const std::string huge(100000, 'p');
    const char* names[] = {"",           huge.c_str(),     "android",
                           "client.pid", "com.aiunit.aon", "org.codeaurora.ims"};
    const int ids[] = {-1, INT_MIN, 22, 1000, INT_MAX};
    for (const char* name : names) {
        for (int id : ids) {
            const nsecs_t start = vantu::monotonicNs();
            ext->customIntelligentEviction(id, String16(name));
            EXPECT_LE(vantu::monotonicNs() - start, 1500 * kMs)
                << GetParam().className << " id " << id << " name length " << strlen(name);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    AllBoards, OddInputs,
    ::testing::ValuesIn(std::vector<BoardEntry>(boardTable(), boardTable() + boardTableSize())),
    [](const ::testing::TestParamInfo<BoardEntry>& info) {
        return std::string(info.param.platform);
    });

}  // namespace
