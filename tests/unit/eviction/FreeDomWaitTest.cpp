// The FreeDom wait and afterDisconnect's signal meet across threads without a lost wake-up.
// Real time and real threads: a lost wake-up shows as a 600 ms timeout and its log line.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

#include "EvictionTestSupport.h"
#include "platform/CameraServiceExtImpl_mtk.h"

namespace {

using namespace android;
using evictiontest::EvictionTest;
using evictiontest::Exposed;

class FreeDomWait : public EvictionTest {
protected:
    void TearDown() override {
        for (std::thread& t : mThreads) t.join();
        mThreads.clear();
        EvictionTest::TearDown();
    }

    // A client on `id` whose server finishes its disconnect on another thread, `delayUs` later.
    void occupyWithAsyncClose(CameraServiceExtImpl& ext, int id, int delayUs) {
        sp<hostctl::HostCameraClient> client = occupy(ext, id, "com.occupant", false);
        CameraServiceExtImpl* target = &ext;
        client->setOnDisconnect([this, target, delayUs](hostctl::HostCameraClient& c) {
            const String8 cameraId = c.cameraId();
            const String16 package = c.getPackageName();
            mThreads.emplace_back([target, cameraId, package, delayUs] {
                if (delayUs > 0) std::this_thread::sleep_for(std::chrono::microseconds(delayUs));
                target->beforeDisconnect(false, false, cameraId);
                target->afterDisconnect(cameraId, package, nullptr);
            });
        });
    }

    std::vector<std::thread> mThreads;
};

// The signal may come before the waiter arms its wait, during it, or well into it; each
// round must end by the signal.
TEST_F(FreeDomWait, EndsWithTheDisconnectFinishedOnAnotherThread) {
    testsupport::LogCapture log;
    sp<Exposed<CameraServiceExtImpl_mtk>> ext = new Exposed<CameraServiceExtImpl_mtk>();
    for (int round = 0; round < 40; ++round) {
        occupyWithAsyncClose(*ext, round % 3, (round % 4) * 500);
        occupyWithAsyncClose(*ext, 10, (round % 5) * 300);
        ext->armFreeDom(true);
        EXPECT_TRUE(ext->customIntelligentEviction(20, String16("com.app")));
        for (std::thread& t : mThreads) t.join();
        mThreads.clear();
        EXPECT_FALSE(ext->waitPending());
        EXPECT_EQ(nullptr, ext->promoteClient(round % 3));
    }
    EXPECT_FALSE(log.contains("waitRelative result")) << log.dump();
}

// The base rule set never arms the waiter mark itself, so its FreeDom path does not wait.
TEST_F(FreeDomWait, BaseRulesDoNotWaitForTheDisconnect) {
    testsupport::LogCapture log;
    sp<Exposed<CameraServiceExtImpl>> ext = new Exposed<CameraServiceExtImpl>();
    occupy(*ext, 0, "com.occupant", false);
    ext->armFreeDom(true);
    EXPECT_TRUE(ext->customIntelligentEviction(1, String16("com.app")));
    EXPECT_FALSE(ext->waitPending());
    EXPECT_FALSE(log.contains("waitRelative result"));
    EXPECT_EQ(1, mClients[0]->disconnectCalls());
}

}  // namespace
