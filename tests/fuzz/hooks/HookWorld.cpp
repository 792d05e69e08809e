#include "HookWorld.h"

#include <android/log.h>
#include <hostctl/HostEnv.h>
#include <hostctl/HostHardwareBuffers.h>
#include <hostctl/Properties.h>
#include <hostctl/VendorTags.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>
#include <utils/String16.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "ExtFactory.h"
#include "common/FuzzWorld.h"
#include "platform/CameraServiceExtImpl_mtk.h"
#include "platform/CameraServiceExtImpl_qcom.h"

namespace hookfuzz {

namespace {

using android::sp;
using android::String16;
using android::String8;

constexpr int64_t kWallStart = 1700000000;
constexpr nsecs_t kMonotonicStart = 1000000000LL;
constexpr uid_t kClientUid = 10123;
constexpr pid_t kClientPid = 4321;
constexpr int kMadeUpSuffixes = 16;
// The hardware side is not under test: it leaves streams of larger buffers unallocated, so one
// input cannot cost more than a few megabytes.
constexpr size_t kMaxHalBufferBytes = 1u << 20;

const char* const kQcomDefault = "qcom-unknown";
const char* const kMtkDefault = "mt-unknown";

const char* const kPackages[kPackageCount] = {
    "com.example.app",   "com.whatsapp",        "com.whatsapp.w4b",         "com.tencent.mm",
    "com.facebook.orca", "com.facebook.katana", "com.snapchat.android",     "com.skype.raider",
    "com.vantu.camera",  "android.camera.cts",  "com.android.cts.verifier", "com.twinax.camera",
    "com.fuzz.torchapp", "com.fuzz.noflash",
};

const char* const kCameraIds[] = {"0", "1", "2", "3", "21", "22", "-1", "1a"};
constexpr size_t kCameraIdCount = sizeof(kCameraIds) / sizeof(kCameraIds[0]);

void discardLog(const struct __android_logger_data*, const char*) {}

void setBaseProperties() {
    hostctl::clearProperties();
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    // Information lines on, so their formats meet every value an input can carry.
    hostctl::setProperty("persist.camera.assert.panic", "true");
}

void makeDeviceRoot() {
    static const std::string kConfig = R"({
        "default": {"feature_fold_enable": true, "feature_get_temperature_enable": true,
                    "feature_zumio_enable": true,
                    "reject_3rd_app_stop_preview": ["com.fuzz.torchapp", "com.example.app"]},
        "com.fuzz.noflash": {"feature_flash_enable": false, "feature_fold_enable": false}})";
    fuzzworld::useDeviceRoot();
    fuzzworld::writeDeviceFile("odm/etc/camera/fwk_config.json", kConfig.data(), kConfig.size());
}

// The provider declares the library's vendor tags; a second provider declares the same names
// with other types, which is how an entry of the wrong type reaches a packet.
void installVendorTags() {
    std::vector<hostctl::VendorTag> other = hostctl::libraryVendorTags();
    for (hostctl::VendorTag& t : other) t.type = (t.type + 3) % NUM_TYPES;
    if (!hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false) ||
        !hostctl::installVendorTags(other, kOtherProvider, true, false)) {
        abort();
    }
    tagPalette();
}

android::CameraServiceExtImpl* makeExtension(const std::string& platform) {
    const android::BoardEntry* table = android::boardTable();
    for (size_t i = 0; i < android::boardTableSize(); ++i) {
        if (platform == table[i].platform) return table[i].create();
    }
    if (platform == kQcomDefault) return new android::CameraServiceExtImpl_qcom();
    return new android::CameraServiceExtImpl_mtk();
}

// The extension object of a chip. Like the server's, it lives for the process: each object keeps
// its configuration for good, so one per input would grow without bound.
android::CameraServiceExtImpl* extensionFor(const std::string& platform) {
    static std::map<std::string, sp<android::CameraServiceExtImpl>> sObjects;
    sp<android::CameraServiceExtImpl>& ext = sObjects[platform];
    if (ext == nullptr) ext = makeExtension(platform);
    return ext.get();
}

// Puts back what a session leaves in the object beyond its disconnect: the per-app request
// marks (a configuration of an app with the flash rules on clears them) and the fold state.
void resetExtension(android::CameraServiceExtImpl& ext) {
    const String8 camera("0");
    ext.setCurrentPackageName(String16("NULL"));
    ext.notifyDeviceStateChange(0);
    ext.IsNewRequest(false, false);
    const android::CameraMetadata params;
    android::camera3::StreamSet none;
    ext.beforeConfigureStreamsLocked(params, kProvider, camera, none, 0);
    ext.afterConfigureStreamsLocked(params, kProvider, params, none, camera);
    ext.beforeDisconnect(false, false, camera);
    ext.afterDisconnect(camera, String16("NULL"), nullptr);
}

}  // namespace

void check(bool cond, const char* what) {
    if (cond) return;
    fprintf(stderr, "hook fuzz harness: %s\n", what);
    abort();
}

const std::vector<std::string>& chipPlatforms() {
    static const std::vector<std::string> sPlatforms = [] {
        std::vector<std::string> out;
        const android::BoardEntry* table = android::boardTable();
        for (size_t i = 0; i < android::boardTableSize(); ++i) out.push_back(table[i].platform);
        out.push_back(kQcomDefault);
        out.push_back(kMtkDefault);
        return out;
    }();
    return sPlatforms;
}

const char* packageName(size_t index) {
    return index < kPackageCount ? kPackages[index] : kPackages[0];
}

