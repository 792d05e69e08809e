// The host's camera clients, camera service, provider manager and service listeners.
#define LOG_TAG "HostCamera"

#include <log/log.h>
#include <unistd.h>

#include "hostctl/CameraHost.h"

namespace hostctl {

using android::binder::Status;

HostCameraClient::HostCameraClient(const android::String8& cameraId,
                                   const android::String16& packageName, uid_t uid, pid_t pid,
                                   int facing, int orientation,
                                   android::CameraService::apiLevel apiLevel)
    : BasicClient(nullptr, packageName, /*nativeClient=*/false, std::nullopt, cameraId, facing,
                  orientation, pid, uid, getpid()),
      mApiLevel(apiLevel) {}

android::status_t HostCameraClient::initialize(android::sp<android::CameraProviderManager>,
                                               const android::String8&) {
    return android::OK;
}

Status HostCameraClient::disconnect() {
    mDisconnectCalls.fetch_add(1, std::memory_order_relaxed);
    if (mClosing.exchange(true)) {
        return Status::ok();
    }
    record("disconnect");
    DisconnectCallback callback;
    {
        std::lock_guard<std::mutex> lock(mLock);
        callback = mOnDisconnect;
    }
    // The server runs the close sequence (and the library's disconnect hooks) while the app's
    // disconnect call is in progress, before the base clears the client's pid.
    if (callback) {
        callback(*this);
    }
    return BasicClient::disconnect();
}

android::sp<android::IBinder> HostCameraClient::asBinderWrapper() {
    // A host client is not a binder object: no app talks to it over binder.
    return nullptr;
}

android::status_t HostCameraClient::dumpClient(int fd, const android::Vector<android::String16>&) {
    dprintf(fd, "Client for camera %s, package %s, uid %d, pid %d\n", mCameraIdStr.string(),
            android::String8(mClientPackageName).string(), static_cast<int>(mClientUid),
            static_cast<int>(mClientPid.load()));
    return android::OK;
}

void HostCameraClient::notifyError(int32_t errorCode,
                                   const android::CaptureResultExtras& resultExtras) {
    {
        std::lock_guard<std::mutex> lock(mLock);
        mLastErrorExtras = resultExtras;
    }
    record("notifyError(" + std::to_string(errorCode) + ")");
}

bool HostCameraClient::canCastToApiClient(android::CameraService::apiLevel level) const {
    return level == mApiLevel;
}

android::status_t HostCameraClient::setRotateAndCropOverride(uint8_t rotateAndCrop) {
    record("setRotateAndCropOverride(" + std::to_string(rotateAndCrop) + ")");
    return android::OK;
}

bool HostCameraClient::supportsCameraMute() {
    return true;
}

android::status_t HostCameraClient::setCameraMute(bool enabled) {
    record(std::string("setCameraMute(") + (enabled ? "1" : "0") + ")");
    return android::OK;
}

android::status_t HostCameraClient::injectCamera(const android::String8& injectedCamId,
                                                 android::sp<android::CameraProviderManager>) {
    record(std::string("injectCamera(") + injectedCamId.string() + ")");
    return android::OK;
}

android::status_t HostCameraClient::stopInjection() {
    record("stopInjection");
    return android::OK;
}

void HostCameraClient::setOnDisconnect(DisconnectCallback callback) {
    std::lock_guard<std::mutex> lock(mLock);
    mOnDisconnect = std::move(callback);
}

std::vector<std::string> HostCameraClient::events() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mEvents;
}

android::CaptureResultExtras HostCameraClient::lastErrorExtras() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mLastErrorExtras;
}

void HostCameraClient::clearEvents() {
    std::lock_guard<std::mutex> lock(mLock);
    mEvents.clear();
}

void HostCameraClient::record(const std::string& event) {
    std::lock_guard<std::mutex> lock(mLock);
    mEvents.push_back(event);
}

void HostCameraService::onDeviceStatusChanged(const android::String8&, android::CameraDeviceStatus) {
}

