/*
 * The characteristics fuzzer: plays one characteristics query (format in CharacteristicsInput.h)
 * on the extension object of a chip of the board table, for a fuzzed package and camera id and
 * fuzzed characteristics (size tables, high-speed entries, exposure ranges, wrong types and
 * counts). It checks what the query may do to them whatever the input: it answers OK, leaves a
 * valid packet, only drops whole output entries of the cut formats from the stream table,
 * changes high-speed entries only by the batch-size fix, sets the exposure range only to the
 * test suites' range, removes the face-detect modes only for the verifier, and leaves every
 * malformed entry and every other tag as it was. A broken rule aborts, which libFuzzer reports.
 *
 * One extension object per chip is made at start-up, as the server's factory makes one; the
 * properties and the per-app flag the query reads are put back before every input.
 */
#include <android/log.h>
#include <camera/CameraMetadata.h>
#include <hostctl/CameraHost.h>
#include <hostctl/HostEnv.h>
#include <hostctl/Properties.h>
#include <hostctl/Services.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "CharacteristicsInput.h"
#include "ExtFactory.h"
#include "common/FuzzWorld.h"

namespace {

using android::CameraMetadata;
using android::sp;
using android::String16;
using android::String8;
using namespace charfuzz;

#define HARNESS_CHECK(cond)                                                                     \
    do {                                                                                        \
        if (!(cond)) {                                                                          \
            fprintf(stderr, "characteristics harness: %s failed (line %d)\n", #cond, __LINE__); \
            abort();                                                                            \
        }                                                                                       \
    } while (0)

constexpr char kVerifierPrefix[] = "com.android.cts.verifier";
constexpr size_t kVerifierPrefixLength = 24;
constexpr int64_t kItsMinExposureNs = 100000;
constexpr int64_t kItsMaxExposureNs = 2000000000;
constexpr size_t kHfrMaxValues = 512;

// Tags of each type that the input's tags never are: a wrong-typed entry is added under the
// one of its type and then given the input's tag, as a packet from a faulty provider holds it.
constexpr uint32_t kTypeHolders[NUM_TYPES] = {
    ANDROID_CONTROL_AE_AVAILABLE_MODES,
    ANDROID_SENSOR_ORIENTATION,
    ANDROID_LENS_INFO_AVAILABLE_FOCAL_LENGTHS,
    ANDROID_SENSOR_INFO_MAX_FRAME_DURATION,
    ANDROID_JPEG_GPS_COORDINATES,
    ANDROID_CONTROL_AE_COMPENSATION_STEP,
};
// The packet's layout (Android's camera_metadata wire format): the header's offset of the entry
// records, and the size of one record, whose first field is the tag.
constexpr size_t kEntriesStartOffset = 20;
constexpr size_t kEntryRecordSize = 16;

// The configuration the chips are built with: limits for cameras 0, 1 and the others, an app
// with JPEG limits, one on the motor's size list, one skip-listed, and the system camera free.
constexpr char kConfig[] = R"({
  "default": {
    "feature_auth_enable": false,
    "thirdPartyAppWidthLimitForCam0": 1920, "thirdPartyAppHeightLimitForCam0": 1080,
    "thirdPartyAppWidthLimitForCam1": 1280, "thirdPartyAppHeightLimitForCam1": 720,
    "maxPreviewWidth": 640, "maxPreviewHeight": 480, "thirdPartyAppLimitPicture": false,
    "limit_3rd_app_size": ["com.fuzz.limited.main.preview"],
    "skip_rus_check_list": ["com.fuzz.skipped"]
  },
  "com.vantu.camera": {"thirdPartyAppWidthLimitForCam0": 0, "thirdPartyAppWidthLimitForCam1": 0,
                       "maxPreviewWidth": 0},
  "com.fuzz.jpeg": {"thirdPartyAppLimitPicture": true},
  "com.fuzz.free": {"feature_resolution_enable": false}
})";

// The chips' extension objects, by board table row; never destroyed, so that they stay
// reachable for the leak check at exit.
std::vector<android::CameraServiceExtImpl*>& gChips =
    *new std::vector<android::CameraServiceExtImpl*>();
sp<hostctl::HostCameraService> gService;

void discardLog(const struct __android_logger_data*, const char*) {}

// One entry as it was before the query, to compare with after.
struct Snapshot {
    bool present = false;
    uint8_t type = 0;
    size_t count = 0;
    std::vector<uint8_t> bytes;
};

