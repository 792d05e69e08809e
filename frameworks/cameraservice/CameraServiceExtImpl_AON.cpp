/*
 * The always-on camera: the front sensor kept in a low-power mode that watches for a human
 * presence without a normal camera client. A privileged app opens and closes the mode over the
 * library's transactions and hands over a callback; the kernel driver signals detections with
 * signal 29, which the handler forwards to that callback.
 *
 * The media devices and the sensor sub-devices are reached through vantu::DeviceAccess.
 */
#include <errno.h>
#include <fcntl.h>
#include <linux/media.h>
#include <stdio.h>
#include <string.h>

#include <atomic>
#include <thread>

#include "CameraServiceExtImpl.h"
#include "features/aon/IAONHECallbacks.h"
#include "utils/DeviceAccess.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// The driver's signal: the I/O-possible signal on this platform.
constexpr int kAONSignal = 29;
// Signal code of a detection.
constexpr int kAONDetectionCode = 1;

// Driver requests of the camera sensor sub-devices.
constexpr unsigned long kAONPowerUpRequest = 0x5000;    // VIDIOC_CAM_AON_POWNER_UP
constexpr unsigned long kAONPowerDownRequest = 0x5001;  // VIDIOC_CAM_AON_POWNER_DOWN
constexpr unsigned long kSensorPositionRequest = 0x5002;
// The position code of the front sensor.
constexpr uint16_t kFrontSensorPosition = 1801;

constexpr char kCamReqMgrModel[] = "cam-req-mgr-devnode";
// Entity type of a camera sensor sub-device of the camera request manager.
constexpr uint32_t kCameraSensorEntityType = 0x10001;

// What the signal handler calls: the raw pointer of mAONHECallback, published for a lock-free
// atomic load, and the handlers running a call on it. Dropping the callback unpublishes it and
// then waits for the calls in flight, so a handler never calls a released object.
std::atomic<IAONHECallbacks*> gSignalCallback{nullptr};
std::atomic<int> gSignalCallsInFlight{0};

// Under mAONLock.
void releaseCallback() {
    gSignalCallback.store(nullptr);
    // A handler that loaded the pointer before the store is making its one one-way call; it
    // finishes without any lock of ours, so this wait is short and bounded.
    while (gSignalCallsInFlight.load() != 0) std::this_thread::yield();
    mAONHECallback.clear();
}

// Under mAONLock.
void holdCallback(const sp<IAONHECallbacks>& callback) {
    releaseCallback();
    mAONHECallback = callback;
    gSignalCallback.store(callback.get());
}

// The front sensor's node. The probe may leave a raw position code in CamFrontIndex when no
// sensor answers as the front one; such an index names no entry, and the node is then empty so
// that opening it fails and is logged, instead of reading past the table.
const char* frontSensorPath() {
    const uint16_t index = CamFrontIndex;
    return index < kAONMaxSubDevices ? CamSubDeV[index] : "";
}

}  // namespace

