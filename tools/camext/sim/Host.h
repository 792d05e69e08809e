// The camera server around the library, as the simulator plays it: the loaded extension, the
// cameras with their open clients and streams, the host camera service and listener, and the
// cursors over what the platform fakes recorded.
#pragma once

#include <CameraServiceExtFactory.h>
#include <ICameraServiceExt.h>
#include <stddef.h>
#include <stdint.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hostctl/CameraHost.h"
#include "hostctl/HostCaptureOutputStates.h"
#include "hostctl/HostOutputStream.h"
#include "sim/MetadataJson.h"
#include "sim/PlatformRecords.h"

namespace camext {
namespace sim {

class Session;
struct StepRun;

struct CameraState {
    std::string id;
    std::string facing;
    android::CameraMetadata characteristics;
    // The client open on this camera, null when none.
    android::sp<hostctl::HostCameraClient> client;
    std::string package;  // bare package of that client
    bool closing = false;
    // The streams of the last configuration, by id, and the result path of the device.
    std::map<int, android::sp<hostctl::HostOutputStream>> streams;
    std::unique_ptr<hostctl::HostCaptureOutputStates> results;
};

// Events of one client not yet filed as side effects.
struct ClientCursor {
    android::sp<hostctl::HostCameraClient> client;
    size_t seen = 0;
};

struct Host {
    void* library = nullptr;
    android::CameraServiceExtFactory* factory = nullptr;
    android::ICameraServiceExt* ext = nullptr;

    TagSpace tags;
    std::vector<CameraState> cameras;
    android::sp<hostctl::HostCameraService> cameraService;
    android::sp<hostctl::HostProviderManager> providers;
    android::sp<hostctl::HostCameraServiceListener> listener;

    // Who disconnects a client whose disconnect() runs now, for the report.
    std::string disconnectedBy = "disconnected by the library";

    PlatformRecords records;
    std::vector<ClientCursor> clients;
    size_t torchSeen = 0;
    size_t torchAvailabilitySeen = 0;
    size_t batterySeen = 0;

    CameraState* camera(const std::string& id);
};

// Runs the server's close sequence for the client open on `camera` (beforeDisconnect,
// afterDisconnect, onClientChange(removed)) and lets the client go. `why` prefixes the calls
// in the report when the library, not the scenario, started it.
void closeClient(Session& session, StepRun& run, CameraState& camera, const std::string& why);

}  // namespace sim
}  // namespace camext
