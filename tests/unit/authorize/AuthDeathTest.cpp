// Death of an authorising caller's binder: what it sweeps and what it deliberately leaves.
#include <android/log.h>
#include <gtest/gtest.h>
#include <utils/String8.h>

#include "AuthTestSupport.h"
#include "hostctl/Binder.h"

namespace {

using android::sp;
using android::String8;
using authtest::AuthTest;
using authtest::kDay;
using authtest::kSecond;

using authtest::kApp;
using authtest::kAppPid;
using authtest::kAppUid;

class AuthDeathTest : public AuthTest {
protected:
    void TearDown() override {
        hostctl::clearBinders();
        AuthTest::TearDown();
    }
};

TEST_F(AuthDeathTest, DeathSweepsExpiredResultsAndTheClientOfItsPidButKeepsItsOwnResult) {
    int deadPidClient = 0;
    int otherPidClient = 0;
    mManager->addAuthResultInfo(7000, 10300, 0, String8("com.example.stale"));
    hostctl::advanceTime((kDay + 1) * kSecond);
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    mManager->addAuthResultInfo(6000, 10200, 0, String8("com.example.other"));
    mManager->checkAuthResult(kAppPid, kAppUid, String8(kApp), &deadPidClient);
    mManager->checkAuthResult(6000, 10200, String8("com.example.other"), &otherPidClient);

    sp<hostctl::HostBinder> caller = hostctl::createBinder("sdk.caller");
    EXPECT_EQ(0, mManager->setDeathRecipient(caller, kAppPid, kAppUid));
    EXPECT_EQ(1u, caller->linkCount());
    mLogs.clear();
    ASSERT_TRUE(hostctl::killBinder("sdk.caller"));

    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
    EXPECT_FALSE(mManager->isAuthedClient(10300, String8("com.example.stale"), false, true));
    EXPECT_TRUE(mManager->isAuthedClient(10200, String8("com.example.other"), true, true));
    EXPECT_FALSE(mManager->isAuthedClient(&deadPidClient));
    EXPECT_TRUE(mManager->isAuthedClient(&otherPidClient));

    // The two death lines are warnings of the platform log, not lines of the library's tag.
    size_t deathLines = 0;
    for (const auto& line : mLogs.lines()) {
        if (line.text.find("Java client's binder died") == std::string::npos) continue;
        ++deathLines;
        EXPECT_EQ(ANDROID_LOG_WARN, line.priority);
        EXPECT_NE("VantuCameraService", line.tag);
    }
    EXPECT_EQ(2u, deathLines) << mLogs.dump();
    EXPECT_TRUE(
        mLogs.contains("binderDied: Java client's binder died, pid: 5000, uid: 10100, "
                       "mAuthResultMap.size 2, m_authedClients.size :1,"
                       "mAuthAppClientMap.size:0"))
        << mLogs.dump();
}

TEST_F(AuthDeathTest, DeathOfAnUnregisteredBinderChangesNothing) {
    int client = 0;
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    mManager->checkAuthResult(kAppPid, kAppUid, String8(kApp), &client);
    hostctl::advanceTime((kDay + 1) * kSecond);

    sp<hostctl::HostBinder> stranger = hostctl::createBinder("stranger");
    mManager->binderDied(android::wp<android::IBinder>(sp<android::IBinder>(stranger)));

    // No registered caller matched, so not even the expired result was swept.
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), false, true));
    EXPECT_TRUE(mManager->isAuthedClient(&client));
    EXPECT_EQ(1u, mLogs.count("Java client's binder died."));
    EXPECT_EQ(0u, mLogs.count("Java client's binder died, pid"));
}

TEST_F(AuthDeathTest, ReRegistrationFromTheSamePidUnlinksTheOldBinder) {
    int client = 0;
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    mManager->checkAuthResult(kAppPid, kAppUid, String8(kApp), &client);

    sp<hostctl::HostBinder> oldBinder = hostctl::createBinder("sdk.old");
    sp<hostctl::HostBinder> newBinder = hostctl::createBinder("sdk.new");
    mManager->setDeathRecipient(oldBinder, kAppPid, kAppUid);
    mManager->setDeathRecipient(newBinder, kAppPid, kAppUid);
    EXPECT_EQ(0u, oldBinder->linkCount());
    EXPECT_EQ(1u, newBinder->linkCount());

    hostctl::killBinder("sdk.old");
    EXPECT_TRUE(mManager->isAuthedClient(&client));
    hostctl::killBinder("sdk.new");
    EXPECT_FALSE(mManager->isAuthedClient(&client));
}

}  // namespace
