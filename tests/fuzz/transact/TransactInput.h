/*
 * The input format of the transaction fuzzer, shared by the fuzzer (which decodes it) and the
 * seed writer (which encodes the checked-in corpus).
 *
 * An input is a world and a sequence of operations played in order on one extension object, so
 * that the state one operation leaves is what the next sees. All integers are little-endian.
 *   u8  world: bit 0 SYSTEM_CAMERA granted to every transaction's caller, 1 a client connected,
 *       2 avatar manager present, 3 avatar switch, 4 frame-processing avatar support,
 *       5 accessory-torch manager present, 6 a client on camera 0, 7 a client on camera 3
 *   then, until the input ends, operations: a u8 operation (taken modulo kOpCount) and its
 *   operands. "camera" is a u8 camera choice: 0..21 the slot ids, 22 an id beyond the slots,
 *   23 an id that is not a number (taken modulo 24). "package" is a u8 index into kPackages
 *   (taken modulo its size).
 *     0 transaction   u32 code, u32 flags, u32 calling uid, u32 calling pid, u16 parcel length L,
 *                     then L bytes of parcel: a u8 form, then
 *                       even form -> the rest is the parcel's bytes as they are;
 *                       odd form  -> the rest is a list of typed items, a u8 kind and its payload:
 *                         0 int32 (4 bytes)          1 String16 (u8 count, then count UTF-16 units)
 *                         2 null String16            3 strong binder (u8: which of four named
 *                                                      binders; they live for the whole input)
 *                         4 null binder              5 the interface token
 *                                                      "android.hardware.camera"
 *                         6 raw bytes (u8 count, then the bytes, padded as a write pads them)
 *                         7 int64 (8 bytes)          other kinds are skipped
 *     1 connect       camera, package: beforeConnect, and when admitted afterConnect and
 *                     onClientChange with a new client of the harness
 *     2 disconnect    camera: the server's close sequence for the camera's client, if it has one
 *     3 eviction      camera, package: customIntelligentEviction
 *     4 configure     camera, u8 stream mask (bit i adds kStreamKinds[i], HookOps.cpp), u8
 *                     operating mode: before/afterConfigureStreamsLocked and afterEndConfigure
 *     5 request       camera, u32 frame, u8 AF trigger, u8 AE precapture trigger, u8 flash mode:
 *                     IsNewRequest, onPrepareHalRequestsUpdateMetadata, afterSendRequestsBatch,
 *                     setTorchIntensity, checkNeedEnableMagneticSensor
 *     6 result        camera, u32 frame, u8 AE state, u8 AF state: beforeMetadataSendToApp
 *     7 characteristics  camera: getCameraCharacteristics on a small characteristics set
 *     8 torch         camera, u8 on (bit 0): beforeSetTorchMode
 *     9 sensor event  u8 value: a magnetic proximity event with that value
 *    10 binder death  u8 which: the named binder dies and the server's binderDied hook is told
 *    11 signal        u8 signal code, u8 value: the always-on driver's signal on this thread
 *    12 time          u16 milliseconds the clock moves on
 * A short input ends wherever it runs out; missing operands read as zero.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string>
#include <vector>

#include "common/InputReader.h"
namespace transactfuzz {

enum ItemKind : uint8_t {
    kInt32 = 0,
    kString16 = 1,
    kNullString16 = 2,
    kBinder = 3,
    kNullBinder = 4,
    kToken = 5,
    kRaw = 6,
    kInt64 = 7,
};

enum WorldBits : uint8_t {
    kGranted = 1 << 0,
    kConnected = 1 << 1,
    kAvatarManager = 1 << 2,
    kAvatarSwitch = 1 << 3,
    kAps2Avatar = 1 << 4,
    kTorchManager = 1 << 5,
    kClient0 = 1 << 6,
    kClient3 = 1 << 7,
};

enum Op : uint8_t {
    kTransact = 0,
    kConnect = 1,
    kDisconnect = 2,
    kEvict = 3,
    kConfigure = 4,
    kRequest = 5,
    kResult = 6,
    kCharacteristics = 7,
    kTorch = 8,
    kSensorEvent = 9,
    kBinderDeath = 10,
    kSignal = 11,
    kTime = 12,
    kOpCount = 13,
};

constexpr int kNamedBinders = 4;
constexpr uint8_t kStructuredForm = 1;
// Camera choices: the 22 slot ids, one beyond them and one that is not a number.
constexpr uint8_t kCameraChoices = 24;
constexpr uint8_t kCameraBeyondSlots = 22;

// The packages a connect or an eviction names: ordinary, named and privileged apps, the system
// camera, the test suites, a component with its activity, and names that are barely names.
constexpr const char* kPackages[] = {
    "com.fuzz.app",
    "com.whatsapp",
    "com.vantu.camera",
    "android.camera.cts",
    "com.android.cts.verifier",
    "com.tencent.mm",
    "com.partner.cam",
    "android",
    "com.example.docscan/.Main",
    "",
    "/x",
    "com.ims.service",
};
constexpr size_t kPackageCount = sizeof(kPackages) / sizeof(kPackages[0]);

using Reader = fuzzworld::InputReader;

// Builds a transaction's parcel in the structured form.
class ParcelWriter {
public:
    ParcelWriter() { mOut.push_back(kStructuredForm); }
    ParcelWriter& token() { return kind(kToken); }
    ParcelWriter& int32(int32_t v) {
        kind(kInt32);
        for (int i = 0; i < 4; ++i) mOut.push_back(static_cast<uint8_t>(v >> (8 * i)));
        return *this;
    }
    ParcelWriter& string16(const std::string& ascii) {
        kind(kString16);
        mOut.push_back(static_cast<uint8_t>(ascii.size()));
        for (char c : ascii) {
            mOut.push_back(static_cast<uint8_t>(c));
            mOut.push_back(0);
        }
        return *this;
    }
    ParcelWriter& nullString16() { return kind(kNullString16); }
    ParcelWriter& binder(uint8_t which) {
        kind(kBinder);
        mOut.push_back(which);
        return *this;
    }
    ParcelWriter& nullBinder() { return kind(kNullBinder); }
    const std::vector<uint8_t>& bytes() const { return mOut; }

private:
    ParcelWriter& kind(ItemKind k) {
        mOut.push_back(k);
        return *this;
    }
    std::vector<uint8_t> mOut;
};

// Builds inputs in the format above.
class Writer {
public:
    explicit Writer(uint8_t world) { mOut.push_back(world); }

    Writer& transact(uint32_t code, uint32_t uid, uint32_t pid,
                     const ParcelWriter& parcel = ParcelWriter(), uint32_t flags = 0) {
        op(kTransact).u32(code).u32(flags).u32(uid).u32(pid);
        const std::vector<uint8_t>& p = parcel.bytes();
        u16(static_cast<uint16_t>(p.size()));
        mOut.insert(mOut.end(), p.begin(), p.end());
        return *this;
    }
    Writer& connect(uint8_t camera, uint8_t package) { return op(kConnect).u8(camera).u8(package); }
    Writer& disconnect(uint8_t camera) { return op(kDisconnect).u8(camera); }
    Writer& evict(uint8_t camera, uint8_t package) { return op(kEvict).u8(camera).u8(package); }
    Writer& configure(uint8_t camera, uint8_t streamMask, uint8_t mode = 0) {
        return op(kConfigure).u8(camera).u8(streamMask).u8(mode);
    }
    Writer& request(uint8_t camera, uint32_t frame, uint8_t afTrigger = 0, uint8_t aeTrigger = 0,
                    uint8_t flash = 0) {
        return op(kRequest).u8(camera).u32(frame).u8(afTrigger).u8(aeTrigger).u8(flash);
    }
    Writer& result(uint8_t camera, uint32_t frame, uint8_t aeState, uint8_t afState) {
        return op(kResult).u8(camera).u32(frame).u8(aeState).u8(afState);
    }
    Writer& characteristics(uint8_t camera) { return op(kCharacteristics).u8(camera); }
    Writer& torch(uint8_t camera, bool on) { return op(kTorch).u8(camera).u8(on ? 1 : 0); }
    Writer& sensorEvent(uint8_t value) { return op(kSensorEvent).u8(value); }
    Writer& binderDeath(uint8_t which) { return op(kBinderDeath).u8(which); }
    Writer& signal(uint8_t code, uint8_t value = 0) { return op(kSignal).u8(code).u8(value); }
    Writer& time(uint16_t ms) { return op(kTime).u16(ms); }
    const std::vector<uint8_t>& bytes() const { return mOut; }

private:
    Writer& op(Op o) { return u8(o); }
    Writer& u8(uint8_t v) {
        mOut.push_back(v);
        return *this;
    }
    Writer& u16(uint16_t v) { return u8(static_cast<uint8_t>(v)).u8(static_cast<uint8_t>(v >> 8)); }
    Writer& u32(uint32_t v) {
        for (int i = 0; i < 4; ++i) mOut.push_back(static_cast<uint8_t>(v >> (8 * i)));
        return *this;
    }

    std::vector<uint8_t> mOut;
};

}  // namespace transactfuzz