int32_t CameraServiceExtImpl::getAONcamdev() {
    vantu::DeviceAccess* devices = vantu::DeviceAccess::Default();
    int sensors = 0;
    for (int n = 0;; ++n) {
        char mediaPath[32];
        snprintf(mediaPath, sizeof(mediaPath), "/dev/media%d", n);
        const int fd = devices->openDevice(mediaPath, O_RDWR | O_NONBLOCK);
        if (fd < 0) {
            EXT_LOG(1, "No more media devices found on %s,error:%s", mediaPath, strerror(errno));
            break;
        }
        media_device_info info;
        memset(&info, 0, sizeof(info));
        if (devices->ioctlDevice(fd, MEDIA_IOC_DEVICE_INFO, &info) < 0) {
            EXT_LOG(0, "media device get device info failed");
            devices->closeDevice(fd);
            continue;
        }
        // The driver's fixed fields need not be terminated.
        EXT_LOG(1, "media devices found on %s and name = %.*s", mediaPath,
                static_cast<int>(sizeof(info.model)), info.model);
        if (strncmp(info.model, kCamReqMgrModel, sizeof(info.model)) != 0) {
            devices->closeDevice(fd);
            continue;
        }
        media_entity_desc entity;
        memset(&entity, 0, sizeof(entity));
        entity.id = 1;
        uint32_t lastId = entity.id;
        while (devices->ioctlDevice(fd, MEDIA_IOC_ENUM_ENTITIES, &entity) >= 0) {
            lastId = entity.id;
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "entity id %d", entity.id);
                EXT_LOG(1,
                        "entity name %.*s type %d, group id %d, revision %d,entity flags "
                        "%d,entity pads %d,entity dvb %d,entity links %d",
                        static_cast<int>(sizeof(entity.name)), entity.name, entity.type,
                        entity.group_id, entity.revision, entity.flags, entity.pads, entity.dvb,
                        entity.links);
            }
            // The table holds five sensors; later ones are left out.
            if (entity.type == kCameraSensorEntityType && sensors < kAONMaxSubDevices) {
                snprintf(CamSubDeV[sensors], kAONSubDevPathSize, "/dev/%.31s", entity.name);
                EXT_LOG(1, "Find sensor CamSubDeV[%d] %s", sensors, CamSubDeV[sensors]);
                ++sensors;
            }
            memset(&entity, 0, sizeof(entity));
            entity.id = lastId | MEDIA_ENT_ID_FLAG_NEXT;
        }
        EXT_LOG(0, "media device enumerate entities failed %d", lastId);
        devices->closeDevice(fd);
    }

    // Only the five entries are asked; when none answers as the front sensor, CamFrontIndex
    // keeps the last code written (see frontSensorPath).
    for (int i = 0; i < kAONMaxSubDevices; ++i) {
        const int fd = devices->openDevice(CamSubDeV[i], O_RDWR | O_NONBLOCK);
        uint16_t position = CamFrontIndex;
        const bool answered = devices->ioctlDevice(fd, kSensorPositionRequest, &position) == 0;
        if (fd >= 0) devices->closeDevice(fd);
        if (!answered) continue;
        CamFrontIndex = position;
        if (position == kFrontSensorPosition) {
            CamFrontIndex = static_cast<uint16_t>(i);
            EXT_LOG(1, "get CamFrontIndex %d AONstatus = %d", i, static_cast<int32_t>(gAONStatus));
            break;
        }
    }
    return initAONSignal();
}

status_t CameraServiceExtImpl::openAON(sp<IBinder>& callback) {
    Mutex::Autolock lock(mAONLock);
    if (callback == nullptr) {
        EXT_LOG(0, "%s: callback is null", "openAON");
        return OK;
    }
    holdCallback(interface_cast<IAONHECallbacks>(callback));
    EXT_LOG(1, "%s: open AON camera start AONstatus = %d CamFrontIndex = %d", __func__,
            static_cast<int32_t>(gAONStatus), static_cast<uint16_t>(CamFrontIndex));
    if (CamFrontIndex == kAONNoFrontCamera) {
        EXT_LOG(0, "%s: no front camera device path", __func__);
        if (mAONHECallback != nullptr) {
            mAONHECallback->onError(IAONHECallbacks::ERROR_NO_FRONT_SENSOR);
            getAONcamdev();
        }
        return OK;
    }

    status_t result = OK;
    switch (gAONStatus) {
        case AON_IDLE: {
            vantu::DeviceAccess* devices = vantu::DeviceAccess::Default();
            const int fd = devices->openDevice(frontSensorPath(), O_WRONLY);
            if (fd < 0) EXT_LOG(0, "fd open error\n");
            // The driver's argument; its layout is the driver's own.
            uint8_t arg[8] = {0};
            // Issued even on a failed open, where it fails in turn and is logged.
            result = devices->ioctlDevice(fd, kAONPowerUpRequest, arg);
            if (result != 0) {
                EXT_LOG(0, "%s:%d VIDIOC_CAM_AON_POWNER_UP failed: %s", __func__, __LINE__,
                        strerror(errno));
            }
            if (fd >= 0) devices->closeDevice(fd);
            if (mAONHECallback != nullptr) mAONHECallback->onOpened();
            gAONStatus = AON_OPEN;
            break;
        }
        case AON_OPEN:
            if (mAONHECallback != nullptr) {
                mAONHECallback->onOpened();
                mAONHECallback->onError(IAONHECallbacks::ERROR_ALREADY_OPEN);
            }
            break;
        case AON_NORMAL_CLIENT:
            if (mAONHECallback != nullptr) {
                mAONHECallback->onError(IAONHECallbacks::ERROR_CAMERA_IN_USE);
            }
            break;
        case AON_CLOSING:
            if (mAONHECallback != nullptr) {
                mAONHECallback->onError(IAONHECallbacks::ERROR_CLOSED_FOR_CLIENT);
            }
            break;
        default:
            EXT_LOG(1, "%s:invalid aon status", __func__);
            break;
    }
    EXT_LOG(1, "%s: open AON camera end AONstatus = %d", __func__, static_cast<int32_t>(gAONStatus));
    return result;
}

