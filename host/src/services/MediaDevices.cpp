// Host binding of the library's device-access seam: media controllers and camera sensor
// sub-devices that answer as tests and scenarios describe them, behind fake descriptors.
#include "hostctl/MediaDevices.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/media.h>
#include <string.h>

#include <algorithm>
#include <map>
#include <mutex>

#include "hostctl/Services.h"
#include "utils/DeviceAccess.h"

namespace {

using android::vantu::DeviceAccess;
using hostctl::MediaDevice;
using hostctl::MediaEntity;

// Driver requests of the camera sensor sub-devices.
constexpr unsigned long kPowerUpRequest = 0x5000;
constexpr unsigned long kPowerDownRequest = 0x5001;
constexpr unsigned long kPositionRequest = 0x5002;
// Fake descriptors start here so that they never look like the process's real ones.
constexpr int kFirstDescriptor = 1000;

constexpr char kDevPrefix[] = "/dev/";
constexpr char kMediaPrefix[] = "/dev/media";
constexpr size_t kNodeNameChars = 31;

struct Node {
    int media = -1;   // index into devices, for a media controller
    int sensor = -1;  // index into the media device's entities, for a sensor
};

struct State {
    std::mutex lock;
    std::vector<MediaDevice> devices;
    std::map<int, Node> open;
    int nextFd = kFirstDescriptor;
};

State& state() {
    static State* s = new State();
    return *s;
}

// Copies `text` into a fixed field as a driver does: at most `size` bytes, terminated only when
// there is room.
void copyField(char* field, size_t size, const std::string& text) {
    memset(field, 0, size);
    memcpy(field, text.data(), text.size() < size ? text.size() : size);
}

std::string sensorNode(const MediaEntity& e) {
    return kDevPrefix + e.name.substr(0, std::min(e.name.size(), kNodeNameChars));
}

bool findNode(const State& s, const std::string& path, Node* node) {
    for (size_t d = 0; d < s.devices.size(); ++d) {
        const MediaDevice& dev = s.devices[d];
        if (path == kMediaPrefix + std::to_string(dev.number)) {
            node->media = static_cast<int>(d);
            return true;
        }
        for (size_t e = 0; e < dev.entities.size(); ++e) {
            if (dev.entities[e].type == hostctl::kCameraSensorEntityType &&
                path == sensorNode(dev.entities[e])) {
                node->media = static_cast<int>(d);
                node->sensor = static_cast<int>(e);
                return true;
            }
        }
    }
    return false;
}

int fail(int error) {
    errno = error;
    return -1;
}

int enumerateEntity(const MediaDevice& dev, media_entity_desc* desc) {
    const bool next = (desc->id & MEDIA_ENT_ID_FLAG_NEXT) != 0;
    const uint32_t id = desc->id & ~MEDIA_ENT_ID_FLAG_NEXT;
    // Ids are 1-based positions; "next" asks for the first id above the one given.
    const uint32_t wanted = next ? id + 1 : id;
    if (wanted == 0 || wanted > dev.entities.size()) return fail(EINVAL);
    const MediaEntity& e = dev.entities[wanted - 1];
    memset(desc, 0, sizeof(*desc));
    desc->id = wanted;
    copyField(desc->name, sizeof(desc->name), e.name);
    desc->type = e.type;
    desc->group_id = 0;
    return 0;
}

class HostDeviceAccess : public DeviceAccess {
public:
    int openDevice(const char* path, int) override {
        if (path == nullptr) return fail(EFAULT);
        std::lock_guard<std::mutex> g(state().lock);
        Node node;
        if (!findNode(state(), path, &node)) return fail(ENOENT);
        const int fd = state().nextFd++;
        state().open[fd] = node;
        return fd;
    }

    int ioctlDevice(int fd, unsigned long request, void* arg) override {
        std::string powerCall;
        std::string node;
        int rc = 0;
        {
            std::lock_guard<std::mutex> g(state().lock);
            auto it = state().open.find(fd);
            if (it == state().open.end()) return fail(EBADF);
            const Node n = it->second;
            if (n.media < 0 || n.media >= static_cast<int>(state().devices.size())) {
                return fail(ENODEV);
            }
            const MediaDevice& dev = state().devices[n.media];
            if (arg == nullptr) return fail(EFAULT);
            if (n.sensor < 0) {
                if (request == MEDIA_IOC_DEVICE_INFO) {
                    auto* info = static_cast<media_device_info*>(arg);
                    memset(info, 0, sizeof(*info));
                    copyField(info->driver, sizeof(info->driver), "cam_req_mgr");
                    copyField(info->model, sizeof(info->model), dev.model);
                    return 0;
                }
                if (request == MEDIA_IOC_ENUM_ENTITIES) {
                    return enumerateEntity(dev, static_cast<media_entity_desc*>(arg));
                }
                return fail(ENOTTY);
            }
            if (n.sensor >= static_cast<int>(dev.entities.size())) return fail(ENODEV);
            const MediaEntity& e = dev.entities[n.sensor];
            if (request == kPositionRequest) {
                memcpy(arg, &e.position, sizeof(e.position));
                return 0;
            }
            if (request != kPowerUpRequest && request != kPowerDownRequest) return fail(ENOTTY);
            powerCall = request == kPowerUpRequest ? "powerUp" : "powerDown";
            node = sensorNode(e);
            rc = e.powerFails ? -1 : 0;
        }
        // Recorded outside the lock: the record has a lock of its own.
        hostctl::recordServiceCall(hostctl::kMediaService, powerCall, {node});
        return rc == 0 ? 0 : fail(EIO);
    }

    int closeDevice(int fd) override {
        std::lock_guard<std::mutex> g(state().lock);
        return state().open.erase(fd) == 1 ? 0 : fail(EBADF);
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) DeviceAccess* android_vantu_host_device_access() {
    static HostDeviceAccess* access = new HostDeviceAccess();
    return access;
}

namespace hostctl {

void setMediaDevices(const std::vector<MediaDevice>& devices) {
    std::lock_guard<std::mutex> g(state().lock);
    state().devices = devices;
}

void clearMediaDevices() {
    setMediaDevices({});
}

int openMediaDescriptors() {
    std::lock_guard<std::mutex> g(state().lock);
    return static_cast<int>(state().open.size());
}

}  // namespace hostctl
