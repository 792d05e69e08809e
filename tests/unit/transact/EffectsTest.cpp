// What each transaction changes: authorisation results, the announced app, the call info, the
// accessory torch, every client at once, and the avatar feature.
#include <CameraService.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <hostctl/CameraHost.h>

#include <string>
#include <thread>
#include <vector>

#include "TransactTestSupport.h"

namespace {

using namespace android;
using transacttest::Call;
using transacttest::kSystemCamera;
using transacttest::TransactExtension;
using transacttest::TransactTest;

bool replyBool(Parcel& reply) {
    reply.setDataPosition(0);
    EXPECT_EQ(0, reply.readExceptionCode());
    bool value = false;
    EXPECT_EQ(OK, reply.readBool(&value));
    EXPECT_EQ(0u, reply.dataAvail());
    return value;
}

// ---- Authorisation: 10001, 10002, 10004 ----
// What a report records and what the app's question answers: transactions_auth.json.

using AuthTransactTest = TransactTest;

TEST_F(AuthTransactTest, RegistrationWatchesTheCallersBinder) {
    writeConfig(R"({"default": {"feature_auth_enable": true}})");
    sp<TransactExtension> ext = makeExtension();
    if (!ext->hasAuthManager()) GTEST_SKIP() << "the authorised-app manager is not built";
    sp<hostctl::HostBinder> service = hostctl::createBinder("authservice");
    hostctl::ScopedCallingIdentity caller(1000, 2100);
    Call call;
    call.binder(service);
    Parcel reply;
    EXPECT_EQ(OK, ext->onTransact(10002, call.data(), &reply, 0));
    EXPECT_EQ(0u, reply.dataSize());
    EXPECT_EQ(1u, service->linkCount());
    // The death reaches the manager; nothing the transaction left behind may break it.
    EXPECT_TRUE(hostctl::killBinder("authservice"));
}

TEST_F(AuthTransactTest, WithoutTheManagerEverythingSucceedsUnread) {
    writeConfig(R"({"default": {"feature_auth_enable": false}})");
    sp<TransactExtension> ext = makeExtension();
    ASSERT_FALSE(ext->hasAuthManager());
    for (uint32_t code : {10001u, 10002u}) {
        Call call;
        call.i32(1);
        const Parcel& data = call.data();
        const size_t afterToken = data.dataSize() - sizeof(int32_t);
        Parcel reply;
        EXPECT_EQ(OK, ext->onTransact(code, data, &reply, 0)) << code;
        EXPECT_EQ(afterToken, data.dataPosition()) << code;
    }
    // Every app counts as authorised, and the package is not even read.
    Call call;
    call.str("com.example.any");
    const Parcel& data = call.data();
    Parcel reply;
    EXPECT_EQ(OK, ext->onTransact(10004, data, &reply, 0));
    EXPECT_TRUE(replyBool(reply));
    EXPECT_GT(data.dataAvail(), 0u);
}

// ---- The announced app and the call info: 10003, 10005, 10006 ----

using ClientInfoTest = TransactTest;

TEST_F(ClientInfoTest, PrivilegedThirdPartyAnnouncementsAccumulateUids) {
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    hostctl::setProperty("ro.camera.privileged.3rdpartyApp", "com.partner.cam;");
    writeConfig(R"({"default": {"privileged_app_list": ["com.tencent"]}})");
    sp<TransactExtension> ext = makeExtension();
    const struct {
        const char* package;
        int32_t uid;
    } calls[] = {{"com.vantu.camera", 10050}, {"com.partner.cam", 10060}, {"com.tencent.mm", 10070}};
    for (const auto& c : calls) {
        Call call;
        call.str(c.package).i32(c.uid).i32(c.uid - 6000);
        Parcel reply;
        EXPECT_EQ(OK, ext->onTransact(10005, call.data(), &reply, 0));
    }
    EXPECT_EQ((std::set<int32_t>{10050, 10060, 10070}), ext->privilegedUids());
    // The call info is the last privileged announcement's.
    EXPECT_EQ(10070, ext->apkUid());
    EXPECT_EQ(4070, ext->apkPid());
    EXPECT_EQ(String16("com.tencent.mm"), ext->getAPKPackageName());
}

TEST_F(ClientInfoTest, OrdinaryAppIsAnnouncedWithoutPrivilege) {
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    sp<TransactExtension> ext = makeExtension();
    Call call;
    call.str("com.example.app").i32(10234).i32(7200);
    Parcel reply;
    EXPECT_EQ(OK, ext->onTransact(10005, call.data(), &reply, 0));
    EXPECT_TRUE(ext->privilegedUids().empty());
    EXPECT_EQ(-1, ext->apkUid());
    EXPECT_EQ(-1, ext->apkPid());
    EXPECT_EQ(String16("com.example.app"), ext->getAPKPackageName());
}

TEST_F(ClientInfoTest, AlwaysOnProbeFollowsItsSwitchAndRunsOnce) {
    for (bool enabled : {false, true}) {
        writeConfig(enabled ? R"({"default": {"feature_aon_enable": true}})" : "{}");
        sp<TransactExtension> ext = makeExtension();
        testsupport::LogCapture logs;
        for (int i = 0; i < 2; ++i) {
            Call call;
            call.str("com.example.app").i32(1).i32(2);
            Parcel reply;
            EXPECT_EQ(OK, ext->onTransact(10005, call.data(), &reply, 0));
        }
        EXPECT_EQ(enabled, ext->aonProbed());
        // No media device: each probe ends at /dev/media0.
        EXPECT_EQ(enabled ? 1u : 0u, logs.count("No more media devices found")) << logs.dump();
    }
}

// ---- Accessory torch: 10007, 10008 ----

using RioTransactTest = TransactTest;

// Their log lines are pinned by rio_front_session.json.
TEST_F(RioTransactTest, ClientPidAndIntensityReachTheManager) {
    sp<TransactExtension> ext = makeExtension();
    sp<MagnecticSensorManager> rio = ext->giveMagneticManager();
    hostctl::ScopedCallingIdentity caller(1000, 1234);
    {
        Call call;
        Parcel reply;
        EXPECT_EQ(OK, ext->onTransact(10007, call.data(), &reply, 0));
    }
    {
        Call call;
        call.i32(100);
        Parcel reply;
        EXPECT_EQ(OK, ext->onTransact(10008, call.data(), &reply, 0));
    }
    EXPECT_EQ(1234, rio->getRioClientPid());
    EXPECT_EQ(100, rio->getTorchIntensity());
}

TEST_F(RioTransactTest, WithoutTheManagerTheyStillSucceed) {
    sp<TransactExtension> ext = makeExtension();
    Call first;
    Call second;
    second.i32(40);
    Parcel reply;
    EXPECT_EQ(OK, ext->onTransact(10007, first.data(), &reply, 0));
    EXPECT_EQ(OK, ext->onTransact(10008, second.data(), &reply, 0));
    EXPECT_EQ(0u, reply.dataSize());
}

// ---- Disconnect all: 10009 ----

class DisconnectAllTest : public TransactTest {
protected:
    sp<hostctl::HostCameraClient> open(TransactExtension& ext, int id, const char* package) {
        sp<hostctl::HostCameraClient> client = new hostctl::HostCameraClient(
            String8(std::to_string(id).c_str()), String16(package), 10100 + id, 5000 + id);
        // The server's close sequence drops the slot from inside disconnect, on this thread.
        client->setOnDisconnect([&ext, id, this](hostctl::HostCameraClient&) {
            mFlagSeenInDisconnect.push_back(ext.disconnectingClients());
            ext.dropClient(id);
        });
        ext.storeClient(id, client);
        return client;
    }
    std::vector<bool> mFlagSeenInDisconnect;
};

TEST_F(DisconnectAllTest, EveryLiveClientIsToldThenDisconnected) {
    sp<TransactExtension> ext = makeExtension();
    sp<hostctl::HostCameraClient> back = open(*ext, 0, "com.example.a");
    sp<hostctl::HostCameraClient> last = open(*ext, kMaxCameraSlots - 1, "com.example.b");
    {
        // A slot whose client is already gone is skipped.
        sp<hostctl::HostCameraClient> gone = open(*ext, 5, "com.example.gone");
    }
    hostctl::ScopedCallingIdentity caller(1047, 812);
    hostctl::grantPermission(1047, kSystemCamera);
    Call call(/*token=*/false);
    Parcel reply;
    EXPECT_EQ(OK, ext->onTransact(10009, call.data(), &reply, 0));
    EXPECT_EQ(0u, reply.dataSize());
    const std::vector<std::string> expected = {"notifyError(0)", "disconnect"};
    EXPECT_EQ(expected, back->events());
    EXPECT_EQ(expected, last->events());
    EXPECT_EQ(CaptureResultExtras().requestId, back->lastErrorExtras().requestId);
    for (int id = 0; id < kMaxCameraSlots; ++id) EXPECT_EQ(nullptr, ext->promoteClient(id)) << id;
    EXPECT_EQ((std::vector<bool>{true, true}), mFlagSeenInDisconnect);
    EXPECT_FALSE(ext->disconnectingClients());
}

// ---- Avatar control: 10010 ----

class AvatarTransactTest : public TransactTest {
protected:
    // The bytes of the call left unread.
    size_t send(TransactExtension& ext, const char* message) {
        Call call;
        call.str(message);
        const Parcel& data = call.data();
        Parcel reply;
        EXPECT_EQ(OK, ext.onTransact(10010, data, &reply, 0));
        reply.setDataPosition(0);
        EXPECT_EQ(0, reply.readExceptionCode());
        EXPECT_EQ(0u, reply.dataAvail());
        return data.dataAvail();
    }
};

TEST_F(AvatarTransactTest, MessagesAreToldApartByTheirExactText) {
    sp<TransactExtension> ext = makeExtension();
    ext->giveZumioManager(true, 0);
    testsupport::LogCapture logs;
    send(*ext, "NULL");
    send(*ext, "null");
    EXPECT_EQ(2u, logs.count("onTransact, msg null")) << logs.dump();
    logs.clear();
    // Another capitalisation is avatar data, as is anything but "init".
    send(*ext, "Null");
    send(*ext, "{\"avatar\": 3}");
    send(*ext, "");
    EXPECT_EQ(3u, logs.count("onTransact, msg avator")) << logs.dump();
    EXPECT_EQ(0u, logs.count("msg null")) << logs.dump();
    logs.clear();
    send(*ext, "init");
    EXPECT_EQ(1u, logs.count("onTransact, msg init")) << logs.dump();
}

TEST_F(AvatarTransactTest, TheManagerAndEitherSupportFlagAdmitTheMessage) {
    const struct {
        bool manager;
        bool zumioEnable;
        int32_t aps2Zumio;
        bool read;
    } rows[] = {{false, false, 0, false}, {true, false, 0, false}, {true, false, 1, true}};
    for (const auto& row : rows) {
        sp<TransactExtension> ext = makeExtension();
        if (row.manager) ext->giveZumioManager(row.zumioEnable, row.aps2Zumio);
        testsupport::LogCapture logs;
        EXPECT_EQ(row.read, send(*ext, "init") == 0u) << row.manager << row.aps2Zumio;
        EXPECT_EQ(row.read ? 1u : 0u, logs.count("msg init")) << logs.dump();
    }
}

}  // namespace