status_t CameraServiceExtImpl::closeAON() {
    Mutex::Autolock lock(mAONLock);
    EXT_LOG(1, "%s: close AON camera start AONstatus = %d", __func__,
            static_cast<int32_t>(gAONStatus));
    if (CamFrontIndex == kAONNoFrontCamera) {
        EXT_LOG(1, "%s: no front camera device path", __func__);
        if (mAONHECallback != nullptr) {
            mAONHECallback->onError(IAONHECallbacks::ERROR_NO_FRONT_SENSOR);
            getAONcamdev();
        }
        releaseCallback();
        return OK;
    }

    status_t result = OK;
    const int32_t status = gAONStatus;
    switch (status) {
        case AON_IDLE:
            if (mAONHECallback != nullptr) {
                mAONHECallback->onClosed();
                mAONHECallback->onError(IAONHECallbacks::ERROR_CLOSED_WHILE_IDLE);
            }
            break;
        case AON_OPEN:
        case AON_CLOSING: {
            vantu::DeviceAccess* devices = vantu::DeviceAccess::Default();
            const int fd = devices->openDevice(frontSensorPath(), O_WRONLY);
            if (fd < 0) EXT_LOG(0, "fd open error\n");
            uint8_t arg[8] = {0};
            result = devices->ioctlDevice(fd, kAONPowerDownRequest, arg);
            if (result != 0) {
                EXT_LOG(0, "%s:CamFrontIndex %d VIDIOC_CAM_AON_POWNER_DOWN failed: %s", __func__,
                        static_cast<uint16_t>(CamFrontIndex), strerror(errno));
            }
            if (fd >= 0) devices->closeDevice(fd);
            if (mAONHECallback != nullptr) {
                mAONHECallback->onClosed();
                if (status == AON_CLOSING) {
                    mAONHECallback->onError(IAONHECallbacks::ERROR_CLOSED_FOR_CLIENT);
                }
            }
            gAONStatus = AON_IDLE;
            break;
        }
        case AON_NORMAL_CLIENT:
            if (mAONHECallback != nullptr) {
                mAONHECallback->onError(IAONHECallbacks::ERROR_CAMERA_IN_USE);
            }
            break;
        default:
            EXT_LOG(1, "%s:invalid aon status", __func__);
            break;
    }
    releaseCallback();
    EXT_LOG(1, "%s: close AON camera end AONstatus = %d", __func__,
            static_cast<int32_t>(gAONStatus));
    return result;
}

int32_t CameraServiceExtImpl::initAONSignal() {
    struct sigaction action;
    memset(&action, 0, sizeof(action));
    action.sa_sigaction = aon_signal_handler;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    return sigaction(kAONSignal, &action, nullptr);
}

// Runs in whichever thread the signal interrupts, possibly inside open or close on that thread.
// What it does itself is async-signal-safe: it takes no lock of the library's, reads the
// callback with one atomic load and makes one one-way binder call on it (besides its log lines,
// written only while the debug switch is on); errno is kept for the interrupted code.
void CameraServiceExtImpl::aon_signal_handler(int, siginfo_t* info, void*) {
    if (info == nullptr) return;
    const int savedErrno = errno;
    if (info->si_signo != kAONSignal) {
        EXT_LOG(0, "aon_signal_handler not defined code %d", info->si_code);
    } else if (info->si_code == kAONDetectionCode) {
        EXT_LOG(1, "receive aon irq signal");
        gSignalCallsInFlight.fetch_add(1);
        IAONHECallbacks* callback = gSignalCallback.load();
        if (callback != nullptr) {
            EXT_LOG(1, "send aon irq signal to aon app");
            callback->onHEDetected();
        }
        gSignalCallsInFlight.fetch_sub(1);
    }
    errno = savedErrno;
}

}  // namespace android
