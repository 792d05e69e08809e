/*
 * Request settings through the request hooks after a configuration, in the server's order:
 * IsNewRequest, onPrepareHalRequestsUpdateMetadata, then afterSendRequestsBatch with the settings
 * the server locked for the hardware, which it unlocks once the request is sent.
 *
 * Input: the client header of HookWorld.h, then
 *   u8 configuration: bit 0 a 300 x 1024 meta stream beside the preview, bit 1 its buffers will
 *      not lock, bit 2 no configuration at all (requests before any)
 *   a metadata block (MetadataDecoder.h): the session parameters
 *   u8 request count (value % 24), each request:
 *     u8 frame: 0 frame 0, 1 frame 2^32-1, 2 the previous plus one, 3 the previous minus one,
 *        else a u32 frame number follows
 *     u8 flags: bit 0 newRequest, bit 1 the host's second flag, bit 2 afterSendRequestsBatch
 *        gets no settings, bit 3 a fold state change (u64 state follows), bit 4 a flush first
 *     a metadata block: the request settings
 *
 * Checked whatever the input: a request the host calls new stays new; the hooks add no tag but
 * the ones the request rules write; with flash forbidden the request goes out with flash OFF and
 * AE ON; Messenger's always-flash AE mode goes out with a single flash.
 */
#include <hostctl/VendorTags.h>
#include <stddef.h>
#include <stdint.h>
#include <system/graphics.h>

#include <algorithm>

#include "hooks/HookWorld.h"
#include "hooks/MetadataDecoder.h"

namespace {

using android::sp;
using hookfuzz::check;

constexpr size_t kMaxRequests = 24;

bool firstByte(const android::CameraMetadata& md, uint32_t tag, uint8_t* value) {
    const camera_metadata_ro_entry_t e = md.find(tag);
    if (e.count == 0 || e.type != TYPE_BYTE) return false;
    *value = e.data.u8[0];
    return true;
}

// Tags a request rule may add: flash and AE fixes, the AF trigger reset, the fold state, the
// torch intensity and the thermal queries.
bool mayAdd(uint32_t tag) {
    const hookfuzz::TagPalette& p = hookfuzz::tagPalette();
    for (hookfuzz::PaletteIndex i : {hookfuzz::kAfTrigger, hookfuzz::kFlashMode, hookfuzz::kAeMode,
                                     hookfuzz::kVendorDeviceState, hookfuzz::kVendorTorchIntensity,
                                     hookfuzz::kVendorCtpQuery, hookfuzz::kVendorCtpVoltage}) {
        if (p.tags[i] == tag) return true;
    }
    return false;
}

void runRequest(hookfuzz::Reader& in, hookfuzz::Session& session, uint32_t frame) {
    android::CameraServiceExtImpl& ext = session.ext();
    const uint8_t flags = in.u8();
    if (flags & 0x08) ext.notifyDeviceStateChange(in.u64());
    if (flags & 0x10) ext.flush(session.cameraId());
    android::CameraMetadata settings;
    hostctl::setMetadataVendorId(&settings, hookfuzz::kProvider);
    hookfuzz::decodeMetadata(in, &settings);
    const std::vector<uint32_t> before = hookfuzz::tagsOf(settings);
    uint8_t aeModeBefore = 0;
    const bool hadAeMode = firstByte(settings, ANDROID_CONTROL_AE_MODE, &aeModeBefore);

    const bool newRequest = (flags & 0x01) != 0;
    const bool resend = ext.IsNewRequest(newRequest, (flags & 0x02) != 0);
    check(resend || !newRequest, "a new request was not sent as new");
    ext.onPrepareHalRequestsUpdateMetadata(settings, frame);
    const camera_metadata_t* raw = settings.getAndLock();
    ext.afterSendRequestsBatch((flags & 0x04) ? nullptr : raw, session.cameraId());
    settings.unlock(raw);

    const std::vector<uint32_t> after = hookfuzz::tagsOf(settings);
    for (uint32_t tag : after) {
        check(std::binary_search(before.begin(), before.end(), tag) || mayAdd(tag),
              "a request hook added a tag no rule writes");
    }
    uint8_t flash = 0xff;
    uint8_t aeMode = 0xff;
    const bool hasFlash = firstByte(settings, ANDROID_FLASH_MODE, &flash);
    const bool hasAeMode = firstByte(settings, ANDROID_CONTROL_AE_MODE, &aeMode);
    if (session.switches() & hookfuzz::kTorchForbidden) {
        check(hasFlash && flash == ANDROID_FLASH_MODE_OFF && hasAeMode &&
                  aeMode == ANDROID_CONTROL_AE_MODE_ON,
              "a forbidden flash went out");
    } else if (session.package() == hookfuzz::packageName(hookfuzz::kMessenger) && hadAeMode &&
               aeModeBefore == ANDROID_CONTROL_AE_MODE_ON_ALWAYS_FLASH) {
        check(hasFlash && flash == ANDROID_FLASH_MODE_SINGLE,
              "Messenger's always-flash request has no single flash");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    hookfuzz::Reader in(data, size);
    hookfuzz::Session session(in);
    const uint8_t config = in.u8();
    android::CameraMetadata params;
    hostctl::setMetadataVendorId(&params, hookfuzz::kProvider);
    hookfuzz::decodeMetadata(in, &params);
    android::camera3::StreamSet streams;
    streams.add(
        0, hookfuzz::makeStream(0, 640, 480, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, 0, false));
    if (config & 0x01) {
        streams.add(1, hookfuzz::makeStream(1, 300, 1024, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED,
                                            0, (config & 0x02) != 0));
    }
    if ((config & 0x04) == 0) hookfuzz::configure(session, params, streams, 0);

    const size_t requests = in.u8() % kMaxRequests;
    uint32_t frame = 0;
    for (size_t i = 0; i < requests && !in.empty(); ++i) {
        frame = hookfuzz::nextFrame(in, frame);
        runRequest(in, session, frame);
    }
    return 0;
}
