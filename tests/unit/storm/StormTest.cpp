// Ten host threads drive every hook and transaction against one extension object at once, on a
// MediaTek and a Qualcomm chip, and the client, authorisation and always-on state must come out
// consistent. Meant to run under ThreadSanitizer too; a deadlock fails it through the watchdog.
#include <android/log.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <hostctl/HostEnv.h>
#include <hostctl/MediaDevices.h>
#include <hostctl/Properties.h>
#include <hostctl/Services.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "ExtFactory.h"
#include "StormHost.h"
#include "features/aon/IAONHECallbacks.h"
#include "support/TestSupport.h"

namespace {

using namespace android;
using stormtest::BlockAONSignal;
using stormtest::Camera;
using stormtest::SignalTarget;
using stormtest::StormServer;
using stormtest::Watchdog;

constexpr int kThreads = 10;
constexpr int kIterations = 1000;
// A deadlock detector, not a timing goal: a normal run takes a few seconds.
constexpr int kWatchdogSeconds = 120;
constexpr uid_t kSystemUid = 1000;
constexpr pid_t kSystemPid = 2100;
constexpr char kSystemCamera[] = "android.permission.SYSTEM_CAMERA";
constexpr char kAONDescriptor[] = "android.hardware.IAONHECallbacks";

const char* const kComponents[] = {
    "com.example.app/.Main",   "com.whatsapp/.Call",       "com.vantu.camera/.Camera",
    "com.tencent.mm/.Video",   "com.facebook.orca/.Chat",  "com.example.sdkapp/.Scan",
    "com.snapchat.android/.A", "android.camera.cts/.Test", "com.rio.app/.Main",
};

void discardLog(const struct __android_logger_data*, const char*) {}

Parcel& token(Parcel& p) {
    p.writeInterfaceToken(String16("android.hardware.camera"));
    return p;
}

// What one thread posted as authorisation results: the package of the last result per uid.
using AuthLedger = std::map<int32_t, std::string>;

class StormTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::clearPermissions();
        hostctl::resetServices();
        mRoot.writeFile(kFwkConfigPath,
                        R"({"default": {"feature_auth_enable": true, "feature_aon_enable": true,
                            "feature_motor_enable": false, "feature_cts_enable": false}})");
        hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
        hostctl::setProperty("ro.vantu.flashlight.rio.switch", "persist.vendor.rio.switch");
        hostctl::setProperty("persist.vendor.rio.switch", "1");
        // The magnetic torch's list names an app, so its front-camera sessions start the sensor.
        hostctl::setProperty("ro.build.date.utc", "1690000000");
        mRoot.writeFile("/data/.camera/updateInfo",
                        "version:1690000000,md5:0123456789abcdef0123456789abcdef,state:1\n");
        mRoot.writeFile(
            "/data/.camera/camera_hardware_rio_applist",
            "<?xml version=\"1.0\"?>\n<filter-conf><version>7</version>"
            "<PackageFilterList><PackageIndex>1</PackageIndex>"
            "<PackageName>com.rio.app</PackageName></PackageFilterList></filter-conf>\n");
        hostctl::grantPermission(kSystemUid, kSystemCamera);
        hostctl::ServicesConfig services;
        services.sensors = true;
        services.magneticSensor = true;
        ASSERT_TRUE(hostctl::startServices(services));
        hostctl::MediaEntity front;
        front.name = "imx471";
        front.position = 1801;
        hostctl::MediaDevice media;
        media.number = 0;
        media.entities = {front};
        hostctl::setMediaDevices({media});
        __android_log_set_logger(discardLog);
    }
    void TearDown() override {
        __android_log_set_logger(__android_log_stderr_logger);
        hostctl::clearMediaDevices();
        hostctl::resetServices();
        hostctl::clearBinders();
        hostctl::clearPermissions();
        hostctl::clearProperties();
    }

    // Builds the chip's extension object from the board table, as the factory does.
    CameraServiceExtImpl* build(const char* platform) {
        hostctl::setProperty("ro.board.platform", platform);
        for (size_t i = 0; i < boardTableSize(); ++i) {
            if (strcmp(boardTable()[i].platform, platform) == 0) return boardTable()[i].create();
        }
        return nullptr;
    }

    void runStorm(const char* platform, int32_t uidBase);

    testsupport::TempDeviceRoot mRoot;
    testsupport::VirtualTime mTime;
};

