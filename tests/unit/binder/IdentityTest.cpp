// Calling identity per thread, permission checks and the in-process service manager.
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <unistd.h>
#include <utils/CameraThreadState.h>

#include <thread>

#include "support/TestSupport.h"

using android::CameraThreadState;
using android::IPCThreadState;
using android::String16;

namespace {

const char kSystemCamera[] = "android.permission.SYSTEM_CAMERA";

class IdentityTest : public ::testing::Test {
protected:
    void TearDown() override {
        hostctl::resetCallingIdentity();
        hostctl::resetProcessIdentity();
        hostctl::clearPermissions();
        hostctl::clearPermissionChecks();
        hostctl::clearServices();
    }
};

}  // namespace

TEST_F(IdentityTest, OutsideACallThreadsSeeTheProcessItself) {
    EXPECT_EQ(getuid(), IPCThreadState::self()->getCallingUid());
    EXPECT_EQ(getpid(), IPCThreadState::self()->getCallingPid());
    hostctl::setProcessIdentity(1047, 900);  // cameraserver
    std::thread([] {
        EXPECT_EQ(1047u, IPCThreadState::self()->getCallingUid());
        EXPECT_EQ(900, IPCThreadState::self()->getCallingPid());
    }).join();
}

TEST_F(IdentityTest, EachThreadHasItsOwnCaller) {
    hostctl::setCallingIdentity(10123, 4000);
    std::thread([] {
        hostctl::setCallingIdentity(10456, 5000);
        EXPECT_EQ(10456, CameraThreadState::getCallingUid());
        EXPECT_EQ(5000, CameraThreadState::getCallingPid());
    }).join();
    EXPECT_EQ(10123, CameraThreadState::getCallingUid());
    EXPECT_EQ(4000, CameraThreadState::getCallingPid());
    EXPECT_EQ(IPCThreadState::self(), IPCThreadState::selfOrNull());
}

TEST_F(IdentityTest, ClearActsAsTheProcessAndRestorePutsTheCallerBack) {
    hostctl::setProcessIdentity(1047, 900);
    hostctl::setCallingIdentity(10123, 4000);
    const int64_t token = CameraThreadState::clearCallingIdentity();
    EXPECT_EQ((int64_t{10123} << 32) | 4000, token);
    EXPECT_EQ(1047, CameraThreadState::getCallingUid());
    EXPECT_EQ(900, CameraThreadState::getCallingPid());
    CameraThreadState::restoreCallingIdentity(token);
    EXPECT_EQ(10123, CameraThreadState::getCallingUid());
    EXPECT_EQ(4000, CameraThreadState::getCallingPid());
}

TEST_F(IdentityTest, ScopedIdentityRestoresWhatTheThreadHad) {
    {
        hostctl::ScopedCallingIdentity outer(10001, 11);
        {
            hostctl::ScopedCallingIdentity inner(10002, 22);
            EXPECT_EQ(10002u, IPCThreadState::self()->getCallingUid());
        }
        EXPECT_EQ(10001u, IPCThreadState::self()->getCallingUid());
        EXPECT_EQ(11, IPCThreadState::self()->getCallingPid());
    }
    EXPECT_EQ(getuid(), IPCThreadState::self()->getCallingUid());
}

TEST_F(IdentityTest, PermissionsFollowGrantsByUidOrByUidAndPid) {
    const String16 perm(kSystemCamera);
    EXPECT_FALSE(android::checkPermission(perm, 4000, 10123, false));
    hostctl::grantPermission(10123, kSystemCamera);
    EXPECT_TRUE(android::checkPermission(perm, 4000, 10123));
    EXPECT_TRUE(android::checkPermission(perm, 4001, 10123));
    EXPECT_FALSE(android::checkPermission(String16("android.permission.CAMERA"), 4000, 10123));

    hostctl::grantPermission(10200, 77, kSystemCamera);
    EXPECT_TRUE(android::checkPermission(perm, 77, 10200));
    EXPECT_FALSE(android::checkPermission(perm, 78, 10200, false));

    hostctl::revokePermission(10123, kSystemCamera);
    EXPECT_FALSE(android::checkPermission(perm, 4000, 10123, false));
    hostctl::clearPermissions();
    EXPECT_FALSE(android::checkPermission(perm, 77, 10200, false));

    const std::vector<hostctl::PermissionCheck> checks = hostctl::permissionChecks();
    ASSERT_EQ(8u, checks.size());
    EXPECT_EQ(kSystemCamera, checks[1].permission);
    EXPECT_EQ(4000, checks[1].pid);
    EXPECT_EQ(10123u, checks[1].uid);
    EXPECT_TRUE(checks[1].granted);
}

TEST_F(IdentityTest, RefusalsAreLoggedUnlessAskedNotTo) {
    testsupport::LogCapture log;
    EXPECT_FALSE(android::checkPermission(String16(kSystemCamera), 12, 10999));
    EXPECT_TRUE(
        log.contains("Permission failure: android.permission.SYSTEM_CAMERA from "
                     "uid=10999 pid=12"));
    log.clear();
    EXPECT_FALSE(android::checkPermission(String16(kSystemCamera), 12, 10999, false));
    EXPECT_EQ(0u, log.lines().size());
}

TEST_F(IdentityTest, CallingPermissionUsesTheThreadsCaller) {
    hostctl::grantPermission(10123, kSystemCamera);
    hostctl::setCallingIdentity(10123, 4000);
    int32_t pid = 0, uid = 0;
    EXPECT_TRUE(android::checkCallingPermission(String16(kSystemCamera), &pid, &uid));
    EXPECT_EQ(4000, pid);
    EXPECT_EQ(10123, uid);
    hostctl::setCallingIdentity(10124, 4000);
    EXPECT_FALSE(android::checkCallingPermission(String16(kSystemCamera)));
}

TEST_F(IdentityTest, ServiceManagerKeepsServicesByName) {
    android::sp<android::IServiceManager> sm = android::defaultServiceManager();
    ASSERT_NE(nullptr, sm);
    android::sp<android::IBinder> svc = new android::BBinder();
    EXPECT_EQ(nullptr, sm->checkService(String16("kairo")));
    EXPECT_EQ(android::OK, sm->addService(String16("kairo"), svc));
    EXPECT_EQ(svc, sm->getService(String16("kairo")));
    EXPECT_EQ(android::BAD_VALUE, sm->addService(String16("null"), nullptr));
    EXPECT_EQ(1u, sm->listServices().size());
    hostctl::removeService("kairo");
    EXPECT_EQ(nullptr, sm->checkService(String16("kairo")));
}
