/*
 * Reading fuzzer inputs for the configuration, request and result hooks: a byte reader and the
 * decoder that turns input bytes into camera metadata (session parameters, request settings,
 * result metadata), shared by the session, request and result fuzzers.
 *
 * A metadata block is read from the front of the input:
 *   u8 entry count (at most kMaxEntries are read)
 *   each entry:
 *     u8 tag: below kPaletteSize one of the tags the library reads or writes (palette below);
 *             otherwise a u32 tag id follows (unknown ids are refused by the packet, as a
 *             server's packet refuses them)
 *     u8 form: bits 0-5 the value count (0..62; 63: a u16 count follows, up to kMaxFillCount);
 *              bit 6: the values repeat one input byte instead of being read one by one (how a
 *              result grows bigger than a meta buffer); bit 7: a vendor tag is written with the
 *              type a second provider declares for it (the wrong type for this provider)
 *     the values: count times the size of the entry's type, read from the input (zero once it
 *     ends) or one byte repeated
 * The entries are written in order into a packet of the provider `kProvider`; an entry the packet
 * refuses (unknown tag, standard tag of a type it does not have) is skipped.
 */
#pragma once

#include <camera/CameraMetadata.h>
#include <stddef.h>
#include <stdint.h>
#include <system/camera_metadata.h>

#include <string>
#include <vector>

#include "common/InputReader.h"
namespace hookfuzz {

// The camera provider of every packet; its descriptor declares the library's vendor tags.
constexpr uint64_t kProvider = 3;
// A second provider that declares the same vendor tag names with other types.
constexpr uint64_t kOtherProvider = 4;

constexpr size_t kMaxEntries = 48;
// A repeated-byte entry may hold up to this many values (a result of over 1 MiB).
constexpr size_t kMaxFillCount = 1u << 16;

using Reader = fuzzworld::InputReader;

// The tags an input names by a palette index: the standard tags the request and result rules
// read or write, a few others, and every vendor tag of the library by name.
struct TagPalette {
    std::vector<uint32_t> tags;
    // The type the second provider declares for palette entry i (-1: not a vendor tag).
    std::vector<int> otherTypes;
};

// Built once, after the vendor tags are installed.
const TagPalette& tagPalette();

// Decodes one metadata block from `in` into `out` (which already belongs to kProvider).
void decodeMetadata(Reader& in, android::CameraMetadata* out);

// Tag ids of `metadata`, sorted.
std::vector<uint32_t> tagsOf(const android::CameraMetadata& metadata);

// Palette indices (the order of tagPalette()).
enum PaletteIndex : uint8_t {
    kAfTrigger = 0,
    kAePrecaptureTrigger,
    kAeMode,
    kFlashMode,
    kAeRegions,
    kAeState,
    kAfState,
    kSensorTimestamp,
    kJpegOrientation,
    kControlMode,
    kVendorPackageName,
    kVendorActivityName,
    kVendorApiLevel,
    kVendorDeviceState,
    kVendorFwkBeauty,
    kVendorSdkPackage,
    kVendorZumioInit,
    kVendorZumioJson,
    kVendorApsResult,
    kVendorCallerPackage,
    kVendorTorchIntensity,
    kVendorCtpQuery,
    kVendorCtpVoltage,
    kPaletteSize,
};

}  // namespace hookfuzz
