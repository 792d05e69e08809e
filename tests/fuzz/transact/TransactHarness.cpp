#include "TransactHarness.h"

#include <android/log.h>
#include <binder/Parcel.h>
#include <hostctl/HostEnv.h>
#include <hostctl/Properties.h>
#include <hostctl/Services.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "ExtFactory.h"
#include "TransactWorld.h"
#include "common/FuzzWorld.h"

namespace transactfuzz {

FuzzExtension* gExt = nullptr;

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
// The parcel of a transaction is at most this long, whatever its length field says.
constexpr size_t kMaxParcelBytes = 4096;

// The operation being played, for the report of a broken rule.
uint32_t gOpIndex = 0;
uint32_t gCode = 0;

void discardLog(const struct __android_logger_data*, const char*) {}

void writeParcel(Reader& in, Parcel* parcel, World& world) {
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
            case kBinder:
                parcel->writeStrongBinder(namedBinder(world, in.u8() % kNamedBinders));
                break;
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

// Clients of the harness that are open when the input starts, outside any connect: the server
// has them, the library knows them only through its client slots.
void openWorldClient(World& world, uint8_t choice) {
    CameraSide& side = world.cameras[choice];
    side.client =
        new hostctl::HostCameraClient(android::String8(cameraIdText(choice).c_str()),
                                      String16("com.fuzz.app"), 10100 + choice, 5000 + choice);
    side.package = "com.fuzz.app";
    World* w = &world;
    side.client->setOnDisconnect(
        [w, choice](hostctl::HostCameraClient&) { closeClient(*w, choice); });
    gExt->storeClient(choice, side.client);
    world.touched |= 1u << choice;
}

void playTransaction(World& world, Reader& in) {
    const uint32_t code = in.u32();
    const uint32_t flags = in.u32();
    const uid_t uid = in.u32();
    const pid_t pid = static_cast<pid_t>(in.u32());
    Reader parcelBytes = in.sub(std::min<size_t>(in.u16(), kMaxParcelBytes));
    gCode = code;

    const bool granted = (world.bits & kGranted) != 0;
    hostctl::setCallingIdentity(uid, pid);
    if (granted) hostctl::grantPermission(uid, pid, kSystemCamera);
    const bool connectedBefore = gExt->getConnectStatus();
    Parcel data;
    writeParcel(parcelBytes, &data, world);
    Parcel reply;
    const status_t res = gExt->onTransact(code, data, &reply, flags);
    hostctl::resetCallingIdentity();
    hostctl::clearPermissions();
    hostctl::clearPermissionChecks();

    HARNESS_CHECK(res == android::OK || res == android::BAD_VALUE ||
                  res == android::UNKNOWN_ERROR || res == android::INVALID_OPERATION);
    HARNESS_CHECK(reply.dataSize() <= 2 * sizeof(int32_t));
    if (code < kFirstCode || code > kLastCode) {
        HARNESS_CHECK(res == android::INVALID_OPERATION);
        HARNESS_CHECK(data.dataPosition() == 0 && reply.dataSize() == 0);
    }
    if (code == 10009 || code == 10011) {
        HARNESS_CHECK((res == android::UNKNOWN_ERROR) == !granted);
        if (!granted) HARNESS_CHECK(reply.dataSize() == 0);
    }
    if (code == 10009 && granted) {
        // Every client the slots knew is gone, from the server's side and from the slots.
        for (int id = 0; id < android::kMaxCameraSlots; ++id) {
            HARNESS_CHECK(world.cameras[id].client == nullptr);
            HARNESS_CHECK(gExt->promoteClient(id) == nullptr);
        }
    }
    if (code == 10011 && granted) {
        reply.setDataPosition(0);
        HARNESS_CHECK(reply.readInt32() == 0);
        HARNESS_CHECK(reply.readBool() == connectedBefore);
    }
    gCode = 0;
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

void setBaseProperties() {
    hostctl::clearProperties();
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    hostctl::setProperty("ro.camera.privileged.3rdpartyApp", "com.partner.cam;");
    // Information lines on, so their formats meet every value an input can carry.
    hostctl::setProperty("persist.camera.assert.panic", "true");
}

// Puts the library back as a server with no client leaves it: every camera the input used is
// closed, the always-on camera is shut, the authorised-app manager is swept.
void resetWorld(World& world) {
    for (uint8_t choice = 0; choice < kCameraChoices; ++choice) {
        if ((world.touched & (1u << choice)) == 0) continue;
        closeClient(world, choice);
        const android::String8 id(cameraIdText(choice).c_str());
        // A configuration without an open client leaves a meta stream record behind.
        gExt->beforeDisconnect(false, false, id);
        gExt->afterDisconnect(id, String16("NULL"), world.service);
        world.cameras[choice].results.reset();
    }
    gExt->enumerateProviders();
    for (int id = 0; id < android::kMaxCameraSlots; ++id) gExt->dropClient(id);
    sweepAuthorisations();
    for (const auto& binder : world.binders) binder->kill();
    world.binders.clear();
    hostctl::clearBinders();
    setBaseProperties();
    // The host's record of the services' calls would grow with every input.
    hostctl::clearServiceCalls();
}

void makeDeviceRoot() {
    static const std::string kConfig =
        R"({"default": {"feature_auth_enable": true, "feature_aon_enable": true,
                           "privileged_app_list": ["com.tencent"],
                           "thirdPartyAppWidthLimitForCam0": 1920,
                           "thirdPartyAppHeightLimitForCam0": 1080}})";
    fuzzworld::useDeviceRoot();
    fuzzworld::writeDeviceFile("odm/etc/camera/fwk_config.json", kConfig.data(), kConfig.size());
}

}  // namespace

