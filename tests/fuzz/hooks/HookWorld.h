/*
 * The world of the configuration, request and result fuzzers: a device root with a feature
 * configuration, the properties and vendor tags of a phone, and for each input an extension
 * object of the chip the input picks, made once by the factory's board table, with one client
 * connected through the connect hooks as the server connects it.
 *
 * Every input starts from the same world: the client disconnects after it and the object's
 * per-app marks and fold state are put back through the hooks, the properties the input sets are
 * restored and the clock starts at the same virtual moment, so a replay reproduces a run.
 *
 * The client header, read from the front of every input:
 *   u8 chip: index into chipPlatforms() (modulo its size)
 *   u8 package: index into the package list below (modulo its size plus one); the extra value
 *      means a made-up package follows: u8 index of a listed package, u8 suffix (modulo 16)
 *   u8 camera: index into the camera ids "0" "1" "2" "3" "21" "22" "-1" "1a" (modulo 8)
 *   u8 switches: bit 0 AE/AF debug printing ("persist.vendor.camera.debugaeaf"), bit 1 torch and
 *      flash forbidden ("persist.sys.vantu.camera.open.torch" = "0"), bit 2 framework API level
 *      1 (else 2), bit 3 a fold state is announced after the connect (u64 state follows),
 *      bit 4 the client names an activity ("package/.Main")
 */
#pragma once

#include <camera/CameraMetadata.h>
#include <device3/Camera3OutputStreamInterface.h>
#include <hostctl/CameraHost.h>
#include <hostctl/HostOutputStream.h>
#include <stddef.h>
#include <stdint.h>
#include <utils/String8.h>

#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "MetadataDecoder.h"

namespace hookfuzz {

// The "ro.board.platform" values an input can pick: every row of the factory's board table, then
// "qcom-unknown" and "mt-unknown", for which the factory builds the family's default class.
const std::vector<std::string>& chipPlatforms();

// Packages the rules single out, and some they do not.
enum PackageIndex : uint8_t {
    kThirdParty = 0,  // "com.example.app"
    kWhatsApp,        // "com.whatsapp"
    kWhatsAppBusiness,
    kWeChat,  // "com.tencent.mm"
    kMessenger,
    kFacebook,
    kSnapchat,
    kSkype,
    kSystemCamera,  // "com.vantu.camera", the value of "ro.vantu.system.camera.name"
    kCts,
    kCtsVerifier,
    kTwinax,
    kTorchApp,    // in "reject_3rd_app_stop_preview"
    kNoFlashApp,  // its section turns "feature_flash_enable" and "feature_fold_enable" off
    kPackageCount,
};
const char* packageName(size_t index);

enum SwitchBits : uint8_t {
    kAeAfDebug = 1 << 0,
    kTorchForbidden = 1 << 1,
    kApiLevel1 = 1 << 2,
    kFoldState = 1 << 3,
    kWithActivity = 1 << 4,
};

// Builds the world once; idempotent.
void initWorld();

// One connected client of one extension object; disconnects and releases it when destroyed.
class Session {
public:
    explicit Session(Reader& in);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    android::CameraServiceExtImpl& ext() { return *mExt; }
    const android::String8& cameraId() const { return mCameraId; }
    const std::string& package() const { return mPackage; }
    const std::string& platform() const { return mPlatform; }
    uint8_t switches() const { return mSwitches; }

private:
    android::CameraServiceExtImpl* mExt = nullptr;
    android::sp<hostctl::HostCameraClient> mClient;
    android::String8 mCameraId;
    std::string mPackage;
    std::string mPlatform;
    uint8_t mSwitches = 0;
};

// A host output stream of hardware buffers, as the server makes one for an app's surface.
android::sp<hostctl::HostOutputStream> makeStream(int id, uint32_t width, uint32_t height,
                                                  int format, uint64_t usage, bool locksFail);

// A configuration as the server runs it: the reconfiguration and transform queries, both
// configuration hooks (the avatar tags written after the first) around the hardware
// configuration of what they leave in `streams`, then afterEndConfigure. The stream ids the
// hardware saw.
std::vector<int> configure(Session& session, const android::CameraMetadata& params,
                           android::camera3::StreamSet& streams, int operatingMode,
                           bool* endConfigureOk = nullptr);

// Aborts with `what` when `cond` is false (the fuzzer reports the abort with its input).
void check(bool cond, const char* what);

// The frame number after `previous` as the input picks it: 0, 2^32-1, the next, the one before
// (a restarted numbering) or any.
uint32_t nextFrame(Reader& in, uint32_t previous);

}  // namespace hookfuzz
