#include "TransactHarness.h"

#include <android/log.h>
#include <binder/Parcel.h>
#include <hostctl/Binder.h>
#include <hostctl/CameraHost.h>
#include <hostctl/HostEnv.h>
#include <hostctl/Properties.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "CameraServiceExtImpl.h"
#include "ExtFactory.h"
#include "TransactInput.h"

namespace transactfuzz {

namespace {

using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;

constexpr uint32_t kFirstCode = 10001;
constexpr uint32_t kLastCode = 10014;
constexpr char kSystemCamera[] = "android.permission.SYSTEM_CAMERA";
// The caller that sweeps the authorised-app manager after each input.
constexpr uid_t kJanitorUid = 1000;
constexpr pid_t kJanitorPid = -4242;
constexpr int64_t kWallStart = 1700000000;
constexpr nsecs_t kMonotonicStart = 1000000000LL;
constexpr nsecs_t kTwoDaysNs = 2LL * 86400 * 1000000000LL;

#define HARNESS_CHECK(cond)                                                          \
    do {                                                                             \
        if (!(cond)) {                                                               \
            fprintf(stderr, "transact harness: %s failed (code %u)\n", #cond, code); \
            abort();                                                                 \
        }                                                                            \
    } while (0)

// The extension with its client state put back between inputs.
class FuzzExtension : public android::CameraServiceExtImpl {
public:
    void prepare(uint8_t world) {
        {
            std::lock_guard<std::mutex> lock(mPrivilegedUidsLock);
            mPrivilegedUids.clear();
        }
        mAPKUid = -1;
        mAPKPid = -1;
        setAPKPackageName(String16("NULL"));
        mAONDevProbed = false;
        mDisconnectClients = false;
        mConnectStatus = (world & kConnected) != 0;
        if (mZumio == nullptr) mZumio = new android::ZumioManager();
        if (mTorch == nullptr) mTorch = new android::MagnecticSensorManager();
        mZumioManager = (world & kAvatarManager) ? mZumio : nullptr;
        mZumioEnable = (world & kAvatarSwitch) != 0;
        mSupportAps2Zumio = (world & kAps2Avatar) ? 1 : 0;
        mMagneticSensorManager = (world & kTorchManager) ? mTorch : nullptr;
    }
    bool disconnecting() const { return mDisconnectClients; }

private:
    sp<android::ZumioManager> mZumio;
    sp<android::MagnecticSensorManager> mTorch;
};

// Held for the process, so nothing the harness made is reported as leaked.
FuzzExtension* gExt = nullptr;

void discardLog(const struct __android_logger_data*, const char*) {}

void writeParcel(Reader& in, Parcel* parcel, std::vector<sp<hostctl::HostBinder>>* binders) {
    if ((in.u8() & kStructuredForm) == 0) {
        const size_t n = in.remaining();
        parcel->setData(in.rest(), n);
        return;
    }
    while (!in.empty()) {
        switch (in.u8()) {
            case kInt32:
                parcel->writeInt32(static_cast<int32_t>(in.u32()));
                break;
            case kString16: {
                const std::vector<uint8_t> raw = in.bytes(2 * size_t{in.u8()});
                std::u16string units(raw.size() / 2, u'\0');
                for (size_t i = 0; i < units.size(); ++i) {
                    units[i] = static_cast<char16_t>(raw[2 * i] | (raw[2 * i + 1] << 8));
                }
                parcel->writeString16(units.data(), units.size());
                break;
            }
            case kNullString16:
                parcel->writeString16(std::optional<String16>());
                break;
            case kBinder: {
                const size_t which = in.u8() % kNamedBinders;
                while (binders->size() <= which) {
                    binders->push_back(hostctl::createBinder(
                        "fuzz-" + std::to_string(binders->size()), "fuzz.IBinder"));
                }
                parcel->writeStrongBinder((*binders)[which]);
                break;
            }
            case kNullBinder:
                parcel->writeStrongBinder(nullptr);
                break;
            case kToken:
                parcel->writeInterfaceToken(String16("android.hardware.camera"));
                break;
            case kRaw: {
                const std::vector<uint8_t> raw = in.bytes(in.u8());
                parcel->write(raw.data(), raw.size());
                break;
            }
            case kInt64:
                parcel->writeInt64(static_cast<int64_t>(in.u64()));
                break;
            default:
                break;
        }
    }
    parcel->setDataPosition(0);
}

sp<hostctl::HostCameraClient> openClient(int id) {
    sp<hostctl::HostCameraClient> client =
        new hostctl::HostCameraClient(android::String8(std::to_string(id).c_str()),
                                      String16("com.fuzz.app"), 10100 + id, 5000 + id);
    // As the server does: the close sequence drops the slot before disconnect returns.
    client->setOnDisconnect([id](hostctl::HostCameraClient&) { gExt->dropClient(id); });
    gExt->storeClient(id, client);
    return client;
}

// Results recorded by an input are swept by the next binder death once they are out of date:
// move the clock past their validity and let a registered binder die.
void sweepAuthorisations() {
    hostctl::advanceTime(kTwoDaysNs);
    sp<hostctl::HostBinder> janitor = hostctl::createBinder("fuzz-janitor");
    Parcel data, reply;
    data.writeInterfaceToken(String16("android.hardware.camera"));
    data.writeStrongBinder(janitor);
    data.setDataPosition(0);
    hostctl::setCallingIdentity(kJanitorUid, kJanitorPid);
    gExt->onTransact(10002, data, &reply, 0);
    hostctl::resetCallingIdentity();
    janitor->kill();
}

void makeDeviceRoot() {
    char tmpl[] = "/tmp/camext-fuzz-XXXXXX";
    const char* dir = mkdtemp(tmpl);
    if (dir == nullptr) abort();
    const std::filesystem::path root(dir);
    std::filesystem::create_directories(root / "odm/etc/camera");
    std::ofstream(root / "odm/etc/camera/fwk_config.json")
        << R"({"default": {"feature_auth_enable": true, "feature_aon_enable": true,
                           "privileged_app_list": ["com.tencent"]}})";
    hostctl::setDeviceRoot(dir);
    static const std::string sRoot = dir;
    atexit([] {
        std::error_code ec;
        std::filesystem::remove_all(sRoot, ec);
    });
}

}  // namespace

