// The grace wait for an authorisation still on its way, and the manager under concurrent use.
#include <android/log.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <utils/String8.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "AuthTestSupport.h"
#include "hostctl/Binder.h"
#include "utils/Env.h"

namespace {

using android::sp;
using android::String8;
using authtest::AuthTest;
using authtest::kMs;

using authtest::kApp;
using authtest::kAppUid;

class AuthWaitTest : public AuthTest {
protected:
    // Runs `work` once, `afterMs` into the next wait, as a binder thread would.
    void scheduleOnce(nsecs_t afterMs, std::function<void()> work) {
        mPending.push_back({android::vantu::monotonicNs() + afterMs * kMs, std::move(work)});
        hostctl::setScheduler([this](nsecs_t deadline) {
            for (auto& item : mPending) {
                if (item.work == nullptr || item.at > deadline) continue;
                hostctl::advanceTimeTo(item.at);
                auto work = std::move(item.work);
                item.work = nullptr;
                work();
                return true;
            }
            return false;
        });
    }

    struct Pending {
        nsecs_t at;
        std::function<void()> work;
    };
    std::vector<Pending> mPending;
};

TEST_F(AuthWaitTest, WaitGivesUpAfter500MsAndLogsTheFailure) {
    const nsecs_t start = android::vantu::monotonicNs();
    EXPECT_FALSE(mManager->wait(kAppUid, String8(kApp), false, false));
    EXPECT_EQ(500 * kMs, android::vantu::monotonicNs() - start);

    size_t failures = 0;
    for (const auto& line : mLogs.lines()) {
        if (line.text.find("wait auth result failed") == std::string::npos) continue;
        ++failures;
        EXPECT_EQ(ANDROID_LOG_ERROR, line.priority);
    }
    EXPECT_EQ(1u, failures) << mLogs.dump();
}

TEST_F(AuthWaitTest, TimedOutWaitStillAnswersFromTheMaps) {
    mManager->addAuthResultInfo(1, kAppUid, 0, String8(kApp));
    EXPECT_TRUE(mManager->wait(kAppUid, String8(kApp), true, true));
    EXPECT_TRUE(mManager->wait(20000, String8("com.ss.android.ugc.aweme"), true, true));
}

// A result for the waiting app ends the wait with true: authorization_sdk_sessions.json.
TEST_F(AuthWaitTest, AnyResultWakesTheWaitOnceAndItAnswersWithoutWaitingAgain) {
    // The first add is for another uid; the wait must not go back to sleep for the second.
    scheduleOnce(100, [this] { mManager->addAuthResultInfo(2, 20000, 0, String8("com.other")); });
    scheduleOnce(300, [this] { mManager->addAuthResultInfo(1, kAppUid, 0, String8(kApp)); });
    const nsecs_t start = android::vantu::monotonicNs();
    EXPECT_FALSE(mManager->wait(kAppUid, String8(kApp), false, true));
    EXPECT_EQ(100 * kMs, android::vantu::monotonicNs() - start);
    EXPECT_FALSE(mLogs.contains("wait auth result failed"));
}

// Adds take the wait lock inside the map lock, and waits answer through the map lock: the
// manager must never hold them in the opposite order. Real time, so waits really block and wake.
TEST(AuthConcurrencyTest, AddsWaitsChecksAndDeathsFromManyThreadsFinish) {
    hostctl::useRealTime();
    testsupport::LogCapture quiet;  // thousands of death lines
    sp<android::AuthAppManager> manager = android::AuthAppManagerTestPeer::create();
    constexpr int kAdders = 3;
    constexpr int kWaiters = 3;
    constexpr int kWaitsEach = 20;
    std::atomic<int> waitersLeft{kWaiters};
    std::atomic<int> running{kAdders + kWaiters + 1};
    std::vector<std::thread> threads;

    for (int a = 0; a < kAdders; ++a) {
        threads.emplace_back([&, a] {
            // Keep results coming until every waiter is done, so no wait runs to its time-out.
            for (int i = 0; waitersLeft.load() > 0; ++i) {
                const int uid = 10000 + (i % 8);
                manager->addAuthResultInfo(a, uid, i, String8::format("com.app%d", i % 3));
                manager->removeAuthResultInfo(uid + 1, String8("com.app1"));
                std::this_thread::yield();
            }
            running.fetch_sub(1);
        });
    }
    for (int w = 0; w < kWaiters; ++w) {
        threads.emplace_back([&, w] {
            int client = 0;
            for (int i = 0; i < kWaitsEach; ++i) {
                manager->wait(10000 + i % 8, String8("com.app0"), i % 2 == 0, w % 2 == 0);
                manager->checkAuthResult(w, 10000 + i % 8, String8("com.app0"), &client);
                manager->isAuthedClient(&client);
            }
            waitersLeft.fetch_sub(1);
            running.fetch_sub(1);
        });
    }
    threads.emplace_back([&] {
        for (int i = 0; waitersLeft.load() > 0; ++i) {
            sp<hostctl::HostBinder> binder = new hostctl::HostBinder("sdk", "");
            manager->setDeathRecipient(binder, i % 3, 1000);
            binder->kill();
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        running.fetch_sub(1);
    });

    // A deadlock never ends: report it instead of hanging the run.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (running.load() > 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            fprintf(stderr, "AuthConcurrencyTest: threads still blocked after 60 s: deadlock\n");
            abort();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    for (auto& t : threads) t.join();

    // No lock was left held and the maps still answer.
    manager->addAuthResultInfo(1, 10099, 0, String8("com.after"));
    EXPECT_TRUE(manager->wait(10099, String8("com.after"), true, true));
}

}  // namespace
