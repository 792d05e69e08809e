/*
 * Session parameters and stream sets through the configuration hooks, in the server's order:
 * the surface size filter of each stream the app creates, then beforeConfigureStreamsLocked,
 * the hardware configuration of what it left, afterConfigureStreamsLocked and afterEndConfigure,
 * a few requests that take meta buffers, and again for a reconfiguration.
 *
 * Input: the client header of HookWorld.h, then u8 rounds (1 + value % 3), each:
 *   u8 operating mode (below 0x80 as it is, else 0x8000 plus the value: a vendor mode)
 *   a metadata block (MetadataDecoder.h): the session parameters
 *   u8 stream count (value % 9), each stream:
 *     u8 size: 0 300x1024 (the meta stream), 1 300x1023, 2 1920x1080, 3 640x480, 4 1024x300,
 *        5 4000x3000, 6 0x0, 7 u16 width and u16 height follow
 *     u8 format: index into kFormats, or (past its end) a u32 format follows
 *     u8 stream id (signed: ids repeat and may be negative; an id an earlier round configured
 *        is that round's stream again, as the server keeps its streams)
 *     u8 flags: bit 0 its buffers will not lock, bits 1-2 rotation, bits 3-5 usage bits
 *   u8 requests: bits 0-3 how many request batches take meta buffers, bit 4 a flush follows
 *
 * Checked whatever the input: a surface size is only ever made smaller and never past the
 * limit; the hardware sees the app's streams without the first 300 x 1024 one (by id order);
 * the meta stream may hold 24 buffers; after the configuration the stream set is the app's again,
 * stream for stream; and the identity tags written for the hardware are gone from the session
 * parameters.
 */
#include <hostctl/VendorTags.h>
#include <stddef.h>
#include <stdint.h>
#include <system/graphics.h>

#include <algorithm>
#include <map>

#include "hooks/HookWorld.h"
#include "hooks/MetadataDecoder.h"