void initHarness() {
    if (gExt != nullptr) return;
    __android_log_set_logger(discardLog);
    makeDeviceRoot();
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    hostctl::setProperty("ro.camera.privileged.3rdpartyApp", "com.partner.cam;");
    // Information lines on, so their formats meet every value an input can carry.
    hostctl::setProperty("persist.camera.assert.panic", "true");
    gExt = new FuzzExtension();
    gExt->incStrong(nullptr);
    // Code 10014 reaches the extension through the server's factory.
    getExtFactoryImpl();
}

void runOne(const uint8_t* bytes, size_t size) {
    initHarness();
    Reader in(bytes, size);
    const uint32_t code = in.u32();
    const uint32_t flags = in.u32();
    const uid_t uid = in.u32();
    const pid_t pid = static_cast<pid_t>(in.u32());
    const uint8_t world = in.u8();

    // Every input starts at the same moment, so the sweep's jump never piles up.
    hostctl::useVirtualTime(kWallStart, kMonotonicStart);
    gExt->prepare(world);
    hostctl::setCallingIdentity(uid, pid);
    const bool granted = (world & kGranted) != 0;
    if (granted) hostctl::grantPermission(uid, pid, kSystemCamera);
    sp<hostctl::HostCameraClient> clients[2];
    if (world & kClient0) clients[0] = openClient(0);
    if (world & kClient3) clients[1] = openClient(3);

    std::vector<sp<hostctl::HostBinder>> binders;
    Parcel data;
    writeParcel(in, &data, &binders);
    Parcel reply;
    const status_t res = gExt->onTransact(code, data, &reply, flags);

    HARNESS_CHECK(res == android::OK || res == android::BAD_VALUE ||
                  res == android::UNKNOWN_ERROR || res == android::INVALID_OPERATION);
    HARNESS_CHECK(reply.dataSize() <= 2 * sizeof(int32_t));
    HARNESS_CHECK(!gExt->disconnecting());
    if (code < kFirstCode || code > kLastCode) {
        HARNESS_CHECK(res == android::INVALID_OPERATION);
        HARNESS_CHECK(data.dataPosition() == 0 && reply.dataSize() == 0);
    }
    if (code == 10009 || code == 10011) {
        HARNESS_CHECK((res == android::UNKNOWN_ERROR) == !granted);
        if (!granted) HARNESS_CHECK(reply.dataSize() == 0);
    }
    if (code == 10009 && granted) {
        for (const auto& client : clients) {
            HARNESS_CHECK(client == nullptr || client->isDisconnected());
        }
    }
    if (code == 10011 && granted) {
        reply.setDataPosition(0);
        HARNESS_CHECK(reply.readInt32() == 0);
        HARNESS_CHECK(reply.readBool() == ((world & kConnected) != 0));
    }

    hostctl::resetCallingIdentity();
    hostctl::clearPermissions();
    hostctl::clearPermissionChecks();
    for (int id = 0; id < android::kMaxCameraSlots; ++id) gExt->dropClient(id);
    sweepAuthorisations();
    for (const auto& binder : binders) binder->kill();
    hostctl::clearBinders();
}