// What the storm got done, so that a storm which no longer reaches a hook is noticed.
struct Tally {
    std::atomic<int> admitted{0};
    std::atomic<int> refused{0};
    std::atomic<int> configured{0};
    std::atomic<int> requests{0};
    std::atomic<int> results{0};
    std::atomic<int> sensorCallbacks{0};
};

// The storm's state shared by its threads.
struct Storm {
    Tally tally;
    StormServer& server;
    SignalTarget& signals;
    Watchdog& watchdog;
    sp<hostctl::HostBinder> aonApp;
    int32_t uidBase;
};

status_t transact(CameraServiceExtImpl& ext, uint32_t code, Parcel& data, Parcel* reply, uid_t uid,
                  pid_t pid) {
    hostctl::ScopedCallingIdentity caller(uid, pid);
    data.setDataPosition(0);
    return ext.onTransact(code, data, reply, 0);
}

bool askAuthorised(CameraServiceExtImpl& ext, int32_t uid, const std::string& package) {
    Parcel data, reply;
    token(data).writeString16(String16(package.c_str()));
    EXPECT_EQ(OK, transact(ext, 10004, data, &reply, uid, 9000));
    reply.setDataPosition(0);
    EXPECT_EQ(0, reply.readExceptionCode());
    return reply.readBool();
}

// Under the camera's device lock.
void configureLocked(Storm& s, Camera& cam, int id) {
    sp<hostctl::HostCameraClient> client = s.server.client(id);
    if (client == nullptr || client->isDisconnected()) return;
    const String8 cameraId(std::to_string(id).c_str());
    cam.streams.clear();
    cam.streams.add(0, new hostctl::HostOutputStream(0, 1920, 1080, 34));
    cam.meta = new hostctl::HostOutputStream(5, 300, 1024, 34);
    cam.streams.add(5, cam.meta);
    const CameraMetadata params;
    s.server.ext().beforeConfigureStreamsLocked(params, 1, cameraId, cam.streams, 0);
    for (int streamId : cam.streams.getStreamIds()) {
        cam.streams.get(streamId)->startConfiguration();
        cam.streams.get(streamId)->finishConfiguration();
    }
    s.server.ext().afterConfigureStreamsLocked(params, 1, params, cam.streams, cameraId);
    s.server.ext().afterEndConfigure(params, client.get(), 1, cameraId);
    cam.states = std::make_unique<hostctl::HostCaptureOutputStates>(std::to_string(id));
    cam.configured = true;
    ++s.tally.configured;
}

void configure(Storm& s, int id) {
    Camera& cam = s.server.camera(id);
    std::lock_guard<std::mutex> device(cam.deviceLock);
    configureLocked(s, cam, id);
}

void requestAndResult(Storm& s, int id, bool request) {
    Camera& cam = s.server.camera(id);
    std::lock_guard<std::mutex> device(cam.deviceLock);
    // The app configures its streams before its first request.
    if (!cam.configured) configureLocked(s, cam, id);
    if (!cam.configured) return;
    CameraServiceExtImpl& ext = s.server.ext();
    const String8 cameraId(std::to_string(id).c_str());
    if (request) {
        ++cam.frame;
        CameraMetadata settings;
        const uint8_t trigger = ANDROID_CONTROL_AF_TRIGGER_START;
        settings.update(ANDROID_CONTROL_AF_TRIGGER, &trigger, 1);
        ext.IsNewRequest(true, false);
        ext.onPrepareHalRequestsUpdateMetadata(settings, cam.frame);
        const camera_metadata_t* raw = settings.getAndLock();
        ext.afterSendRequestsBatch(raw, cameraId);
        settings.unlock(raw);
        ++s.tally.requests;
        return;
    }
    CaptureResult result;
    const int64_t timestamp = 1000 + cam.frame;
    result.mMetadata.update(ANDROID_SENSOR_TIMESTAMP, &timestamp, 1);
    const int32_t iso = 400;
    result.mMetadata.update(ANDROID_SENSOR_SENSITIVITY, &iso, 1);
    result.mResultExtras.frameNumber = cam.frame;
    ext.parseResult(result.mMetadata);
    ext.beforeMetadataSendToApp(&result, cam.frame, cam.states->states());
    ++s.tally.results;
}

