// Builds the device a scenario describes and loads the library into it, as the camera server's
// process finds them at start-up.
#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "hostctl/Binder.h"
#include "hostctl/HostEnv.h"
#include "hostctl/MediaDevices.h"
#include "hostctl/Properties.h"
#include "hostctl/Services.h"
#include "hostctl/VendorTags.h"
#include "sim/Actions.h"
#include "sim/EnvActions.h"
#include "sim/Host.h"
#include "sim/Player.h"

namespace camext {
namespace sim {

namespace {

// The camera server's uid (AID_CAMERASERVER): what the library sees outside a binder call.
constexpr uid_t kCameraServerUid = 1047;

bool readFile(const std::string& path, std::string* text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::stringstream ss;
    ss << in.rdbuf();
    *text = ss.str();
    return true;
}

bool setUpVendorTags(const Device& d, std::string* error) {
    std::vector<hostctl::VendorTag> tags;
    if (d.allVendorTags) {
        tags = hostctl::libraryVendorTags();
    } else {
        for (const auto& name : d.vendorTags) {
            const hostctl::VendorTag* t = hostctl::findLibraryVendorTag(name);
            if (t != nullptr) tags.push_back(*t);
        }
    }
    if (tags.empty()) return true;
    std::string why;
    if (!hostctl::installVendorTags(tags, d.vendorId, true, d.vendorTagsGlobal, &why)) {
        *error = "device.vendor_tags: " + why;
        return false;
    }
    return true;
}

// The media controller "/dev/media0" and its sensor sub-devices, when the device has them.
void setUpMediaDevices(const Json& media) {
    std::vector<hostctl::MediaDevice> devices;
    if (media.isObject()) {
        hostctl::MediaDevice dev;
        if (media.has("model")) dev.model = media["model"].asString();
        for (const auto& sensor : media["sensors"].items()) {
            hostctl::MediaEntity e;
            e.name = sensor["name"].asString();
            e.position = static_cast<uint16_t>(sensor["position"].asInt());
            e.powerFails = sensor["power_fails"].asBool();
            dev.entities.push_back(e);
        }
        devices.push_back(dev);
    }
    hostctl::setMediaDevices(devices);
}

bool setUpServices(Session& session, std::string* error) {
    const Json& s = session.scenario().device.services;
    setUpMediaDevices(s["media"]);
    hostctl::ServicesConfig config;
    config.motor = s["motor"].asBool();
    config.kairo = s["kairo"].isObject();
    config.kairoTemperature = static_cast<float>(s["kairo"]["temperature"].asDouble());
    config.thermalHal = s["thermal_hal"].asBool();
    config.sensors = s["sensors"].isObject();
    config.magneticSensor = s["sensors"]["magnetic"].asBool();
    config.performance = s["performance"].asBool();
    config.cameraExtension = s["camera_extension"].asBool();
    config.cameraMdm = s["camera_mdm"].asBool();
    if (config.motor) {
        // Scenarios run side by side; each one's "motor_socket" must be its own. Without a
        // namespace of its own the service waits for the name instead.
        std::string ignored;
        hostctl::isolateAbstractSockets(&ignored);
    }
    std::string why;
    if (!hostctl::startServices(config, &why)) {
        *error = "device.services: " + why;
        return false;
    }
    return true;
}

bool setUpApsLibrary(Session& session, std::string* error) {
    const Json& aps = session.scenario().device.apsLibrary;
    if (aps.isNull()) return true;
    hostctl::ApsLibraryShape shape;
    for (const auto& m : aps["missing"].items()) shape.missing.push_back(m.asString());
    for (const auto& f : aps["features"].members()) shape.features[f.first] = f.second.asBool();
    std::string why;
    if (!hostctl::installApsLibrary(hostPath(session, "odm/lib64/libAlgoProcess.so"), shape, &why)) {
        *error = "device.aps_library: " + why;
        return false;
    }
    return true;
}

bool setUpCameras(Session& session, std::string* error) {
    Host& host = session.host();
    for (const auto& cameraSpec : session.scenario().device.cameras) {
        CameraState cam;
        cam.id = cameraSpec.id;
        cam.facing = cameraSpec.facing;
        hostctl::setMetadataVendorId(&cam.characteristics, host.tags.vendorId);
        Json entries = cameraSpec.characteristics;
        if (!entries.has("android.lens.facing")) {
            entries.set("android.lens.facing", Json(cameraSpec.facing == "front"      ? 0
                                                    : cameraSpec.facing == "external" ? 2
                                                                                      : 1));
        }
        std::string why;
        if (!writeEntries(host.tags, entries, &cam.characteristics, &why)) {
            *error = "device.cameras." + cameraSpec.id + ".characteristics: " + why;
            return false;
        }
        host.providers->addCamera(cameraSpec.id, cam.characteristics, host.tags.vendorId);
        host.cameras.push_back(std::move(cam));
    }
    return true;
}

}  // namespace

CameraState* Host::camera(const std::string& id) {
    for (auto& c : cameras) {
        if (c.id == id) return &c;
    }
    return nullptr;
}

std::shared_ptr<Host> makeHost(Session& session) {
    auto host = std::make_shared<Host>();
    host->tags.vendorId = session.scenario().device.vendorId;
    host->cameraService = new hostctl::HostCameraService();
    host->providers = new hostctl::HostProviderManager();
    host->listener = new hostctl::HostCameraServiceListener();
    return host;
}

bool setUpDevice(Session& session, std::string* error) {
    const Device& d = session.scenario().device;
    hostctl::clearProperties();
    if (!d.propertiesFile.empty() && !hostctl::loadPropertyFile(d.propertiesFile, error)) {
        *error = "device.properties_file: " + *error;
        return false;
    }
    for (const auto& p : d.properties) hostctl::setProperty(p.first, p.second);
    hostctl::setDeviceRoot(session.options().deviceRoot);
    hostctl::setProcessIdentity(kCameraServerUid, getpid());

    std::string config;
    if (d.hasConfig) {
        config = d.config.dump();
    } else if (!d.configFile.empty() && !readFile(d.configFile, &config)) {
        *error = "device.config_file: cannot read " + d.configFile;
        return false;
    }
    if ((d.hasConfig || !d.configFile.empty()) &&
        !writeDeviceFile(session, "odm/etc/camera/fwk_config.json", config, error)) {
        return false;
    }
    for (const auto& f : d.files) {
        if (!writeDeviceFile(session, f.first, f.second, error)) return false;
    }
    return setUpVendorTags(d, error) && setUpServices(session, error) &&
           setUpApsLibrary(session, error) && setUpCameras(session, error);
}

bool loadLibrary(Session& session, std::string* error) {
    Host& host = session.host();
    const std::string& path = session.options().libPath;
    host.library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (host.library == nullptr) {
        const char* why = dlerror();
        *error = "cannot load " + path + ": " + (why ? why : "unknown error");
        return false;
    }
    auto entry = reinterpret_cast<android::GetExtFactoryImplFn>(
        dlsym(host.library, android::kExtFactoryEntryName));
    if (entry == nullptr) {
        *error = path + " does not export " + android::kExtFactoryEntryName;
        return false;
    }
    host.factory = entry();
    host.ext = host.factory ? host.factory->getCameraServiceExt() : nullptr;
    if (host.ext == nullptr) {
        *error = std::string(android::kExtFactoryEntryName) + " gave no extension object";
        return false;
    }
    // The server hands the library its cameras once the providers are enumerated.
    host.ext->initCameraInfos(host.providers);
    return true;
}

void applyCaller(Session&, const Caller& caller) {
    hostctl::setCallingIdentity(static_cast<uid_t>(caller.uid), caller.pid);
    // The library's getpid and gettid are the step's process and thread.
    hostctl::setProcessIds(caller.pid, caller.tid != 0 ? caller.tid : caller.pid + 1);
    hostctl::clearPermissions();
    for (const auto& p : caller.permissions) {
        hostctl::grantPermission(static_cast<uid_t>(caller.uid), caller.pid, p);
    }
}

void collectEffects(Session& session, StepRun& run) {
    run.fileText = [&session](const std::string& devicePath) -> Json {
        std::error_code ec;
        const std::string path = hostPath(session, devicePath);
        if (!std::filesystem::is_regular_file(path, ec)) return Json();
        std::ifstream in(path, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return in ? Json(text.str()) : Json();
    };
    session.host().records.collect(run);
    fileHostRecords(session, run);
}

TagChecker tagChecker() {
    return [](const std::string& name, const Json& value, std::string* why) {
        int type = -1;
        if (name.compare(0, 4, "com.") == 0) {
            const hostctl::VendorTag* t = hostctl::findLibraryVendorTag(name);
            if (t == nullptr) {
                *why = "unknown vendor tag \"" + name + "\"";
                return false;
            }
            type = t->type;
        } else {
            uint32_t tag;
            if (!hostctl::lookupTag(name, 0, &tag, &type) || type < 0) {
                *why = "unknown tag \"" + name + "\"";
                return false;
            }
        }
        return value.isNull() || valueFitsType(value, type, why);
    };
}

}  // namespace sim
}  // namespace camext