// ---- Concurrency ----

// Transactions arrive on any binder thread while the classification hooks read the same state
// on others; run under ThreadSanitizer this shows every shared field is touched safely.
TEST_F(ClientInfoTest, AnnouncementsRaceWithClassificationQueries) {
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    sp<TransactExtension> ext = new TransactExtension();
    constexpr int kRounds = 200;
    auto announce = [&ext](uint32_t code, uid_t uid, pid_t pid, const char* package, int i) {
        hostctl::ScopedCallingIdentity caller(uid, pid);
        Call call;
        call.str(package).i32(10050 + i % 4).i32(3100);
        Parcel reply;
        EXPECT_EQ(OK, ext->onTransact(code, call.data(), &reply, 0));
    };
    std::thread systemCamera([&] {
        for (int i = 0; i < kRounds; ++i) announce(10005, 1000, 1500, "com.vantu.camera", i);
    });
    std::thread callInfo([&] {
        for (int i = 0; i < kRounds; ++i) announce(10006, 20000 + i, 6000 + i, "", i);
    });
    std::thread packages([&] {
        for (int i = 0; i < kRounds; ++i) {
            announce(10003, 1000, 1500, i % 2 ? "android.camera.cts" : "com.example.app", i);
        }
    });
    std::thread queries([&] {
        for (int i = 0; i < kRounds; ++i) {
            ext->isPrivilegedApp(10050);
            ext->isSystemCameraUid(10051);
            ext->isCtsCamera();
        }
    });
    for (std::thread* t : {&systemCamera, &callInfo, &packages, &queries}) t->join();
    EXPECT_EQ((std::set<int32_t>{10050, 10051, 10052, 10053}), ext->privilegedUids());
}