Snapshot snapshot(const CameraMetadata& md, uint32_t tag) {
    Snapshot s;
    const camera_metadata_ro_entry e = md.find(tag);
    if (e.count == 0 && !md.exists(tag)) return s;
    s.present = true;
    s.type = e.type;
    s.count = e.count;
    const size_t size = e.type < NUM_TYPES ? camera_metadata_type_size[e.type] * e.count : 0;
    s.bytes.assign(e.data.u8, e.data.u8 + size);
    return s;
}

bool same(const Snapshot& a, const Snapshot& b) {
    return a.present == b.present && a.type == b.type && a.count == b.count && a.bytes == b.bytes;
}

const int32_t* i32(const Snapshot& s) {
    return reinterpret_cast<const int32_t*>(s.bytes.data());
}

// Adds an entry of `type` under `tag`, whatever the tag's own type is and whether the packet
// holds the tag already.
void addEntry(camera_metadata_t* packet, uint32_t tag, uint8_t type, const void* data,
              size_t count) {
    if (get_camera_metadata_tag_type(tag) == type) {
        add_camera_metadata_entry(packet, tag, data, count);
        return;
    }
    if (add_camera_metadata_entry(packet, kTypeHolders[type], data, count) != 0) return;
    uint32_t entriesStart = 0;
    memcpy(&entriesStart, reinterpret_cast<uint8_t*>(packet) + kEntriesStartOffset,
           sizeof(entriesStart));
    const size_t last = get_camera_metadata_entry_count(packet) - 1;
    memcpy(reinterpret_cast<uint8_t*>(packet) + entriesStart + last * kEntryRecordSize, &tag,
           sizeof(tag));
}

CameraMetadata readCharacteristics(Reader& in) {
    camera_metadata_t* packet = allocate_camera_metadata(2 * kTagCount, 8 * kMaxCount * kTagCount);
    std::vector<uint8_t> values;
    while (!in.empty()) {
        const uint32_t tag = kTags[in.u8() % kTagCount];
        const uint8_t typeByte = in.u8();
        const uint8_t type = typeByte < NUM_TYPES
                                 ? typeByte
                                 : static_cast<uint8_t>(get_camera_metadata_tag_type(tag));
        const size_t count = in.u16() % (kMaxCount + 1);
        values.assign(count * camera_metadata_type_size[type], 0);
        in.fill(values.data(), values.size());
        addEntry(packet, tag, type, values.data(), count);
    }
    return CameraMetadata(packet);
}

void checkStreams(const Snapshot& before, const Snapshot& after) {
    if (!before.present || before.type != TYPE_INT32 || before.count == 0) {
        HARNESS_CHECK(same(before, after));
        return;
    }
    if (same(before, after)) return;
    HARNESS_CHECK(after.present && after.type == TYPE_INT32 && after.count % 4 == 0);
    // The kept entries are whole entries of the table, in order; the dropped ones are outputs
    // of the cut formats.
    size_t kept = 0;
    for (size_t i = 0; i + 4 <= before.count; i += 4) {
        const int32_t* entry = i32(before) + i;
        if (kept < after.count && memcmp(entry, i32(after) + kept, 4 * sizeof(int32_t)) == 0) {
            kept += 4;
            continue;
        }
        HARNESS_CHECK(entry[3] == 0 && (entry[0] == 33 || entry[0] == 34 || entry[0] == 35));
    }
    HARNESS_CHECK(kept == after.count);
}

void checkHfr(const Snapshot& before, const Snapshot& after) {
    if (!before.present || before.type != TYPE_INT32 || before.count > kHfrMaxValues) {
        HARNESS_CHECK(same(before, after));
        return;
    }
    HARNESS_CHECK(after.present && after.type == TYPE_INT32 && after.count == before.count);
    for (size_t i = 0; i < before.count; ++i) {
        const int32_t was = i32(before)[i];
        const int32_t now = i32(after)[i];
        // Only the batch size of a whole entry whose batch size was 1 may change.
        const bool batch = i % 5 == 4 && i / 5 < before.count / 5;
        if (batch && was == 1) {
            HARNESS_CHECK(now == 1 || now == i32(before)[i - 1] / 60);
        } else {
            HARNESS_CHECK(now == was);
        }
    }
}

void checkExposure(const Snapshot& before, const Snapshot& after) {
    if (!before.present || before.type != TYPE_INT64 || before.count < 2 || same(before, after)) {
        HARNESS_CHECK(same(before, after));
        return;
    }
    HARNESS_CHECK(after.present && after.type == TYPE_INT64 && after.count == 2);
    int64_t was[2], now[2];
    memcpy(was, before.bytes.data(), sizeof(was));
    memcpy(now, after.bytes.data(), sizeof(now));
    HARNESS_CHECK(now[0] == kItsMinExposureNs);
    HARNESS_CHECK(now[1] == (was[1] < kItsMaxExposureNs ? was[1] : kItsMaxExposureNs));
}

