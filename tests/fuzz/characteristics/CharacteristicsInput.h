/*
 * The input format of the characteristics fuzzer, shared by the fuzzer (which decodes it) and
 * the seed writer (which encodes the checked-in corpus). All integers are little-endian.
 *   u8  chip: a row of the factory's board table (taken modulo its size); "ro.board.platform"
 *       reads that row's platform
 *   u8  switches: bit 0 the debug log switch is on, bit 1 the app has the camera open (the
 *       server's afterConnect before the query and afterDisconnect after it)
 *   u8  n, then n bytes: the asking app's package name
 *   u8  n, then n bytes: the camera id
 *   then, until the input ends, characteristics entries:
 *       u8  tag: an index into kTags (taken modulo its size)
 *       u8  type: a TYPE_* value when below NUM_TYPES, otherwise the tag's own type
 *       u16 count (at most kMaxCount), then count values of the type's size; values the input
 *           does not hold read as zero
 *   A tag given twice is held twice, as a faulty provider's packet can hold it; the rules look
 *   at its first entry.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <system/camera_metadata.h>

#include <string>
#include <vector>

#include "common/InputReader.h"
namespace charfuzz {

// The tags the query reads or edits, and two it must leave alone.
constexpr uint32_t kTags[] = {
    ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS,
    ANDROID_CONTROL_AVAILABLE_HIGH_SPEED_VIDEO_CONFIGURATIONS,
    ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE,
    ANDROID_STATISTICS_INFO_AVAILABLE_FACE_DETECT_MODES,
    ANDROID_LENS_FACING,
    ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS,
};
constexpr size_t kTagCount = sizeof(kTags) / sizeof(kTags[0]);
enum TagIndex : uint8_t {
    kStreams = 0,
    kHfr = 1,
    kExposure = 2,
    kFaceModes = 3,
    kFacing = 4,
    kMinDurations = 5
};
constexpr size_t kMaxCount = 1024;
// The type byte that keeps a tag's own type.
constexpr uint8_t kOwnType = 0xff;

enum Switches : uint8_t { kLogOn = 1 << 0, kCameraOpen = 1 << 1 };

using Reader = fuzzworld::InputReader;

// Builds inputs in the format above.
class Writer {
public:
    Writer(uint8_t chip, uint8_t switches, const std::string& package, const std::string& cameraId) {
        mOut.push_back(chip);
        mOut.push_back(switches);
        text(package);
        text(cameraId);
    }
    Writer& int32s(TagIndex tag, const std::vector<int32_t>& values, uint8_t type = kOwnType) {
        header(tag, type, values.size());
        for (int32_t v : values) raw(static_cast<uint64_t>(static_cast<uint32_t>(v)), 4);
        return *this;
    }
    Writer& int64s(TagIndex tag, const std::vector<int64_t>& values, uint8_t type = kOwnType) {
        header(tag, type, values.size());
        for (int64_t v : values) raw(static_cast<uint64_t>(v), 8);
        return *this;
    }
    Writer& bytes(TagIndex tag, const std::vector<uint8_t>& values, uint8_t type = kOwnType) {
        header(tag, type, values.size());
        mOut.insert(mOut.end(), values.begin(), values.end());
        return *this;
    }
    const std::vector<uint8_t>& out() const { return mOut; }

private:
    void text(const std::string& s) {
        mOut.push_back(static_cast<uint8_t>(s.size()));
        mOut.insert(mOut.end(), s.begin(), s.end());
    }
    void header(TagIndex tag, uint8_t type, size_t count) {
        mOut.push_back(tag);
        mOut.push_back(type);
        raw(count, 2);
    }
    void raw(uint64_t v, int size) {
        for (int i = 0; i < size; ++i) mOut.push_back(static_cast<uint8_t>(v >> (8 * i)));
    }

    std::vector<uint8_t> mOut;
};

}  // namespace charfuzz
