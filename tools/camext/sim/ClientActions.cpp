// Client actions played as the camera server plays them: open, close, the characteristics
// query and custom transactions, each in the server's order of hooks.
#include <binder/IPCThreadState.h>
#include <hostctl/Binder.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include "sim/Actions.h"
#include "sim/Host.h"
#include "sim/ParcelJson.h"
#include "sim/Session.h"

namespace camext {
namespace sim {

namespace {

using android::sp;
using android::String16;
using android::String8;

const char* yes(bool b) {
    return b ? "true" : "false";
}

std::string text(const String16& s) {
    return String8(s).string();
}

// The host client's events not yet filed, as "<camera>:<event>".
void fileClientEvents(Host& host, StepRun& run) {
    for (auto& c : host.clients) {
        const auto events = c.client->events();
        for (size_t i = c.seen; i < events.size(); ++i) {
            run.effect("client_events",
                       std::string(c.client->cameraId().string()) + ":" + events[i]);
        }
        c.seen = events.size();
    }
}

// Stops following a client: its last events are filed and the simulator's reference goes.
void forgetClient(Session& session, StepRun& run, const sp<hostctl::HostCameraClient>& client) {
    Host& host = session.host();
    fileClientEvents(host, run);
    for (auto it = host.clients.begin(); it != host.clients.end(); ++it) {
        if (it->client == client) {
            host.clients.erase(it);
            break;
        }
    }
}

int lensFacing(const std::string& facing) {
    // android.lens.facing: FRONT 0, BACK 1, EXTERNAL 2.
    return facing == "front" ? 0 : facing == "external" ? 2 : 1;
}

}  // namespace

void closeClient(Session& session, StepRun& run, CameraState& cam, const std::string& why) {
    Host& host = session.host();
    if (cam.client == nullptr || cam.closing) return;
    cam.closing = true;
    sp<hostctl::HostCameraClient> client = cam.client;
    const std::string prefix = why.empty() ? "" : why + ": ";
    const String8 id(cam.id.c_str());
    const String16 package(cam.package.c_str());
    const bool before = host.ext->beforeDisconnect(false, false, id);
    run.call(prefix + "beforeDisconnect(false, false, " + quote(cam.id) + ") = " + yes(before));
    host.ext->afterDisconnect(id, package, host.cameraService);
    run.call(prefix + "afterDisconnect(" + quote(cam.id) + ", " + quote(cam.package) +
             ", camera service)");
    sp<android::CameraService::BasicClient> basic = client;
    host.ext->onClientChange(id, basic, false);
    run.call(prefix + "onClientChange(" + quote(cam.id) + ", client, removed)");
    cam.client = nullptr;
    cam.package.clear();
    cam.closing = false;
    forgetClient(session, run, client);
    // A client the library disconnected is inside its own disconnect() now: it must outlive
    // that call, as the server's reference outlives the eviction.
    session.afterStep([client]() {});
}

void actOpen(Session& session, StepRun& run) {
    Host& host = session.host();
    const Json& a = run.step.args;
    const std::string id = a["camera"].asString();
    CameraState* cam = host.camera(id);
    if (cam == nullptr) {
        run.problem = "camera " + id + " is not on this device";
        return;
    }
    const std::string component = a["package"].asString();
    String16 package(component.c_str());
    const int32_t verdict = host.ext->beforeConnect(String8(id.c_str()), package, false);
    run.call("beforeConnect(" + quote(id) + ", " + quote(component) +
             ", false) = " + std::to_string(verdict));
    run.setVerdict("beforeConnect", Json(verdict));
    if (verdict != 0) return;

    // The library wrote the bare package back into the server's string.
    const std::string bare = text(package);
    if (bare != component) run.call("  package now " + quote(bare));
    if (cam->client != nullptr) {
        // The server evicts the camera's earlier client itself when the library let it stay.
        sp<hostctl::HostCameraClient> old = cam->client;
        host.disconnectedBy = "evicted by the server";
        old->disconnect();
        host.disconnectedBy = "disconnected by the library";
        if (cam->client == old) closeClient(session, run, *cam, "evicted by the server");
    }
    host.ext->setCurrentPackageName(package);
    run.call("setCurrentPackageName(" + quote(bare) + ")");

    const int apiLevel = a.has("apiLevel") ? static_cast<int>(a["apiLevel"].asInt()) : 2;
    sp<hostctl::HostCameraClient> client = new hostctl::HostCameraClient(
        String8(id.c_str()), package, static_cast<uid_t>(run.step.caller.uid), run.step.caller.pid,
        lensFacing(cam->facing), 0,
        apiLevel == 1 ? android::CameraService::API_1 : android::CameraService::API_2);
    Session* s = &session;
    client->setOnDisconnect([s](hostctl::HostCameraClient& c) {
        Host& h = s->host();
        CameraState* state = h.camera(c.cameraId().string());
        if (state == nullptr || state->client.get() != &c || s->current() == nullptr) return;
        closeClient(*s, *s->current(), *state, h.disconnectedBy);
    });
    cam->client = client;
    cam->package = bare;
    host.clients.push_back({client, 0});

    void* device = client.get();
    const bool connected = host.ext->afterConnect(String8(id.c_str()), package, false, client,
                                                  device, host.tags.vendorId, apiLevel);
    run.call("afterConnect(" + quote(id) + ", " + quote(bare) + ", false, client, device, " +
             std::to_string(host.tags.vendorId) + ", " + std::to_string(apiLevel) +
             ") = " + yes(connected));
    sp<android::CameraService::BasicClient> basic = client;
    host.ext->onClientChange(String8(id.c_str()), basic, true);
    run.call("onClientChange(" + quote(id) + ", client, added)");
}

void actClose(Session& session, StepRun& run) {
    const std::string id = run.step.args["camera"].asString();
    CameraState* cam = session.host().camera(id);
    if (cam == nullptr || cam->client == nullptr) {
        run.problem = "no client is open on camera " + id;
        return;
    }
    closeClient(session, run, *cam, "");
}

void actCharacteristics(Session& session, StepRun& run) {
    Host& host = session.host();
    const Json& a = run.step.args;
    const std::string id = a["camera"].asString();
    CameraState* cam = host.camera(id);
    if (cam == nullptr) {
        run.problem = "camera " + id + " is not on this device";
        return;
    }
    if (a.has("package")) {
        // The maker's framework announces the asking app before it queries.
        android::Parcel data, reply;
        data.writeInterfaceToken(String16("android.hardware.camera"));
        data.writeString16(String16(a["package"].asString().c_str()));
        data.setDataPosition(0);
        const android::status_t st = host.ext->onTransact(10003, data, &reply, 0);
        run.call("onTransact(10003, [" + quote(a["package"].asString()) +
                 "]) = " + std::to_string(st));
    }
    android::CameraMetadata info(cam->characteristics);
    const Json before = readEntries(host.tags, info);
    const android::status_t st = host.ext->getCameraCharacteristics(String16(id.c_str()), &info);
    run.call("getCameraCharacteristics(" + quote(id) + ", characteristics) = " + std::to_string(st));
    run.setVerdict("getCameraCharacteristics", Json(st));
    const Json after = readEntries(host.tags, info);
    run.metadataChanges = diffEntries(host.tags, before, after);
    run.metadataEntry = [after](const std::string& tag) { return after[tag]; };
}

void actTransact(Session& session, StepRun& run) {
    Host& host = session.host();
    const Json& a = run.step.args;
    const uint32_t code = static_cast<uint32_t>(a["code"].asInt());
    const uint32_t flags = static_cast<uint32_t>(a["flags"].asInt());
    auto data = std::make_shared<android::Parcel>();
    auto reply = std::make_shared<android::Parcel>();
    if (!a.has("token") || a["token"].asBool()) {
        data->writeInterfaceToken(String16("android.hardware.camera"));
    }
    std::string error;
    if (!writeParcelItems(a["parcel"], data.get(), &error)) {
        run.problem = error;
        return;
    }
    data->setDataPosition(0);
    // A one-way call reaches the server without the caller's pid, as the binder driver sends it.
    const android::IPCThreadState* ipc = android::IPCThreadState::self();
    const uid_t callerUid = ipc->getCallingUid();
    const pid_t callerPid = ipc->getCallingPid();
    const bool oneway = (flags & android::IBinder::FLAG_ONEWAY) != 0;
    if (oneway) hostctl::setCallingIdentity(callerUid, callerPid, flags);
    const android::status_t st = host.ext->onTransact(code, *data, reply.get(), flags);
    if (oneway) hostctl::setCallingIdentity(callerUid, callerPid);
    const Json items = a["parcel"].isNull() ? Json::array() : a["parcel"];
    run.call("onTransact(" + std::to_string(code) + ", " + items.dump() + ", flags " +
             std::to_string(flags) + ") = " + std::to_string(st) + ", reply " +
             parcelWords(*reply).dump());
    run.setVerdict("onTransact", Json(st));
    run.readReply = [reply](const Json& shapes) { return readParcelAs(*reply, shapes); };
}

void fileHostRecords(Session& session, StepRun& run) {
    Host& host = session.host();
    fileClientEvents(host, run);
    const auto torch = host.listener->torchStatusChanges();
    for (size_t i = host.torchSeen; i < torch.size(); ++i) {
        run.effect("torch_status",
                   Json::object({{"cameraId", torch[i].second}, {"status", torch[i].first}}));
    }
    host.torchSeen = torch.size();
    const auto updates = host.cameraService->torchAvailabilityUpdates();
    for (size_t i = host.torchAvailabilitySeen; i < updates.size(); ++i) {
        run.serviceCall("camera_service",
                        Json::array({Json(updates[i].cameraId), Json(updates[i].available)}));
    }
    host.torchAvailabilitySeen = updates.size();
    const auto battery = hostctl::batteryEvents();
    for (size_t i = host.batterySeen; i < battery.size(); ++i) {
        run.serviceCall("battery", battery[i]);
    }
    host.batterySeen = battery.size();
}

}  // namespace sim
}  // namespace camext
