// The capture pipeline as the server drives it: stream configuration around the hardware
// configuration, each request before it goes to the hardware, each result before the app.
#include <hostctl/HostHardwareBuffers.h>
#include <string.h>
#include <system/camera_metadata.h>
#include <utils/String8.h>

#include "sim/Actions.h"
#include "sim/Host.h"
#include "sim/Session.h"

namespace camext {
namespace sim {

namespace {

using android::sp;
using android::String8;

Json ids(android::camera3::StreamSet& streams) {
    Json out = Json::array();
    for (int id : streams.getStreamIds()) out.push(Json(id));
    return out;
}

CameraState* cameraFor(Session& session, StepRun& run) {
    const std::string id = run.step.args["camera"].asString();
    CameraState* cam = session.host().camera(id);
    if (cam == nullptr) run.problem = "camera " + id + " is not on this device";
    return cam;
}

bool fill(Session& session, StepRun& run, const Json& entries, android::CameraMetadata* md) {
    std::string error;
    if (writeEntries(session.host().tags, entries, md, &error)) return true;
    run.problem = "cannot write the metadata: " + error;
    return false;
}

// The binder status of a configuration as scenarios write it: 0, or the error by kind.
Json statusJson(const android::binder::Status& status) {
    if (status.isOk()) return Json(0);
    if (status.exceptionCode() == android::binder::Status::EX_SERVICE_SPECIFIC) {
        return Json::object({{"serviceSpecificError", status.serviceSpecificErrorCode()}});
    }
    return Json::object({{"exception", status.exceptionCode()}});
}

// Deliveries each stream of the camera had made, to find the ones a step adds.
std::map<int, uint64_t> deliveryCounts(const CameraState& cam) {
    std::map<int, uint64_t> counts;
    for (const auto& s : cam.streams) counts[s.first] = s.second->deliveredTotal();
    return counts;
}

// The text in the "com.vantu.aps.result.data" entry of a metadata copy held in `bytes`; false
// when the bytes hold no valid metadata or no such entry.
bool stampedText(const TagSpace& tags, std::vector<uint8_t>& bytes, std::string* text) {
    uint32_t tag = 0;
    int type = 0;
    std::string why;
    if (bytes.empty() || !findTag(tags, "com.vantu.aps.result.data", &tag, &type, &why)) {
        return false;
    }
    size_t size = bytes.size();
    auto* md = reinterpret_cast<camera_metadata_t*>(bytes.data());
    if (validate_camera_metadata_structure(md, &size) != 0) return false;
    camera_metadata_ro_entry_t entry{};
    if (find_camera_metadata_ro_entry(md, tag, &entry) != 0 || entry.type != TYPE_BYTE) {
        return false;
    }
    const char* chars = reinterpret_cast<const char*>(entry.data.u8);
    text->assign(chars, strnlen(chars, entry.count));
    return true;
}

// Files, as "meta_buffers" effects, the texts stamped into the buffers that the camera's streams
// delivered to their consumer since `counts` was taken.
void recordMetaBuffers(Session& session, StepRun& run, const CameraState& cam,
                       const std::map<int, uint64_t>& counts) {
    for (const auto& s : cam.streams) {
        const auto delivered = s.second->delivered();
        auto it = counts.find(s.first);
        // The stream keeps only its newest deliveries; the step's are the last `added` of them.
        const uint64_t added = s.second->deliveredTotal() - (it == counts.end() ? 0 : it->second);
        const size_t first = added >= delivered.size() ? 0 : delivered.size() - added;
        for (size_t i = first; i < delivered.size(); ++i) {
            if (delivered[i].error) continue;
            std::vector<uint8_t> bytes = s.second->bufferContents(delivered[i].index);
            std::string text;
            if (stampedText(session.host().tags, bytes, &text)) {
                run.effect("meta_buffers", Json(text));
            }
        }
    }
}

void recordMetadata(Session& session, StepRun& run, const Json& before, const Json& after) {
    run.metadataChanges = diffEntries(session.host().tags, before, after);
    run.metadataEntry = [after](const std::string& tag) { return after[tag]; };
}

}  // namespace

void actConfigure(Session& session, StepRun& run) {
    Host& host = session.host();
    CameraState* cam = cameraFor(session, run);
    if (cam == nullptr) return;
    const Json& a = run.step.args;
    const String8 id(cam->id.c_str());
    const int mode = static_cast<int>(a["operatingMode"].asInt());

    android::CameraMetadata params = newMetadata(host.tags);
    if (!fill(session, run, a["sessionParams"], &params)) return;
    android::camera3::StreamSet streams;
    std::map<int, sp<hostctl::HostOutputStream>> made;
    for (const auto& s : a["streams"].items()) {
        hostctl::HostOutputStream::Config config;
        config.id = static_cast<int>(s["id"].asInt());
        config.width = static_cast<uint32_t>(s["width"].asInt());
        config.height = static_cast<uint32_t>(s["height"].asInt());
        if (s.has("format")) config.format = static_cast<int>(s["format"].asInt());
        if (s.has("dataSpace")) {
            config.dataSpace = static_cast<android_dataspace>(s["dataSpace"].asInt());
        }
        if (s.has("usage")) config.usage = static_cast<uint64_t>(s["usage"].asInt());
        sp<hostctl::HostOutputStream> stream = new hostctl::HostOutputStream(config);
        // Stream buffers are hardware buffers, as on a phone; "lockFails" makes them unmappable.
        stream->setBufferAllocator(hostctl::hardwareBufferAllocator(s["lockFails"].asBool()));
        made[config.id] = stream;
        streams.add(config.id, stream);
    }
    const Json before = readEntries(host.tags, params);
    const Json configured = ids(streams);

    host.ext->beforeConfigureStreamsLocked(params, host.tags.vendorId, id, streams, mode);
    run.call("beforeConfigureStreamsLocked(session params, " + std::to_string(host.tags.vendorId) +
             ", " + quote(cam->id) + ", streams " + configured.dump() + ", " +
             std::to_string(mode) + ")");

    // The hardware configuration: what reaches it is what the hardware layer sees.
    const Json hardware = ids(streams);
    const Json seen = readEntries(host.tags, params);
    for (int sid : streams.getStreamIds()) {
        auto stream = streams.get(sid);
        if (stream == nullptr) continue;
        stream->startConfiguration();
        stream->finishConfiguration();
    }
    run.call("hardware configuration: streams " + hardware.dump() + ", session params " +
             seen.dump());
    run.halStreams = hardware;
    run.halSessionEntry = [seen](const std::string& tag) { return seen[tag]; };

    host.ext->afterConfigureStreamsLocked(params, host.tags.vendorId, cam->characteristics, streams,
                                          id);
    run.call("afterConfigureStreamsLocked(session params, " + std::to_string(host.tags.vendorId) +
             ", characteristics, streams, " + quote(cam->id) + ")");

    void* client = cam->client.get();
    const android::binder::Status status =
        host.ext->afterEndConfigure(params, client, host.tags.vendorId, id);
    run.call("afterEndConfigure(session params, client, " + std::to_string(host.tags.vendorId) +
             ", " + quote(cam->id) + ") = " + status.toString8().string());
    run.setVerdict("afterEndConfigure", statusJson(status));

    const Json after = ids(streams);
    run.streams =
        Json::object({{"configured", configured}, {"hardware", hardware}, {"after", after}});
    recordMetadata(session, run, before, readEntries(host.tags, params));

    cam->streams = made;
    hostctl::HostCaptureOutputStates::Options options;
    options.vendorTagId = host.tags.vendorId;
    cam->results =
        std::make_unique<hostctl::HostCaptureOutputStates>(cam->id, cam->characteristics, options);
    for (int sid : streams.getStreamIds()) {
        cam->results->outputStreams.add(sid, streams.get(sid));
    }
}

void actRequest(Session& session, StepRun& run) {
    Host& host = session.host();
    CameraState* cam = cameraFor(session, run);
    if (cam == nullptr) return;
    const Json& a = run.step.args;
    const uint32_t frame = static_cast<uint32_t>(a["frame"].asInt());
    const bool newRequest = a["newRequest"].asBool();
    const bool flag = a.has("flag") ? a["flag"].asBool() : true;

    android::CameraMetadata settings = newMetadata(host.tags);
    if (!fill(session, run, a["settings"], &settings)) return;
    const Json before = readEntries(host.tags, settings);

    const bool resend = host.ext->IsNewRequest(newRequest, flag);
    run.call(std::string("IsNewRequest(") + (newRequest ? "true" : "false") + ", " +
             (flag ? "true" : "false") + ") = " + (resend ? "true" : "false"));
    run.setVerdict("IsNewRequest", Json(resend));
    host.ext->onPrepareHalRequestsUpdateMetadata(settings, frame);
    run.call("onPrepareHalRequestsUpdateMetadata(settings, " + std::to_string(frame) + ")");
    const camera_metadata_t* raw = settings.getAndLock();
    host.ext->afterSendRequestsBatch(raw, String8(cam->id.c_str()));
    settings.unlock(raw);
    run.call("afterSendRequestsBatch(settings, " + quote(cam->id) + ")");
    recordMetadata(session, run, before, readEntries(host.tags, settings));
}

void actResult(Session& session, StepRun& run) {
    Host& host = session.host();
    CameraState* cam = cameraFor(session, run);
    if (cam == nullptr) return;
    const Json& a = run.step.args;
    const uint32_t frame = static_cast<uint32_t>(a["frame"].asInt());
    const bool inflight =
        a.has("inflight") ? !a["inflight"].isBool() || a["inflight"].asBool() : true;
    if (cam->results == nullptr) {
        hostctl::HostCaptureOutputStates::Options options;
        options.vendorTagId = host.tags.vendorId;
        cam->results = std::make_unique<hostctl::HostCaptureOutputStates>(
            cam->id, cam->characteristics, options);
    }

    android::CaptureResult result;
    result.mMetadata = newMetadata(host.tags);
    if (!fill(session, run, a["metadata"], &result.mMetadata)) return;
    result.mResultExtras.frameNumber = frame;
    const Json before = readEntries(host.tags, result.mMetadata);
    if (inflight) {
        android::camera3::InFlightRequest request;
        const Json& flags = a["inflight"];
        request.hasInputBuffer = flags["hasInputBuffer"].asBool();
        request.stillCapture = flags["stillCapture"].asBool();
        request.zslCapture = flags["zslCapture"].asBool();
        cam->results->addInFlightRequest(frame, request);
    }

    const std::map<int, uint64_t> counts = deliveryCounts(*cam);
    const bool deliver = host.ext->beforeMetadataSendToApp(&result, frame, cam->results->states());
    recordMetaBuffers(session, run, *cam, counts);
    run.call("beforeMetadataSendToApp(result, " + std::to_string(frame) + ", states" +
             (inflight ? " with" : " without") +
             " an in-flight request) = " + (deliver ? "true" : "false"));
    run.setVerdict("beforeMetadataSendToApp", Json(deliver));
    if (inflight) cam->results->removeInFlightRequest(frame);
    recordMetadata(session, run, before, readEntries(host.tags, result.mMetadata));
}

}  // namespace sim
}  // namespace camext