namespace {

using android::sp;
using hookfuzz::check;

struct Size {
    uint32_t width;
    uint32_t height;
};
const Size kSizes[] = {{300, 1024}, {300, 1023},  {1920, 1080}, {640, 480},
                       {1024, 300}, {4000, 3000}, {0, 0}};
constexpr size_t kSizeCount = sizeof(kSizes) / sizeof(kSizes[0]);
const int kFormats[] = {HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED,
                        HAL_PIXEL_FORMAT_YCBCR_420_888,
                        HAL_PIXEL_FORMAT_BLOB,
                        0x7FA30C06,  // Qualcomm NV12 Venus
                        HAL_PIXEL_FORMAT_RAW16,
                        HAL_PIXEL_FORMAT_Y8,
                        HAL_PIXEL_FORMAT_RGBA_8888};
constexpr size_t kFormatCount = sizeof(kFormats) / sizeof(kFormats[0]);
constexpr uint32_t kMetaWidth = 300;
constexpr uint32_t kMetaHeight = 1024;
constexpr uint32_t kMetaMaxBuffers = 24;
// The surface limit of the configuration's "default" section (none set: 1920 x 1080).
constexpr int kSurfaceLimitWidth = 1920;
constexpr int kSurfaceLimitHeight = 1080;
constexpr size_t kMaxStreams = 9;

bool isMeta(const sp<android::camera3::Camera3OutputStreamInterface>& s) {
    return s->getWidth() == kMetaWidth && s->getHeight() == kMetaHeight;
}

// The app creates its surface: the library may shrink the size it asks for.
Size filteredSize(hookfuzz::Session& session, Size asked) {
    int width = static_cast<int>(std::min<uint32_t>(asked.width, INT32_MAX));
    int height = static_cast<int>(std::min<uint32_t>(asked.height, INT32_MAX));
    session.ext().filterSurfaceConfig(width, height);
    const int askedWidth = static_cast<int>(std::min<uint32_t>(asked.width, INT32_MAX));
    const int askedHeight = static_cast<int>(std::min<uint32_t>(asked.height, INT32_MAX));
    check(width <= askedWidth && height <= askedHeight, "a surface size grew");
    check(width > 0 || askedWidth <= 0, "a surface width dropped to 0");
    check(height > 0 || askedHeight <= 0, "a surface height dropped to 0");
    if (width != askedWidth || height != askedHeight) {
        check(width <= std::max(kSurfaceLimitWidth, 1) && height <= kSurfaceLimitHeight,
              "a shrunk surface is over the limit");
    }
    return {static_cast<uint32_t>(width), static_cast<uint32_t>(height)};
}

// Streams live across configurations as the server's do: an id seen before is the same stream.
using KnownStreams = std::map<int, sp<hostctl::HostOutputStream>>;

void readStreams(hookfuzz::Reader& in, hookfuzz::Session& session, KnownStreams& known,
                 android::camera3::StreamSet* streams) {
    const size_t count = in.u8() % kMaxStreams;
    for (size_t i = 0; i < count; ++i) {
        const uint8_t sizeIndex = in.u8() % (kSizeCount + 1);
        Size size = sizeIndex < kSizeCount ? kSizes[sizeIndex] : Size{in.u16(), in.u16()};
        const uint8_t formatIndex = in.u8();
        const int format =
            formatIndex < kFormatCount ? kFormats[formatIndex] : static_cast<int>(in.u32());
        const int id = static_cast<int8_t>(in.u8());
        const uint8_t flags = in.u8();
        auto it = known.find(id);
        if (it != known.end()) {
            streams->add(id, it->second);
            continue;
        }
        size = filteredSize(session, size);
        sp<hostctl::HostOutputStream> stream =
            hookfuzz::makeStream(id, size.width, size.height, format,
                                 static_cast<uint64_t>(flags >> 3) << 8, (flags & 1) != 0);
        stream->asHalStream()->rotation =
            static_cast<android::camera3::camera_stream_rotation_t>((flags >> 1) & 3);
        streams->add(id, stream);
        known[id] = stream;
    }
}

// Tags the library writes for the hardware and must take out again.
std::vector<uint32_t> identityTags(const hookfuzz::Session& session) {
    const hookfuzz::TagPalette& p = hookfuzz::tagPalette();
    std::vector<uint32_t> tags = {p.tags[hookfuzz::kVendorPackageName],
                                  p.tags[hookfuzz::kVendorActivityName],
                                  p.tags[hookfuzz::kVendorApiLevel]};
    if (session.package() == hookfuzz::packageName(hookfuzz::kWeChat)) {
        tags.push_back(p.tags[hookfuzz::kVendorFwkBeauty]);
    }
    return tags;
}

void runRound(hookfuzz::Reader& in, hookfuzz::Session& session, KnownStreams& known) {
    const uint8_t mode = in.u8();
    const int operatingMode = mode < 0x80 ? mode : 0x8000 + mode;
    android::CameraMetadata params;
    hostctl::setMetadataVendorId(&params, hookfuzz::kProvider);
    hookfuzz::decodeMetadata(in, &params);
    android::camera3::StreamSet streams;
    readStreams(in, session, known, &streams);

    // What the app configures, stream for stream.
    std::map<int, android::camera3::Camera3OutputStreamInterface*> app;
    bool hasMeta = false;
    int metaId = 0;
    for (int id : streams.getStreamIds()) {
        sp<android::camera3::Camera3OutputStreamInterface> s = streams.get(id);
        app[id] = s.get();
        if (!hasMeta && isMeta(s)) {
            hasMeta = true;
            metaId = id;
        }
    }

    const std::vector<int> hardware = hookfuzz::configure(session, params, streams, operatingMode);
    check(hardware.size() == app.size() - (hasMeta ? 1 : 0), "the hardware lost a stream");
    for (int id : hardware) check(!hasMeta || id != metaId, "the hardware saw the meta stream");
    if (hasMeta) {
        check(app[metaId]->asHalStream()->max_buffers == kMetaMaxBuffers,
              "the meta stream's buffer count is not 24");
    }
    const std::vector<int> after = streams.getStreamIds();
    check(after.size() == app.size(), "the stream set changed size");
    for (int id : after) {
        auto it = app.find(id);
        check(it != app.end() && it->second == streams.get(id).get(),
              "the stream set is not the app's");
    }
    const std::vector<uint32_t> left = hookfuzz::tagsOf(params);
    for (uint32_t tag : identityTags(session)) {
        check(!std::binary_search(left.begin(), left.end(), tag),
              "an identity tag outlived the configuration");
    }

    const uint8_t requests = in.u8();
    for (int i = 0; i < (requests & 0xf); ++i) {
        session.ext().afterSendRequestsBatch(nullptr, session.cameraId());
    }
    if (requests & 0x10) session.ext().flush(session.cameraId());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    hookfuzz::Reader in(data, size);
    hookfuzz::Session session(in);
    KnownStreams known;
    const int rounds = 1 + in.u8() % 3;
    for (int i = 0; i < rounds; ++i) runRound(in, session, known);
    return 0;
}