// One storm thread: a fixed number of operations chosen by a PRNG seeded with the thread's
// number. Returns what the thread posted as authorisation results.
AuthLedger stormThread(Storm& s, int t) {
    BlockAONSignal block;  // only the driver's target thread takes the signal
    std::mt19937 rng(1234u + static_cast<unsigned>(t));
    CameraServiceExtImpl& ext = s.server.ext();
    AuthLedger ledger;
    const int32_t appUid = s.uidBase + t * 100;
    const pid_t appPid = 7000 + t;
    for (int i = 0; i < kIterations; ++i) {
        const int id = static_cast<int>(rng() % stormtest::kCameras);
        const unsigned op = rng() % 16;
        switch (op) {
            case 0:
            case 1: {
                s.watchdog.enter(t, i, "connect");
                const char* component = kComponents[rng() % (sizeof(kComponents) / sizeof(char*))];
                hostctl::ScopedCallingIdentity caller(appUid, appPid);
                const int32_t verdict = s.server.connect(id, component, appUid, appPid);
                ++(verdict == 0 ? s.tally.admitted : s.tally.refused);
                break;
            }
            case 2:
                s.watchdog.enter(t, i, "disconnect");
                s.server.disconnect(id);
                break;
            case 3: {
                // An authorisation result for one of the thread's own uids, then the app asks.
                s.watchdog.enter(t, i, "authorisation");
                const int32_t uid = appUid + static_cast<int32_t>(rng() % 4);
                const std::string package = "com.example.sdk" + std::to_string(rng() % 3);
                Parcel data, reply;
                token(data).writeInt32(uid);
                data.writeInt32(appPid);
                data.writeInt32(3);
                data.writeString16(String16(package.c_str()));
                EXPECT_EQ(OK, transact(ext, 10001, data, &reply, kSystemUid, kSystemPid));
                ledger[uid] = package;
                EXPECT_TRUE(askAuthorised(ext, uid, package)) << uid << " " << package;
                break;
            }
            case 4: {
                s.watchdog.enter(t, i, "disconnect-all");
                Parcel data, reply;
                EXPECT_EQ(OK, transact(ext, 10009, data, &reply, kSystemUid, kSystemPid));
                break;
            }
            case 5: {
                s.watchdog.enter(t, i, "torch intensity");
                Parcel data, reply;
                token(data).writeInt32(static_cast<int32_t>(rng() % 101));
                EXPECT_EQ(OK, transact(ext, 10008, data, &reply, kSystemUid, kSystemPid));
                break;
            }
            case 6: {
                s.watchdog.enter(t, i, "always-on open/close");
                Parcel data, reply;
                token(data);
                if (rng() % 2 == 0) data.writeStrongBinder(s.aonApp);
                transact(ext, rng() % 2 == 0 ? 10012 : 10013, data, &reply, kSystemUid, kSystemPid);
                break;
            }
            case 7:
                s.watchdog.enter(t, i, "configure");
                configure(s, id);
                break;
            case 8:
            case 9:
                s.watchdog.enter(t, i, "request");
                requestAndResult(s, id, true);
                break;
            case 10:
                s.watchdog.enter(t, i, "result");
                requestAndResult(s, id, false);
                break;
            case 11: {
                s.watchdog.enter(t, i, "characteristics");
                Parcel data, reply;
                token(data).writeString16(String16(kComponents[rng() % 5]));
                transact(ext, 10003, data, &reply, kSystemUid, kSystemPid);
                CameraMetadata info;
                const int32_t sizes[] = {HAL_PIXEL_FORMAT_BLOB,          4000, 3000, 0,
                                         HAL_PIXEL_FORMAT_YCbCr_420_888, 1920, 1080, 0};
                info.update(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, sizes, 8);
                ext.getCameraCharacteristics(String16(std::to_string(id).c_str()), &info);
                break;
            }
            case 12:
                s.watchdog.enter(t, i, "sensor event");
                if (hostctl::deliverMagneticEvent(rng() % 2 == 0 ? 1.0f : 0.0f) > 0) {
                    ++s.tally.sensorCallbacks;
                }
                break;
            case 13: {
                // The authorising component registers and dies; the provider dies.
                s.watchdog.enter(t, i, "binder death");
                sp<hostctl::HostBinder> binder =
                    new hostctl::HostBinder("storm-auth-" + std::to_string(t), "");
                Parcel data, reply;
                token(data).writeStrongBinder(binder);
                EXPECT_EQ(OK, transact(ext, 10002, data, &reply, kSystemUid, kSystemPid + t));
                binder->kill();
                if (rng() % 4 == 0) ext.binderDied(wp<IBinder>(binder));
                break;
            }
            case 14:
                s.watchdog.enter(t, i, "always-on signal");
                if (rng() % 2 == 0) {
                    s.signals.requestDetection();
                } else {
                    s.signals.kill();
                }
                break;
            default: {
                s.watchdog.enter(t, i, "client info");
                Parcel data, reply;
                const uint32_t code = 10005 + rng() % 3;  // client info, call info, RIO client
                token(data);
                if (code == 10005) {
                    data.writeString16(String16("com.vantu.camera"));
                    data.writeInt32(appUid);
                    data.writeInt32(appPid);
                }
                EXPECT_EQ(OK, transact(ext, code, data, &reply, kSystemUid, kSystemPid));
                Parcel status, answer;
                token(status);
                EXPECT_EQ(OK, transact(ext, 10011, status, &answer, kSystemUid, kSystemPid));
                break;
            }
        }
    }
    s.watchdog.finished(t);
    return ledger;
}

