// The hook operations of the transaction fuzzer: each calls the extension's hooks in the order
// and with the objects the camera server uses, so transactions meet clients, streams, requests,
// results and device events in every order an input can give.
#include <camera/CaptureResult.h>
#include <hostctl/HostEnv.h>
#include <hostctl/HostHardwareBuffers.h>
#include <hostctl/MediaDevices.h>
#include <hostctl/Services.h>
#include <hostctl/VendorTags.h>
#include <signal.h>
#include <string.h>
#include <system/camera_metadata.h>

#include "TransactWorld.h"

namespace transactfuzz {

namespace {

using android::CameraMetadata;
using android::sp;
using android::String16;
using android::String8;

// The vendor id of the host's camera provider; its tags are also the process-wide ones.
constexpr uint64_t kVendorId = 0x5a5a;
constexpr int kApiLevel2 = 2;

// The streams a configuration can ask for, by bit of the operation's mask: preview, preview
// callback, still capture, video, the hidden meta stream, a raw stream, and two odd ones. The
// host allocates every buffer of a configured stream, so the sizes are small but the meta
// stream's, which the library recognises by its size.
struct StreamKind {
    uint32_t width;
    uint32_t height;
    int format;
};
constexpr StreamKind kStreamKinds[8] = {
    {320, 240, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED},
    {160, 120, HAL_PIXEL_FORMAT_YCbCr_420_888},
    {640, 480, HAL_PIXEL_FORMAT_BLOB},
    {640, 360, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED},
    {300, 1024, HAL_PIXEL_FORMAT_YCbCr_420_888},
    {320, 240, HAL_PIXEL_FORMAT_RAW16},
    {1, 1, HAL_PIXEL_FORMAT_YCbCr_420_888},
    {300, 1024, HAL_PIXEL_FORMAT_BLOB},
};

// The characteristics every camera of the input has.
CameraMetadata* gCharacteristics = nullptr;

CameraMetadata makeCharacteristics() {
    CameraMetadata md;
    const int32_t streams[] = {33, 4000, 3000, 0, 35, 4000, 3000, 0, 35, 1920, 1080, 0,
                               34, 1920, 1080, 0, 35, 640,  480,  0, 35, 4000, 3000, 1};
    md.update(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, streams,
              sizeof(streams) / sizeof(streams[0]));
    const int64_t exposure[] = {10000, 30000000000LL};
    md.update(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, exposure, 2);
    const int32_t hfr[] = {1920, 1080, 120, 120, 1, 1280, 720, 30, 240, 4};
    md.update(ANDROID_CONTROL_AVAILABLE_HIGH_SPEED_VIDEO_CONFIGURATIONS, hfr, 10);
    const uint8_t faces[] = {0, 1, 2};
    md.update(ANDROID_STATISTICS_INFO_AVAILABLE_FACE_DETECT_MODES, faces, 3);
    const uint8_t facing = ANDROID_LENS_FACING_BACK;
    md.update(ANDROID_LENS_FACING, &facing, 1);
    const uint8_t flash = 1;
    md.update(ANDROID_FLASH_INFO_AVAILABLE, &flash, 1);
    hostctl::setMetadataVendorId(&md, kVendorId);
    return md;
}

CameraMetadata newPacket() {
    CameraMetadata md;
    hostctl::setMetadataVendorId(&md, kVendorId);
    return md;
}

uint8_t cameraChoice(Reader& in) {
    return in.u8() % kCameraChoices;
}

// The camera id as the server passes it as a number: the id text read as one, -1 when it is not.
int cameraIdInt(uint8_t choice) {
    return choice == kCameraChoices - 1 ? -1 : choice;
}

hostctl::HostCaptureOutputStates& resultsOf(CameraSide& side, uint8_t choice) {
    if (side.results == nullptr) {
        hostctl::HostCaptureOutputStates::Options options;
        options.vendorTagId = kVendorId;
        side.results = std::make_unique<hostctl::HostCaptureOutputStates>(
            cameraIdText(choice), *gCharacteristics, options);
    }
    return *side.results;
}

void connect(World& world, uint8_t choice, const char* component) {
    CameraSide& side = world.cameras[choice];
    const String8 id(cameraIdText(choice).c_str());
    String16 package(component);
    const uid_t uid = 10000 + choice;
    const pid_t pid = 3000 + choice;
    hostctl::setCallingIdentity(uid, pid);
    const int32_t verdict = gExt->beforeConnect(id, package, false);
    HARNESS_CHECK(verdict == 0 || verdict == 4 || verdict == 7);
    if (verdict == 0) {
        if (side.client != nullptr) {
            // The server evicts the camera's earlier client itself when the library let it stay.
            sp<hostctl::HostCameraClient> old = side.client;
            old->disconnect();
            if (side.client == old) closeClient(world, choice);
        }
        gExt->setCurrentPackageName(package);
        sp<hostctl::HostCameraClient> client = new hostctl::HostCameraClient(id, package, uid, pid);
        World* w = &world;
        client->setOnDisconnect(
            [w, choice](hostctl::HostCameraClient&) { closeClient(*w, choice); });
        side.client = client;
        side.package = String8(package).string();
        HARNESS_CHECK(
            gExt->afterConnect(id, package, false, client, client.get(), kVendorId, kApiLevel2));
        HARNESS_CHECK(gExt->getConnectStatus());
        sp<android::CameraService::BasicClient> basic = client;
        gExt->onClientChange(id, basic, true);
    }
    hostctl::resetCallingIdentity();
}

void configure(World& world, uint8_t choice, uint8_t mask, int mode) {
    CameraSide& side = world.cameras[choice];
    const String8 id(cameraIdText(choice).c_str());
    CameraMetadata params = newPacket();
    android::camera3::StreamSet streams;
    for (int i = 0; i < 8; ++i) {
        if ((mask & (1 << i)) == 0) continue;
        hostctl::HostOutputStream::Config config;
        config.id = i;
        config.width = kStreamKinds[i].width;
        config.height = kStreamKinds[i].height;
        config.format = kStreamKinds[i].format;
        sp<hostctl::HostOutputStream> stream = new hostctl::HostOutputStream(config);
        stream->setBufferAllocator(hostctl::hardwareBufferAllocator(false));
        streams.add(i, stream);
    }
    gExt->beforeConfigureStreamsLocked(params, kVendorId, id, streams, mode);
    for (int sid : streams.getStreamIds()) {
        auto stream = streams.get(sid);
        if (stream == nullptr) continue;
        stream->startConfiguration();
        stream->finishConfiguration();
    }
    gExt->afterConfigureStreamsLocked(params, kVendorId, *gCharacteristics, streams, id);
    gExt->afterEndConfigure(params, side.client.get(), kVendorId, id);

    side.results.reset();
    hostctl::HostCaptureOutputStates& results = resultsOf(side, choice);
    for (int sid : streams.getStreamIds()) results.outputStreams.add(sid, streams.get(sid));
}

void request(uint8_t choice, uint32_t frame, uint8_t afTrigger, uint8_t aeTrigger, uint8_t flash) {
    CameraMetadata settings = newPacket();
    settings.update(ANDROID_CONTROL_AF_TRIGGER, &afTrigger, 1);
    settings.update(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, &aeTrigger, 1);
    settings.update(ANDROID_FLASH_MODE, &flash, 1);
    gExt->IsNewRequest((frame & 1) != 0, true);
    gExt->onPrepareHalRequestsUpdateMetadata(settings, frame);
    const camera_metadata_t* raw = settings.getAndLock();
    gExt->afterSendRequestsBatch(raw, String8(cameraIdText(choice).c_str()));
    settings.unlock(raw);
    gExt->setTorchIntensity(settings, frame);
    gExt->checkNeedEnableMagneticSensor();
}

void result(World& world, uint8_t choice, uint32_t frame, uint8_t aeState, uint8_t afState) {
    hostctl::HostCaptureOutputStates& results = resultsOf(world.cameras[choice], choice);
    android::CaptureResult result;
    result.mMetadata = newPacket();
    result.mMetadata.update(ANDROID_CONTROL_AE_STATE, &aeState, 1);
    result.mMetadata.update(ANDROID_CONTROL_AF_STATE, &afState, 1);
    const int64_t timestamp = 1000000LL * frame;
    result.mMetadata.update(ANDROID_SENSOR_TIMESTAMP, &timestamp, 1);
    result.mResultExtras.frameNumber = frame;
    results.addInFlightRequest(frame, android::camera3::InFlightRequest());
    gExt->beforeMetadataSendToApp(&result, frame, results.states());
    results.removeInFlightRequest(frame);
}

}  // namespace

std::string cameraIdText(uint8_t choice) {
    return choice == kCameraChoices - 1 ? "x1" : std::to_string(choice);
}

sp<hostctl::HostBinder> namedBinder(World& world, size_t which) {
    while (world.binders.size() <= which) {
        world.binders.push_back(
            hostctl::createBinder("fuzz-" + std::to_string(world.binders.size()), "fuzz.IBinder"));
    }
    return world.binders[which];
}

void closeClient(World& world, uint8_t choice) {
    CameraSide& side = world.cameras[choice];
    if (side.client == nullptr || side.closing) return;
    side.closing = true;
    sp<hostctl::HostCameraClient> client = side.client;
    const String8 id(cameraIdText(choice).c_str());
    gExt->beforeDisconnect(false, false, id);
    gExt->afterDisconnect(id, String16(side.package.c_str()), world.service);
    HARNESS_CHECK(!gExt->getConnectStatus());
    sp<android::CameraService::BasicClient> basic = client;
    gExt->onClientChange(id, basic, false);
    side.client = nullptr;
    side.package.clear();
    side.closing = false;
    // A client the library disconnected is inside its own disconnect() now: it must outlive
    // that call, as the server's reference outlives the eviction.
    world.retired.push_back(client);
}

void playHookOp(World& world, Op op, Reader& in) {
    switch (op) {
        case kConnect: {
            const uint8_t choice = cameraChoice(in);
            world.touched |= 1u << choice;
            connect(world, choice, kPackages[in.u8() % kPackageCount]);
            break;
        }
        case kDisconnect:
            closeClient(world, cameraChoice(in));
            break;
        case kEvict: {
            const uint8_t choice = cameraChoice(in);
            gExt->customIntelligentEviction(cameraIdInt(choice),
                                            String16(kPackages[in.u8() % kPackageCount]));
            break;
        }
        case kConfigure: {
            const uint8_t choice = cameraChoice(in);
            world.touched |= 1u << choice;
            const uint8_t mask = in.u8();
            configure(world, choice, mask, in.u8());
            break;
        }
        case kRequest: {
            const uint8_t choice = cameraChoice(in);
            const uint32_t frame = in.u32();
            const uint8_t af = in.u8();
            const uint8_t ae = in.u8();
            request(choice, frame, af, ae, in.u8());
            break;
        }
        case kResult: {
            const uint8_t choice = cameraChoice(in);
            const uint32_t frame = in.u32();
            const uint8_t ae = in.u8();
            result(world, choice, frame, ae, in.u8());
            break;
        }
        case kCharacteristics: {
            CameraMetadata info(*gCharacteristics);
            const String16 id(cameraIdText(cameraChoice(in)).c_str());
            HARNESS_CHECK(gExt->getCameraCharacteristics(id, &info) == android::OK);
            break;
        }
        case kTorch: {
            const String8 id(cameraIdText(cameraChoice(in)).c_str());
            const android::status_t verdict = gExt->beforeSetTorchMode(id, (in.u8() & 1) != 0);
            HARNESS_CHECK(verdict == 0 || verdict == 3 || verdict == 4);
            break;
        }
        case kSensorEvent:
            hostctl::deliverMagneticEvent(static_cast<float>(in.u8()));
            break;
        case kBinderDeath: {
            sp<hostctl::HostBinder> binder = namedBinder(world, in.u8() % kNamedBinders);
            binder->kill();
            gExt->binderDied(android::wp<android::IBinder>(binder));
            break;
        }
        case kSignal: {
            siginfo_t info;
            memset(&info, 0, sizeof(info));
            info.si_signo = 29;
            info.si_code = in.u8();
            info.si_value.sival_int = in.u8();
            FuzzExtension::driverSignal(&info);
            break;
        }
        case kTime:
            hostctl::advanceTime(static_cast<nsecs_t>(in.u16()) * 1000000LL);
            break;
        default:
            break;
    }
}

void checkBetweenOps() {
    HARNESS_CHECK(!gExt->disconnecting());
    const int32_t aon = android::gAONStatus;
    HARNESS_CHECK(aon >= android::AON_IDLE && aon <= android::AON_CLOSING);
    for (int id = 0; id < android::kMaxCameraSlots; ++id) {
        sp<android::CameraService::BasicClient> client = gExt->promoteClient(id);
        // Every client in a slot is one of the harness's.
        if (client != nullptr) {
            HARNESS_CHECK(!static_cast<hostctl::HostCameraClient*>(client.get())->isDisconnected());
        }
    }
}

void initHookOps() {
    hostctl::installVendorTags(hostctl::libraryVendorTags(), kVendorId, true, true);
    hostctl::ServicesConfig services;
    services.sensors = true;
    services.magneticSensor = true;
    hostctl::startServices(services);
    // A back and a front sensor, so that the always-on camera can be opened.
    hostctl::MediaDevice media;
    media.entities = {
        {"imx766", hostctl::kCameraSensorEntityType, 1800, false},
        {"imx471", hostctl::kCameraSensorEntityType, hostctl::kFrontSensorPosition, false}};
    hostctl::setMediaDevices({media});
    gCharacteristics = new CameraMetadata(makeCharacteristics());
}

}  // namespace transactfuzz
