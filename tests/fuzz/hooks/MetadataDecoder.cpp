// The metadata decoder of the hook fuzzers; the input format is in MetadataDecoder.h.
#include "MetadataDecoder.h"

#include <camera_metadata_hidden.h>
#include <hostctl/VendorTags.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

namespace hookfuzz {

namespace {

constexpr uint8_t kCountMask = 0x3f;
constexpr uint8_t kLongCount = 0x3f;
constexpr uint8_t kRepeat = 0x40;
constexpr uint8_t kOtherType = 0x80;

// Full names of the palette, in PaletteIndex order.
const char* const kPaletteNames[kPaletteSize] = {
    "android.control.afTrigger",
    "android.control.aePrecaptureTrigger",
    "android.control.aeMode",
    "android.flash.mode",
    "android.control.aeRegions",
    "android.control.aeState",
    "android.control.afState",
    "android.sensor.timestamp",
    "android.jpeg.orientation",
    "android.control.mode",
    "com.vantu.packageName",
    "com.vantu.activityName",
    "com.vantu.fwkApiLevel",
    "com.vantu.device.state",
    "com.vantu.fwkBeauty",
    "com.vantu.is.sdk.camera.package",
    "com.vantu.zumio.init",
    "com.vantu.zumio.json.info",
    "com.vantu.aps.result.data",
    "com.vantu.caller.package.name",
    "com.vantu.control.torch.intensity",
    "com.vantu.CTP.query.ALL",
    "com.vantu.CTP.hotspot.voltage",
};

// Adds one entry of `type` to `out` as a packet of `writer` declares it; false when refused.
bool addAs(android::CameraMetadata* out, uint64_t writer, uint32_t tag,
           const std::vector<uint8_t>& values, size_t count) {
    const size_t bytes = values.size();
    camera_metadata_t* packet = allocate_camera_metadata(1, bytes + 8);
    if (packet == nullptr) return false;
    set_camera_metadata_vendor_id(packet, writer);
    bool added = add_camera_metadata_entry(packet, tag, values.data(), count) == 0;
    if (added) {
        // The entry now travels in a packet of this provider, as a provider's result would.
        set_camera_metadata_vendor_id(packet, kProvider);
        added = out->append(packet) == android::OK;
    }
    free_camera_metadata(packet);
    return added;
}

}  // namespace

const TagPalette& tagPalette() {
    static const TagPalette sPalette = [] {
        TagPalette p;
        for (const char* name : kPaletteNames) {
            uint32_t tag = 0;
            if (!hostctl::lookupTag(name, kProvider, &tag, nullptr)) abort();
            int other = -1;
            if (strncmp(name, "com.", 4) == 0) {
                uint32_t same = 0;
                if (!hostctl::lookupTag(name, kOtherProvider, &same, &other) || same != tag)
                    abort();
            }
            p.tags.push_back(tag);
            p.otherTypes.push_back(other);
        }
        return p;
    }();
    return sPalette;
}

void decodeMetadata(Reader& in, android::CameraMetadata* out) {
    const TagPalette& palette = tagPalette();
    const size_t entries = std::min<size_t>(in.u8(), kMaxEntries);
    std::vector<uint8_t> values;
    for (size_t i = 0; i < entries && !in.empty(); ++i) {
        const uint8_t which = in.u8();
        const bool fromPalette = which < kPaletteSize;
        const uint32_t tag = fromPalette ? palette.tags[which] : in.u32();
        const uint8_t form = in.u8();
        size_t count = form & kCountMask;
        if (count == kLongCount) count = std::min<size_t>(in.u16(), kMaxFillCount);
        const bool other = (form & kOtherType) != 0 && fromPalette && palette.otherTypes[which] >= 0;
        const uint64_t writer = other ? kOtherProvider : kProvider;
        const int type = hostctl::tagType(tag, writer);
        if (type < 0 || type >= NUM_TYPES) continue;
        values.resize(count * camera_metadata_type_size[type]);
        if (form & kRepeat) {
            const uint8_t value = in.u8();
            std::fill(values.begin(), values.end(), value);
        } else {
            in.fill(values.data(), values.size());
        }
        addAs(out, writer, tag, values, count);
    }
}

std::vector<uint32_t> tagsOf(const android::CameraMetadata& metadata) {
    std::vector<uint32_t> tags;
    const camera_metadata_t* raw = metadata.getAndLock();
    const size_t n = get_camera_metadata_entry_count(raw);
    for (size_t i = 0; i < n; ++i) {
        camera_metadata_ro_entry_t entry{};
        if (get_camera_metadata_ro_entry(raw, i, &entry) == 0) tags.push_back(entry.tag);
    }
    metadata.unlock(raw);
    std::sort(tags.begin(), tags.end());
    return tags;
}

}  // namespace hookfuzz
