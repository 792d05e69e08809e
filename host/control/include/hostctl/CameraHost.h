/*
 * The host's camera server objects: what the camera server would hand the extension library
 * (clients, the service, the provider manager, listeners, output streams, capture output states)
 * as plain host implementations that record what the library did to them. Tests and the
 * simulator build them and read the records; the library only sees the platform interfaces.
 */
#ifndef HOSTCTL_CAMERAHOST_H
#define HOSTCTL_CAMERAHOST_H

#include <CameraService.h>
#include <android/hardware/BnCameraServiceListener.h>
#include <camera/CameraMetadata.h>
#include <common/CameraProviderManager.h>
#include <sys/types.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "hostctl/HostCaptureOutputStates.h"
#include "hostctl/HostOutputStream.h"

namespace hostctl {

// A connected camera client. Records, in order, "notifyError(<code>)", "disconnect",
// "setRotateAndCropOverride(<v>)", "setCameraMute(<0|1>)", "injectCamera(<id>)" and
// "stopInjection". disconnect() is idempotent as the server's: only the first call records
// "disconnect" and runs the on-disconnect callback.
class HostCameraClient : public android::CameraService::BasicClient {
public:
    // Runs the server's close sequence for this client; called from the first disconnect()
    // before it returns, with no lock of the client held.
    using DisconnectCallback = std::function<void(HostCameraClient& client)>;

    HostCameraClient(const android::String8& cameraId, const android::String16& packageName,
                     uid_t uid, pid_t pid, int facing = 0, int orientation = 0,
                     android::CameraService::apiLevel apiLevel = android::CameraService::API_2);

    // BasicClient.
    android::status_t initialize(android::sp<android::CameraProviderManager> manager,
                                 const android::String8& monitorTags) override;
    android::binder::Status disconnect() override;
    android::sp<android::IBinder> asBinderWrapper() override;
    android::status_t dumpClient(int fd, const android::Vector<android::String16>& args) override;
    void notifyError(int32_t errorCode, const android::CaptureResultExtras& resultExtras) override;
    bool canCastToApiClient(android::CameraService::apiLevel level) const override;
    android::status_t setRotateAndCropOverride(uint8_t rotateAndCrop) override;
    bool supportsCameraMute() override;
    android::status_t setCameraMute(bool enabled) override;
    android::status_t injectCamera(const android::String8& injectedCamId,
                                   android::sp<android::CameraProviderManager> manager) override;
    android::status_t stopInjection() override;

    const android::String8& cameraId() const { return mCameraIdStr; }
    void setOnDisconnect(DisconnectCallback callback);
    // True from the start of the first disconnect() on.
    bool isDisconnected() const { return mClosing.load(std::memory_order_relaxed); }
    // Every disconnect() call, effective or not.
    int disconnectCalls() const { return mDisconnectCalls.load(std::memory_order_relaxed); }
    std::vector<std::string> events() const;
    // The extras of the last notifyError (invalid extras if none).
    android::CaptureResultExtras lastErrorExtras() const;
    void clearEvents();

private:
    void record(const std::string& event);

    const android::CameraService::apiLevel mApiLevel;
    std::atomic<bool> mClosing{false};
    std::atomic<int> mDisconnectCalls{0};
    mutable std::mutex mLock;
    DisconnectCallback mOnDisconnect;
    std::vector<std::string> mEvents;
    android::CaptureResultExtras mLastErrorExtras;
};

// The camera service the library is handed on disconnect. Records the torch status changes it
// is told of as availability updates: (camera id, status other than NOT_AVAILABLE).
class HostCameraService : public android::CameraService {
public:
    struct TorchAvailability {
        std::string cameraId;
        bool available;
    };

    HostCameraService() {}
    void onDeviceStatusChanged(const android::String8& cameraId,
                               android::CameraDeviceStatus newStatus) override;
    void onDeviceStatusChanged(const android::String8& cameraId,
                               const android::String8& physicalCameraId,
                               android::CameraDeviceStatus newStatus) override;
    void onTorchStatusChanged(const android::String8& cameraId, android::TorchModeStatus newStatus,
                              android::SystemCameraKind kind) override;
    void onTorchStatusChanged(const android::String8& cameraId,
                              android::TorchModeStatus newStatus) override;
    void onNewProviderRegistered() override;

    std::vector<TorchAvailability> torchAvailabilityUpdates() const;
    void clearUpdates();

private:
    mutable std::mutex mLock;
    std::vector<TorchAvailability> mUpdates;
};

// The provider manager, with the cameras the host declares. Each camera's static
// characteristics decide what the queries answer (flash unit, system camera kind, logical
// camera), as the providers' device information does on a phone.
class HostProviderManager : public android::CameraProviderManager {
public:
    HostProviderManager() {}

    // Adds the camera or replaces its characteristics.
    void addCamera(const std::string& id, const android::CameraMetadata& characteristics,
                   metadata_vendor_id_t providerTagId = CAMERA_METADATA_INVALID_VENDOR_ID);
    void removeCamera(const std::string& id);
    // Whether setTorchMode last switched the torch of `id` on.
    bool torchMode(const std::string& id) const { return torchOn(id); }
};

// A camera service listener registered by an app. Records every callback as text, e.g.
// "onTorchStatusChanged(2, 0)", and torch status changes as (status, camera id).
class HostCameraServiceListener : public android::hardware::BnCameraServiceListener {
public:
    HostCameraServiceListener() {}

    android::binder::Status onStatusChanged(int32_t status,
                                            const android::String16& cameraId) override;
    android::binder::Status onPhysicalCameraStatusChanged(
        int32_t status, const android::String16& cameraId,
        const android::String16& physicalCameraId) override;
    android::binder::Status onTorchStatusChanged(int32_t status,
                                                 const android::String16& cameraId) override;
    android::binder::Status onTorchStrengthLevelChanged(const android::String16& cameraId,
                                                        int32_t newTorchStrength) override;
    android::binder::Status onCameraAccessPrioritiesChanged() override;
    android::binder::Status onCameraOpened(const android::String16& cameraId,
                                           const android::String16& clientPackageId) override;
    android::binder::Status onCameraClosed(const android::String16& cameraId) override;

    std::vector<std::string> events() const;
    std::vector<std::pair<int32_t, std::string>> torchStatusChanges() const;
    void clear();

private:
    void record(std::string event);

    mutable std::mutex mLock;
    std::vector<std::string> mEvents;
    std::vector<std::pair<int32_t, std::string>> mTorchStatus;
};

// What the battery statistics service received through BatteryNotifier, in order:
// "start <id> <uid>", "stop <id> <uid>", "flashlight on <id> <uid>", "flashlight off <id> <uid>",
// "reset camera", "reset flashlight", "start video <uid>", "stop video <uid>", "reset video",
// and the same three for audio. Repeated starts of a running (id, uid) reach the service once.
std::vector<std::string> batteryEvents();
void clearBatteryEvents();

}  // namespace hostctl

#endif  // HOSTCTL_CAMERAHOST_H