bool isValid(CameraMetadata& md) {
    const camera_metadata_t* packet = md.getAndLock();
    size_t size = packet == nullptr ? 0 : get_camera_metadata_size(packet);
    const bool valid = packet == nullptr || validate_camera_metadata_structure(packet, &size) == 0;
    md.unlock(packet);
    return valid;
}

void setProperties(const char* platform, bool logOn) {
    hostctl::clearProperties();
    hostctl::setProperty("ro.board.platform", platform);
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    hostctl::setProperty("persist.camera.assert.panic", logOn ? "true" : "false");
}

void makeDeviceRoot() {
    fuzzworld::useDeviceRoot();
    fuzzworld::writeDeviceFile(android::kFwkConfigPath, kConfig, sizeof(kConfig) - 1);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    __android_log_set_logger(discardLog);
    makeDeviceRoot();
    hostctl::useVirtualTime(1700000000, 1000000000LL);
    for (int type = 0; type < NUM_TYPES; ++type) {
        HARNESS_CHECK(get_camera_metadata_tag_type(kTypeHolders[type]) == type);
    }
    for (size_t i = 0; i < android::boardTableSize(); ++i) {
        const android::BoardEntry& row = android::boardTable()[i];
        setProperties(row.platform, false);
        android::CameraServiceExtImpl* ext = row.create();
        // Held for the process, as the server holds its extension object.
        ext->incStrong(nullptr);
        gChips.push_back(ext);
    }
    gService = new hostctl::HostCameraService();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (gChips.empty()) LLVMFuzzerInitialize(nullptr, nullptr);
    Reader in(data, size);
    const size_t row = in.u8() % gChips.size();
    android::CameraServiceExtImpl* ext = gChips[row];
    const uint8_t switches = in.u8();
    const std::string packageBytes = in.text();
    const std::string cameraIdBytes = in.text();
    const String16 package(packageBytes.data(), packageBytes.size());
    const String16 cameraId(cameraIdBytes.data(), cameraIdBytes.size());
    CameraMetadata info = readCharacteristics(in);

    setProperties(android::boardTable()[row].platform, (switches & kLogOn) != 0);
    hostctl::useVirtualTime(1700000000, 1000000000LL);
    // The per-app flag the query reads: a connect sets it; otherwise a query for the system
    // camera leaves it as the chip leaves it for an app that has not connected.
    sp<hostctl::HostCameraClient> client;
    if (switches & kCameraOpen) {
        client = new hostctl::HostCameraClient(String8(cameraId), package, 10100, 5100);
        ext->setCurrentPackageName(package);
        ext->afterConnect(String8(cameraId), package, false, client, nullptr, 1, 2);
    } else {
        ext->setAPKPackageName(String16("com.vantu.camera"));
        CameraMetadata none;
        ext->getCameraCharacteristics(String16("0"), &none);
    }
    ext->setAPKPackageName(package);

    const bool wasValid = isValid(info);
    Snapshot before[kTagCount];
    for (size_t i = 0; i < kTagCount; ++i) before[i] = snapshot(info, kTags[i]);
    HARNESS_CHECK(ext->getCameraCharacteristics(cameraId, &info) == android::OK);
    Snapshot after[kTagCount];
    for (size_t i = 0; i < kTagCount; ++i) after[i] = snapshot(info, kTags[i]);

    // A packet that was valid (wrong-typed entries make it invalid) stays valid.
    HARNESS_CHECK(!wasValid || isValid(info));
    checkStreams(before[kStreams], after[kStreams]);
    checkHfr(before[kHfr], after[kHfr]);
    checkExposure(before[kExposure], after[kExposure]);
    const String8 asked(package);
    const bool verifier = strncmp(asked.string(), kVerifierPrefix, kVerifierPrefixLength) == 0;
    HARNESS_CHECK(same(before[kFaceModes], after[kFaceModes]) ||
                  (verifier && !after[kFaceModes].present));
    if (verifier) HARNESS_CHECK(!after[kFaceModes].present);
    HARNESS_CHECK(same(before[kFacing], after[kFacing]));
    HARNESS_CHECK(same(before[kMinDurations], after[kMinDurations]));

    if (client != nullptr) ext->afterDisconnect(String8(cameraId), package, gService);
    ext->setAPKPackageName(String16("NULL"));
    // The host's record of the services' calls would grow with every input.
    hostctl::clearServiceCalls();
    return 0;
}