void initWorld() {
    static bool sDone = false;
    if (sDone) return;
    sDone = true;
    __android_log_set_logger(discardLog);
    makeDeviceRoot();
    setBaseProperties();
    installVendorTags();
    // The server reaches the library through its factory first.
    getExtFactoryImpl();
}

Session::Session(Reader& in) {
    initWorld();
    hostctl::useVirtualTime(kWallStart, kMonotonicStart);
    const std::vector<std::string>& chips = chipPlatforms();
    mPlatform = chips[in.u8() % chips.size()];
    const size_t package = in.u8() % (kPackageCount + 1);
    // Package names are kept for the process once seen, so made-up ones come from a bounded set.
    if (package < kPackageCount) {
        mPackage = kPackages[package];
    } else {
        const uint8_t base = in.u8();
        const uint8_t suffix = in.u8();
        mPackage = std::string(kPackages[base % kPackageCount]) + "." +
                   std::to_string(suffix % kMadeUpSuffixes);
    }
    mCameraId = String8(kCameraIds[in.u8() % kCameraIdCount]);
    mSwitches = in.u8();
    const uint64_t foldState = (mSwitches & kFoldState) ? in.u64() : 0;

    hostctl::setProperty("ro.board.platform", mPlatform);
    if (mPlatform == kQcomDefault) hostctl::setProperty("ro.hardware", "qcom");
    hostctl::setProperty("persist.vendor.camera.debugaeaf", (mSwitches & kAeAfDebug) ? "1" : "0");
    hostctl::setProperty("persist.sys.vantu.camera.open.torch",
                         (mSwitches & kTorchForbidden) ? "0" : "1");
    mExt = extensionFor(mPlatform);

    // The connect hooks in the server's order; the component may carry the activity.
    String16 component((mPackage + ((mSwitches & kWithActivity) ? "/.Main" : "")).c_str());
    mExt->beforeConnect(mCameraId, component, false);
    mExt->setCurrentPackageName(component);
    const int apiLevel = (mSwitches & kApiLevel1) ? 1 : 2;
    mClient = new hostctl::HostCameraClient(
        mCameraId, component, kClientUid, kClientPid, 0, 0,
        apiLevel == 1 ? android::CameraService::API_1 : android::CameraService::API_2);
    mExt->afterConnect(mCameraId, component, false, mClient, mClient.get(), kProvider, apiLevel);
    if (mSwitches & kFoldState) mExt->notifyDeviceStateChange(foldState);
}

Session::~Session() {
    const String16 package(mPackage.c_str());
    mExt->beforeDisconnect(false, false, mCameraId);
    mExt->afterDisconnect(mCameraId, package, nullptr);
    for (int id = 0; id < android::kMaxCameraSlots; ++id) mExt->dropClient(id);
    mClient.clear();
    resetExtension(*mExt);
    setBaseProperties();
}

sp<hostctl::HostOutputStream> makeStream(int id, uint32_t width, uint32_t height, int format,
                                         uint64_t usage, bool locksFail) {
    hostctl::HostOutputStream::Config config;
    config.id = id;
    config.width = width;
    config.height = height;
    config.format = format;
    config.usage = usage;
    sp<hostctl::HostOutputStream> stream = new hostctl::HostOutputStream(config);
    stream->setBufferAllocator(hostctl::hardwareBufferAllocator(locksFail));
    return stream;
}

std::vector<int> configure(Session& session, const android::CameraMetadata& params,
                           android::camera3::StreamSet& streams, int operatingMode,
                           bool* endConfigureOk) {
    android::CameraServiceExtImpl& ext = session.ext();
    bool forbid = false;
    ext.forbid3rdPartyAppReconfigureStream(forbid);
    ext.setTransformForThirdApp(params, streams);
    for (int id : streams.getStreamIds()) {
        int transform = 0;
        ext.getTransformForThirdApp(transform, id);
        ext.isValidOutputStream(streams.get(id));
    }
    ext.beforeConfigureStreamsLocked(params, kProvider, session.cameraId(), streams, operatingMode);
    ext.sendZumioInitTagToHAL(params);
    ext.sendZumioJsonTagToHAL(params);
    const std::vector<int> hardware = streams.getStreamIds();
    for (int id : hardware) {
        sp<android::camera3::Camera3OutputStreamInterface> stream = streams.get(id);
        if (stream == nullptr) continue;
        stream->startConfiguration();
        if (hostctl::hostBufferSize(stream->getFormat(), stream->getWidth(), stream->getHeight()) <=
            kMaxHalBufferBytes) {
            stream->finishConfiguration();
        } else {
            stream->cancelConfiguration();
        }
    }
    const android::CameraMetadata deviceInfo;
    ext.afterConfigureStreamsLocked(params, kProvider, deviceInfo, streams, session.cameraId());
    const android::binder::Status status =
        ext.afterEndConfigure(params, nullptr, kProvider, session.cameraId());
    if (endConfigureOk != nullptr) *endConfigureOk = status.isOk();
    return hardware;
}

uint32_t nextFrame(Reader& in, uint32_t previous) {
    switch (in.u8()) {
        case 0:
            return 0;
        case 1:
            return UINT32_MAX;
        case 2:
            return previous + 1;
        case 3:
            return previous - 1;
        default:
            return in.u32();
    }
}

}  // namespace hookfuzz

// The start-up of every target built on this world.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    hookfuzz::initWorld();
    return 0;
}