void fail(const char* rule, const char* file, int line) {
    fprintf(stderr, "transact harness: %s failed at %s:%d (operation %u, code %u)\n", rule, file,
            line, gOpIndex, gCode);
    abort();
}

void FuzzExtension::prepare(uint8_t world) {
    {
        std::lock_guard<std::mutex> lock(mPrivilegedUidsLock);
        mPrivilegedUids.clear();
    }
    storeCurrentPackageName(android::String8("NULL"));
    {
        std::lock_guard<std::mutex> lock(mClientNameLock);
        mActivityName = "NULL";
        mClientComponentName = "";
    }
    mAPKUid = -1;
    mAPKPid = -1;
    setAPKPackageName(String16("NULL"));
    mAONDevProbed = false;
    mDisconnectClients = false;
    mDoingDisconnect = false;
    mFreeDomEviction = false;
    mApplyThirdPartySettings = false;
    mTorchOn = false;
    mRejectStopPreview = false;
    mLastAFtrigger = 0;
    mLastRequestAFtrigger = 0;
    mLastCameraId = -1;
    mVendorId = static_cast<uint64_t>(-1);
    mConnectStatus = (world & kConnected) != 0;
    if (mZumio == nullptr) mZumio = new android::ZumioManager();
    if (mTorch == nullptr) mTorch = new android::MagnecticSensorManager();
    mZumioManager = (world & kAvatarManager) ? mZumio : nullptr;
    mZumioEnable = (world & kAvatarSwitch) != 0;
    mSupportAps2Zumio = (world & kAps2Avatar) ? 1 : 0;
    mMagneticSensorManager = (world & kTorchManager) ? mTorch : nullptr;
}

void initHarness() {
    if (gExt != nullptr) return;
    __android_log_set_logger(discardLog);
    makeDeviceRoot();
    setBaseProperties();
    gExt = new FuzzExtension();
    gExt->incStrong(nullptr);
    initHookOps();
    // Code 10014 reaches the extension through the server's factory.
    getExtFactoryImpl();
}

void runOne(const uint8_t* bytes, size_t size) {
    initHarness();
    Reader in(bytes, size);
    World world;
    world.service = new hostctl::HostCameraService();
    world.bits = in.u8();

    // Every input starts at the same moment, so the sweep's jump never piles up.
    hostctl::useVirtualTime(kWallStart, kMonotonicStart);
    gExt->prepare(world.bits);
    if (world.bits & kClient0) openWorldClient(world, 0);
    if (world.bits & kClient3) openWorldClient(world, 3);

    for (gOpIndex = 0; !in.empty(); ++gOpIndex) {
        const Op op = static_cast<Op>(in.u8() % kOpCount);
        if (op == kTransact) {
            playTransaction(world, in);
        } else {
            playHookOp(world, op, in);
        }
        checkBetweenOps();
    }
    resetWorld(world);
}

}  // namespace transactfuzz