void StormTest::runStorm(const char* platform, int32_t uidBase) {
    sp<CameraServiceExtImpl> ext = build(platform);
    ASSERT_NE(nullptr, ext.get());
    // The front sensor probed and the signal handler installed, as the first announcement does.
    ASSERT_EQ(0, ext->getAONcamdev());
    gAONStatus = AON_IDLE;
    StormServer server(ext.get());
    // Camera 1 faces the front.
    sp<hostctl::HostProviderManager> providers = new hostctl::HostProviderManager();
    for (int id = 0; id < stormtest::kCameras; ++id) {
        CameraMetadata characteristics;
        const uint8_t facing = id == 1 ? ANDROID_LENS_FACING_FRONT : ANDROID_LENS_FACING_BACK;
        characteristics.update(ANDROID_LENS_FACING, &facing, 1);
        providers->addCamera(std::to_string(id), characteristics);
    }
    ext->initCameraInfos(providers);
    sp<hostctl::HostCameraServiceListener> listener = new hostctl::HostCameraServiceListener();
    {
        hostctl::ScopedCallingIdentity caller(kSystemUid, kSystemPid);
        ext->addListener(listener);
    }

    SignalTarget signals;
    sp<hostctl::HostBinder> aonApp = hostctl::createBinder("storm-aon-app", kAONDescriptor);
    std::vector<AuthLedger> ledgers(kThreads);
    {
        BlockAONSignal block;
        Watchdog watchdog(kThreads, kWatchdogSeconds);
        Storm storm{{}, server, signals, watchdog, aonApp, uidBase};
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&storm, &ledgers, t] { ledgers[t] = stormThread(storm, t); });
        }
        for (auto& thread : threads) thread.join();
        signals.stop();
        watchdog.disarm();
        const Tally& n = storm.tally;
        printf(
            "storm on %s: %d connects admitted, %d refused, %d evictions, %d other closes by "
            "the library, %d configurations, %d requests, %d results, %d sensor events heard, "
            "%d detections raised\n",
            platform, n.admitted.load(), n.refused.load(), server.evictions(),
            server.libraryCloses(), n.configured.load(), n.requests.load(), n.results.load(),
            n.sensorCallbacks.load(), signals.raised());
        EXPECT_GT(n.admitted.load(), 0);
        EXPECT_GT(server.evictions(), 0);
        EXPECT_GT(n.configured.load(), 0);
        EXPECT_GT(n.requests.load(), 0);
        EXPECT_GT(n.results.load(), 0);
        EXPECT_GT(signals.raised(), 0);
    }

    // Client slots: each holds an open client, the one the server holds for that camera, and
    // each client the server holds open has its slot.
    bool anyOpen = false;
    for (int id = 0; id < kMaxCameraSlots; ++id) {
        sp<CameraService::BasicClient> slot = ext->promoteClient(id);
        sp<hostctl::HostCameraClient> held = id < stormtest::kCameras ? server.client(id) : nullptr;
        const bool open = held != nullptr && !held->isDisconnected();
        anyOpen = anyOpen || open;
        if (slot != nullptr) {
            EXPECT_EQ(held.get(), slot.get()) << "camera " << id;
            EXPECT_TRUE(open) << "slot " << id << " points at a closed client";
        } else {
            EXPECT_FALSE(open) << "camera " << id << " is open without a slot";
        }
    }
    // The connect status follows the last connect or disconnect: never connected with no
    // client open.
    if (!anyOpen) {
        EXPECT_FALSE(ext->getConnectStatus());
    }

    // Every result posted is still there, once: the last one per uid answers, earlier ones no
    // more.
    size_t posted = 0;
    for (const AuthLedger& ledger : ledgers) {
        for (const auto& [uid, package] : ledger) {
            ++posted;
            EXPECT_TRUE(askAuthorised(*ext, uid, package)) << uid << " " << package;
            for (int other = 0; other < 3; ++other) {
                const std::string name = "com.example.sdk" + std::to_string(other);
                if (name != package) {
                    EXPECT_FALSE(askAuthorised(*ext, uid, name)) << uid;
                }
            }
        }
    }
    EXPECT_GT(posted, 0u);

    const int32_t aon = gAONStatus;
    EXPECT_TRUE(aon == AON_IDLE || aon == AON_OPEN || aon == AON_NORMAL_CLIENT || aon == AON_CLOSING)
        << aon;

    // Once every client is closed nothing of them is left behind, and a new client is taken
    // as on a fresh start.
    server.closeAll();
    EXPECT_FALSE(ext->getConnectStatus());
    EXPECT_FALSE(ext->getDoingDisconnect());
    for (int id = 0; id < kMaxCameraSlots; ++id) EXPECT_EQ(nullptr, ext->promoteClient(id));
    EXPECT_EQ(0, server.connect(2, "com.example.app/.Main", 10100, 5000));
    EXPECT_TRUE(ext->getConnectStatus());
    EXPECT_EQ(server.client(2).get(), ext->promoteClient(2).get());
    server.closeAll();
    EXPECT_FALSE(ext->getConnectStatus());

    gAONStatus = AON_NORMAL_CLIENT;
    ext->closeAON();
    gAONStatus = AON_IDLE;
    EXPECT_EQ(nullptr, mAONHECallback.get());
    {
        hostctl::ScopedCallingIdentity caller(kSystemUid, kSystemPid);
        ext->removeListener(listener);
    }
}

TEST_F(StormTest, StormOnMediaTekChip) {
    runStorm("mt6983", 30000);
}

TEST_F(StormTest, StormOnQualcommChip) {
    runStorm("kona", 40000);
}

}  // namespace