std::vector<std::vector<uint8_t>> seedInputs() {
    constexpr uint8_t kAll = 0xff;
    std::vector<std::vector<uint8_t>> seeds;
    auto add = [&seeds](const Writer& w) { seeds.push_back(w.bytes()); };
    add(Writer()
            .header(10001, 0, 1000, 2100, kAll)
            .token()
            .int32(10234)
            .int32(7200)
            .int32(3)
            .string16("com.example.docscan"));
    add(Writer().header(10002, 0, 1000, 2100, kAll).token().binder(0));
    add(Writer().header(10003, 0, 1000, 2100, kAll).token().string16("com.whatsapp"));
    add(Writer().header(10004, 0, 10234, 7200, kAll).token().string16("com.example.docscan"));
    add(Writer()
            .header(10005, 0, 1000, 2100, kAll)
            .token()
            .string16("com.vantu.camera")
            .int32(10050)
            .int32(3100));
    add(Writer().header(10006, 0, 10050, 3100, kAll).token());
    add(Writer().header(10007, 0, 1000, 1234, kAll).token());
    add(Writer().header(10008, 0, 1000, 1234, kAll).token().int32(100));
    add(Writer().header(10009, 0, 1047, 812, kAll));
    add(Writer().header(10010, 0, 1000, 2100, kAll).token().string16("NULL"));
    add(Writer().header(10010, 0, 1000, 2100, kAll).token().string16("init"));
    add(Writer().header(10010, 0, 1000, 2100, kAll).token().string16("{\"avatar\":1}"));
    add(Writer().header(10011, 0, 1047, 812, kAll).token());
    add(Writer().header(10012, 0, 10300, 8100, kAll).token().binder(1));
    add(Writer().header(10013, 0, 10300, 8100, kAll).token());
    add(Writer().header(10014, 0, 1047, 812, kAll).token());
    // Refusals: no permission, codes just outside the range, a null binder, a null string.
    add(Writer().header(10009, 0, 10100, 5000, kAll & ~kGranted));
    add(Writer().header(10000, 0, 1000, 2100, kAll).token());
    add(Writer().header(10015, 0, 1000, 2100, kAll).token());
    add(Writer().header(10002, 0, 1000, 2100, kAll).token().nullBinder());
    add(Writer().header(10003, 1, 1000, 2100, kAll).token().nullString16());
    return seeds;
}

}  // namespace transactfuzz
