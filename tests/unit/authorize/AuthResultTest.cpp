// What the manager answers about uids, packages and connected clients, how long a result
// stays valid, and which switch creates the manager.
#include <gtest/gtest.h>
#include <utils/String8.h>

#include "AuthTestSupport.h"
#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"

namespace {

using android::String8;
using authtest::AuthTest;
using authtest::kDay;
using authtest::kSecond;
using authtest::kStartMonotonic;
using authtest::kStartWall;

using authtest::kApp;
using authtest::kAppPid;
using authtest::kAppUid;
constexpr char kAweme[] = "com.ss.android.ugc.aweme";

// ---- Queries by uid and package --------------------------------------------------------------

using AuthQueryTest = AuthTest;

TEST_F(AuthQueryTest, EmptyMapAuthorisesOnlyTheAlwaysAuthedPackage) {
    for (bool checkPeriod : {false, true}) {
        for (bool checkPackage : {false, true}) {
            EXPECT_TRUE(
                mManager->isAuthedClient(kAppUid, String8(kAweme), checkPeriod, checkPackage));
            EXPECT_FALSE(
                mManager->isAuthedClient(kAppUid, String8(kApp), checkPeriod, checkPackage));
        }
    }
    // A prefix or a differently cased name is another package.
    EXPECT_FALSE(
        mManager->isAuthedClient(kAppUid, String8("com.ss.android.ugc.awem"), false, false));
    EXPECT_FALSE(
        mManager->isAuthedClient(kAppUid, String8("COM.ss.android.ugc.aweme"), false, false));
}

TEST_F(AuthQueryTest, AlwaysAuthedPackageStaysAuthorisedBesideResultsOfOtherUidsOrPackages) {
    mManager->addAuthResultInfo(kAppPid, kAppUid, 1, String8(kApp));
    EXPECT_TRUE(mManager->isAuthedClient(20000, String8(kAweme), true, true));
    EXPECT_FALSE(mManager->isAuthedClient(20000, String8("com.other"), true, true));
    // Its own uid holds a result for another package: the package check falls through to it.
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kAweme), true, true));
}

TEST_F(AuthQueryTest, ResultAuthorisesItsUidAndPackageOnly) {
    EXPECT_EQ(0, mManager->addAuthResultInfo(kAppPid, kAppUid, 7, String8(kApp)));
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid + 1, String8(kApp), true, true));
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid, String8("com.example.other"), true, true));
}

TEST_F(AuthQueryTest, WithoutPackageCheckAnyPackageOfTheUidIsAuthorised) {
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8("com.example.other"), false, false));
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8("com.example.other"), true, false));
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid + 1, String8("com.example.other"), false, false));
}

// One result per uid, a later one replacing it: transactions_auth.json.

TEST_F(AuthQueryTest, RemoveTakesTheResultOnlyWhenThePackageMatches) {
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    mManager->removeAuthResultInfo(kAppUid, String8("com.example.other"));
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), false, true));
    mManager->removeAuthResultInfo(kAppUid + 1, String8(kApp));
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), false, true));
    mManager->removeAuthResultInfo(kAppUid, String8(kApp));
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid, String8(kApp), false, false));
}

// ---- Validity period -------------------------------------------------------------------------

using AuthValidityTest = AuthTest;

TEST_F(AuthValidityTest, ResultIsValidForExactlyOneDay) {
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    hostctl::advanceTime(kDay * kSecond);
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
    EXPECT_EQ(0u, mLogs.count("has invalid"));

    hostctl::advanceTime(kSecond);
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
    EXPECT_EQ(1u, mLogs.count("isAuthedClient E find uid: 10100, packageName: com.example.sdkapp, "
                              "period: " +
                              std::to_string(kStartWall) +
                              ", time: " + std::to_string(kStartWall + kDay + 1) + ", has invalid"))
        << mLogs.dump();
    // Without the period check an expired result still counts; nothing has swept it.
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), false, true));
}

TEST_F(AuthValidityTest, WallClockSetBackByMoreThanADayInvalidatesAResult) {
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    hostctl::useVirtualTime(kStartWall - kDay, kStartMonotonic);
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
    hostctl::useVirtualTime(kStartWall - kDay - 1, kStartMonotonic);
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
    EXPECT_EQ(1u, mLogs.count("has invalid"));
}

TEST_F(AuthValidityTest, ExpiredResultForTheAlwaysAuthedPackageRefusesIt) {
    // A recorded result speaks for its package, so the fallback to the name does not apply.
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kAweme));
    hostctl::advanceTime((kDay + 1) * kSecond);
    EXPECT_FALSE(mManager->isAuthedClient(kAppUid, String8(kAweme), true, true));
}

TEST_F(AuthValidityTest, ReplacingAResultRestartsItsPeriod) {
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    hostctl::advanceTime(kDay * kSecond);
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    hostctl::advanceTime(kDay * kSecond);
    EXPECT_TRUE(mManager->isAuthedClient(kAppUid, String8(kApp), true, true));
}

// ---- Connected clients -----------------------------------------------------------------------

using AuthClientTest = AuthTest;

TEST_F(AuthClientTest, CheckOfAnUnauthorisedAppAnswersFalseAndRemembersNothing) {
    int client = 0;
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    EXPECT_FALSE(mManager->checkAuthResult(kAppPid, kAppUid, String8("com.other"), &client));
    EXPECT_FALSE(mManager->isAuthedClient(&client));
}

TEST_F(AuthClientTest, CheckAcceptsAnExpiredResult) {
    int client = 0;
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    hostctl::advanceTime(10 * kDay * kSecond);
    EXPECT_TRUE(mManager->checkAuthResult(kAppPid, kAppUid, String8(kApp), &client));
    EXPECT_TRUE(mManager->isAuthedClient(&client));
}

TEST_F(AuthClientTest, OneAuthorisedClientPerPid) {
    int first = 0;
    int second = 0;
    mManager->addAuthResultInfo(kAppPid, kAppUid, 0, String8(kApp));
    mManager->checkAuthResult(kAppPid, kAppUid, String8(kApp), &first);
    mManager->checkAuthResult(kAppPid, kAppUid, String8(kApp), &second);
    EXPECT_FALSE(mManager->isAuthedClient(&first));
    EXPECT_TRUE(mManager->isAuthedClient(&second));
}

// ---- The process-wide manager ----------------------------------------------------------------

class AuthInstanceTest : public ::testing::Test {
protected:
    void loadConfig(const std::string& json) {
        mRoot.writeFile(android::kFwkConfigPath, json);
        android::initJsonParser(android::kFwkConfigPath);
    }
    void TearDown() override { loadConfig(R"({"default": {}})"); }

    testsupport::TempDeviceRoot mRoot;
};

TEST_F(AuthInstanceTest, SwitchDecidesAtEachCallAndTheInstanceIsShared) {
    loadConfig(R"({"default": {"feature_auth_enable": false}})");
    EXPECT_EQ(nullptr, android::AuthAppManager::getInstance());

    loadConfig(R"({"default": {}})");
    android::sp<android::AuthAppManager> first = android::AuthAppManager::getInstance();
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, android::AuthAppManager::getInstance());

    loadConfig(R"({"default": {"feature_auth_enable": false}})");
    EXPECT_EQ(nullptr, android::AuthAppManager::getInstance());
}

}  // namespace