void HostCameraService::onDeviceStatusChanged(const android::String8&, const android::String8&,
                                              android::CameraDeviceStatus) {}

void HostCameraService::onTorchStatusChanged(const android::String8& cameraId,
                                             android::TorchModeStatus newStatus,
                                             android::SystemCameraKind) {
    onTorchStatusChanged(cameraId, newStatus);
}

void HostCameraService::onTorchStatusChanged(const android::String8& cameraId,
                                             android::TorchModeStatus newStatus) {
    std::lock_guard<std::mutex> lock(mLock);
    mUpdates.push_back({cameraId.string(), newStatus != android::TorchModeStatus::NOT_AVAILABLE});
}

void HostCameraService::onNewProviderRegistered() {}

std::vector<HostCameraService::TorchAvailability> HostCameraService::torchAvailabilityUpdates() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mUpdates;
}

void HostCameraService::clearUpdates() {
    std::lock_guard<std::mutex> lock(mLock);
    mUpdates.clear();
}

void HostProviderManager::addCamera(const std::string& id,
                                    const android::CameraMetadata& characteristics,
                                    metadata_vendor_id_t providerTagId) {
    DeviceInfo info;
    info.characteristics = characteristics;
    info.providerTagId = providerTagId;
    putDevice(id, info);
}

void HostProviderManager::removeCamera(const std::string& id) {
    eraseDevice(id);
}

namespace {

std::string text(const android::String16& s) {
    return android::String8(s).string();
}

}  // namespace

Status HostCameraServiceListener::onStatusChanged(int32_t status,
                                                  const android::String16& cameraId) {
    record("onStatusChanged(" + std::to_string(status) + ", " + text(cameraId) + ")");
    return Status::ok();
}

Status HostCameraServiceListener::onPhysicalCameraStatusChanged(
    int32_t status, const android::String16& cameraId, const android::String16& physicalCameraId) {
    record("onPhysicalCameraStatusChanged(" + std::to_string(status) + ", " + text(cameraId) +
           ", " + text(physicalCameraId) + ")");
    return Status::ok();
}

Status HostCameraServiceListener::onTorchStatusChanged(int32_t status,
                                                       const android::String16& cameraId) {
    {
        std::lock_guard<std::mutex> lock(mLock);
        mTorchStatus.emplace_back(status, text(cameraId));
    }
    record("onTorchStatusChanged(" + std::to_string(status) + ", " + text(cameraId) + ")");
    return Status::ok();
}

Status HostCameraServiceListener::onTorchStrengthLevelChanged(const android::String16& cameraId,
                                                              int32_t newTorchStrength) {
    record("onTorchStrengthLevelChanged(" + text(cameraId) + ", " +
           std::to_string(newTorchStrength) + ")");
    return Status::ok();
}

Status HostCameraServiceListener::onCameraAccessPrioritiesChanged() {
    record("onCameraAccessPrioritiesChanged");
    return Status::ok();
}

Status HostCameraServiceListener::onCameraOpened(const android::String16& cameraId,
                                                 const android::String16& clientPackageId) {
    record("onCameraOpened(" + text(cameraId) + ", " + text(clientPackageId) + ")");
    return Status::ok();
}

Status HostCameraServiceListener::onCameraClosed(const android::String16& cameraId) {
    record("onCameraClosed(" + text(cameraId) + ")");
    return Status::ok();
}

std::vector<std::string> HostCameraServiceListener::events() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mEvents;
}

std::vector<std::pair<int32_t, std::string>> HostCameraServiceListener::torchStatusChanges() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mTorchStatus;
}

void HostCameraServiceListener::clear() {
    std::lock_guard<std::mutex> lock(mLock);
    mEvents.clear();
    mTorchStatus.clear();
}

void HostCameraServiceListener::record(std::string event) {
    std::lock_guard<std::mutex> lock(mLock);
    mEvents.push_back(std::move(event));
}

}  // namespace hostctl
