// The capture pipeline as the server drives it: stream configuration around the hardware
// configuration, each request before it goes to the hardware, each result before the app.
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
    const bool inflight = a.has("inflight") ? a["inflight"].asBool() : true;
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
    if (inflight) cam->results->addInFlightRequest(frame, android::camera3::InFlightRequest());

    const bool deliver = host.ext->beforeMetadataSendToApp(&result, frame, cam->results->states());
    run.call("beforeMetadataSendToApp(result, " + std::to_string(frame) + ", states" +
             (inflight ? " with" : " without") +
             " an in-flight request) = " + (deliver ? "true" : "false"));
    run.setVerdict("beforeMetadataSendToApp", Json(deliver));
    if (inflight) cam->results->removeInFlightRequest(frame);
    recordMetadata(session, run, before, readEntries(host.tags, result.mMetadata));
}

}  // namespace sim
}  // namespace camext
