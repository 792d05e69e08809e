/*
 * Helpers of the authorisation tests: private managers (the process-wide one would carry results
 * from one test into the next) and the common set-up of virtual time and log capture.
 */
#pragma once

#include <gtest/gtest.h>

#include "features/authorize/AuthAppManager.h"
#include "hostctl/HostEnv.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"

namespace android {

// Named friend of AuthAppManager: builds managers that belong to one test only.
class AuthAppManagerTestPeer {
public:
    static sp<AuthAppManager> create() { return new AuthAppManager(); }
};

}  // namespace android

namespace authtest {

constexpr int64_t kStartWall = 1700000000;
constexpr nsecs_t kStartMonotonic = 5000000000LL;
constexpr nsecs_t kMs = 1000000LL;
constexpr nsecs_t kSecond = 1000000000LL;
constexpr int64_t kDay = 86400;
// The SDK app every case authorises.
constexpr int kAppUid = 10100;
constexpr int kAppPid = 5000;
constexpr char kApp[] = "com.example.sdkapp";

// A fresh manager in virtual time, with the manager's verbose lines made visible (the switch
// is only ever 0 or 1 on a phone, so those lines never appear there).
class AuthTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::useVirtualTime(kStartWall, kStartMonotonic);
        android::setExtLogSwitch(2);
        mManager = android::AuthAppManagerTestPeer::create();
    }
    void TearDown() override {
        hostctl::setScheduler(nullptr);
        android::setExtLogSwitch(0);
        hostctl::useRealTime();
    }

    android::sp<android::AuthAppManager> mManager;
    testsupport::LogCapture mLogs;
};

}  // namespace authtest
