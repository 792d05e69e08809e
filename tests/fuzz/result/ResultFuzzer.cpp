/*
 * Result metadata through the result hook, beforeMetadataSendToApp, interleaved with the
 * requests whose triggers the result rules remember, after a configuration with or without a
 * meta stream.
 *
 * Input: the client header of HookWorld.h, then
 *   u8 configuration: bit 0 a 300 x 1024 meta stream beside the preview, bit 1 its buffers will
 *      not lock, bits 2-3 its format (implementation defined, YUV 420, BLOB, RGBA), bit 4 every
 *      meta buffer is already taken (none will come), bit 5 no configuration at all
 *   u8 step count (value % 32), each step:
 *     u8 kind (value % 4): 0 a request, 1 a result, 2 a flush, 3 a reconfiguration
 *     a request: u8 frame form as in the request fuzzer, then a metadata block (the settings)
 *     a result: u8 frame form, u8 flags (bit 0 an in-flight request, bit 1 it has an input
 *       buffer, bit 2 a still capture, bit 3 a ZSL capture, bit 4 no sensor timestamp, bit 5 the
 *       result is of another camera), then a metadata block (the result)
 *
 * Checked whatever the input: a result changes only in the AE and AF states the rules write,
 * to PRECAPTURE for WhatsApp and INACTIVE for Snapchat; a result is reported ready only with an
 * in-flight request that is not held back; every meta buffer handed on holds valid metadata.
 */
#include <camera/CaptureResult.h>
#include <hostctl/HostCaptureOutputStates.h>
#include <hostctl/VendorTags.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <system/graphics.h>

#include <map>
#include <memory>

#include "hooks/HookWorld.h"
#include "hooks/MetadataDecoder.h"

namespace {

using android::sp;
using hookfuzz::check;

constexpr size_t kMaxSteps = 32;
const int kMetaFormats[] = {HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, HAL_PIXEL_FORMAT_YCBCR_420_888,
                            HAL_PIXEL_FORMAT_BLOB, HAL_PIXEL_FORMAT_RGBA_8888};

// One entry as bytes: tag, type, count and values.
using Entries = std::map<uint32_t, std::vector<uint8_t>>;

Entries entriesOf(const android::CameraMetadata& md) {
    Entries out;
    const camera_metadata_t* raw = md.getAndLock();
    for (size_t i = 0; i < get_camera_metadata_entry_count(raw); ++i) {
        camera_metadata_ro_entry_t e{};
        if (get_camera_metadata_ro_entry(raw, i, &e) != 0) continue;
        const uint32_t count = static_cast<uint32_t>(e.count);
        std::vector<uint8_t> bytes{e.type};
        bytes.resize(1 + sizeof(count));
        memcpy(bytes.data() + 1, &count, sizeof(count));
        if (e.type < NUM_TYPES) {
            const auto* p = e.data.u8;
            bytes.insert(bytes.end(), p, p + e.count * camera_metadata_type_size[e.type]);
        }
        out[e.tag] = std::move(bytes);
    }
    md.unlock(raw);
    return out;
}

class ResultRun {
public:
    ResultRun(hookfuzz::Reader& in, hookfuzz::Session& session) : mIn(in), mSession(session) {}

    void configure(uint8_t config) {
        mStreams.add(0, hookfuzz::makeStream(0, 640, 480, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED,
                                             0, false));
        if (config & 0x01) {
            mMeta = hookfuzz::makeStream(1, 300, 1024, kMetaFormats[(config >> 2) & 3], 0,
                                         (config & 0x02) != 0);
            mStreams.add(1, mMeta);
        }
        reconfigure();
        if (mMeta != nullptr && (config & 0x10)) {
            // The app holds every buffer: none comes back while the session runs.
            android::camera3::camera_stream_buffer buffer{};
            while (mMeta->getBuffer(&buffer, 0) == android::OK) mHeld.push_back(buffer);
        }
    }

    void reconfigure() {
        android::CameraMetadata params;
        hookfuzz::configure(mSession, params, mStreams, 0);
        makeStates();
    }

private:
    // The result-path state of the device and of another camera's device.
    void makeStates() {
        android::CameraMetadata deviceInfo;
        hostctl::HostCaptureOutputStates::Options options;
        options.vendorTagId = hookfuzz::kProvider;
        mStates = std::make_unique<hostctl::HostCaptureOutputStates>(mSession.cameraId().string(),
                                                                     deviceInfo, options);
        mOtherStates = std::make_unique<hostctl::HostCaptureOutputStates>("7", deviceInfo, options);
    }

public:
    void step() {
        switch (mIn.u8() % 4) {
            case 0:
                request();
                break;
            case 1:
                result();
                break;
            case 2:
                mSession.ext().flush(mSession.cameraId());
                break;
            default:
                reconfigure();
                break;
        }
    }

private:
    void request() {
        mFrame = hookfuzz::nextFrame(mIn, mFrame);
        android::CameraMetadata settings;
        hostctl::setMetadataVendorId(&settings, hookfuzz::kProvider);
        hookfuzz::decodeMetadata(mIn, &settings);
        android::CameraServiceExtImpl& ext = mSession.ext();
        ext.IsNewRequest(false, true);
        ext.onPrepareHalRequestsUpdateMetadata(settings, mFrame);
        const camera_metadata_t* raw = settings.getAndLock();
        ext.afterSendRequestsBatch(raw, mSession.cameraId());
        settings.unlock(raw);
    }

    void result() {
        const uint32_t frame = hookfuzz::nextFrame(mIn, mFrame);
        const uint8_t flags = mIn.u8();
        android::CaptureResult result;
        hostctl::setMetadataVendorId(&result.mMetadata, hookfuzz::kProvider);
        if ((flags & 0x10) == 0) {
            const int64_t timestamp = 1000 + frame;
            result.mMetadata.update(ANDROID_SENSOR_TIMESTAMP, &timestamp, 1);
        }
        hookfuzz::decodeMetadata(mIn, &result.mMetadata);
        result.mResultExtras.frameNumber = frame;
        if (mStates == nullptr) makeStates();
        hostctl::HostCaptureOutputStates& holder = (flags & 0x20) ? *mOtherStates : *mStates;
        const bool inflight = (flags & 0x01) != 0;
        if (inflight) {
            android::camera3::InFlightRequest request;
            request.hasInputBuffer = (flags & 0x02) != 0;
            request.stillCapture = (flags & 0x04) != 0;
            request.zslCapture = (flags & 0x08) != 0;
            holder.addInFlightRequest(frame, request);
        }
        const size_t delivered = mMeta != nullptr ? mMeta->delivered().size() : 0;
        const Entries before = entriesOf(result.mMetadata);

        const bool ready = mSession.ext().beforeMetadataSendToApp(&result, frame, holder.states());

        if (inflight) holder.removeInFlightRequest(frame);
        check(!ready || (inflight && (flags & 0x0e) == 0), "a held-back result was ready");
        checkRewrites(before, entriesOf(result.mMetadata));
        if (mMeta != nullptr) checkMetaBuffers(delivered);
    }

    // Only the AE and AF states change, each only to the value its rule writes.
    void checkRewrites(const Entries& before, const Entries& after) {
        const std::string& package = mSession.package();
        for (const auto& [tag, bytes] : after) {
            auto it = before.find(tag);
            if (it != before.end() && it->second == bytes) continue;
            uint8_t want = 0;
            if (tag == ANDROID_CONTROL_AE_STATE) {
                check(package == hookfuzz::packageName(hookfuzz::kWhatsApp) ||
                          package == hookfuzz::packageName(hookfuzz::kWhatsAppBusiness),
                      "the AE state of another app's result changed");
                want = ANDROID_CONTROL_AE_STATE_PRECAPTURE;
            } else if (tag == ANDROID_CONTROL_AF_STATE) {
                check(package == hookfuzz::packageName(hookfuzz::kSnapchat),
                      "the AF state of another app's result changed");
                want = ANDROID_CONTROL_AF_STATE_INACTIVE;
            } else {
                check(false, "a result entry no rule writes changed");
            }
            check(bytes.size() == 1 + sizeof(uint32_t) + 1 && bytes[0] == TYPE_BYTE &&
                      bytes.back() == want,
                  "a rewritten state holds another value");
        }
        for (const auto& [tag, bytes] : before) {
            check(after.count(tag) == 1, "a result entry was removed");
        }
    }

    // Every buffer handed on since `from` without an error holds metadata that fits it.
    void checkMetaBuffers(size_t from) {
        const auto delivered = mMeta->delivered();
        for (size_t i = from; i < delivered.size(); ++i) {
            if (delivered[i].error) continue;
            std::vector<uint8_t> bytes = mMeta->bufferContents(delivered[i].index);
            size_t size = bytes.size();
            check(size > 0 && validate_camera_metadata_structure(
                                  reinterpret_cast<camera_metadata_t*>(bytes.data()), &size) == 0,
                  "a stamped meta buffer holds no valid metadata");
        }
    }

    hookfuzz::Reader& mIn;
    hookfuzz::Session& mSession;
    android::camera3::StreamSet mStreams;
    sp<hostctl::HostOutputStream> mMeta;
    std::vector<android::camera3::camera_stream_buffer> mHeld;
    std::unique_ptr<hostctl::HostCaptureOutputStates> mStates;
    std::unique_ptr<hostctl::HostCaptureOutputStates> mOtherStates;
    uint32_t mFrame = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    hookfuzz::Reader in(data, size);
    hookfuzz::Session session(in);
    {
        ResultRun run(in, session);
        const uint8_t config = in.u8();
        if ((config & 0x20) == 0) run.configure(config);
        const size_t steps = in.u8() % kMaxSteps;
        for (size_t i = 0; i < steps && !in.empty(); ++i) run.step();
    }
    return 0;
}
