/*
 * Host stand-in of the camera server's provider manager (Android 13): the server's list of
 * camera devices and their static information. On a phone it enumerates the camera HAL
 * providers; on the host the devices and their characteristics are filled in by hostctl
 * (HostProviderManager), and the queries answer from them as the server's do.
 */
#ifndef ANDROID_SERVERS_CAMERA_CAMERAPROVIDER_H
#define ANDROID_SERVERS_CAMERA_CAMERAPROVIDER_H

#include <camera/CameraMetadata.h>
#include <stdint.h>
#include <system/camera_vendor_tags.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String8.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace android {

// The state of a camera device, as the provider reports it.
enum class CameraDeviceStatus : uint32_t {
    NOT_PRESENT = 0,
    PRESENT = 1,
    ENUMERATING = 2,
};

// The state of a camera's torch.
enum class TorchModeStatus : uint32_t {
    NOT_AVAILABLE = 0,
    AVAILABLE_OFF = 1,
    AVAILABLE_ON = 2,
};

// Who may see a camera.
enum SystemCameraKind {
    // Any app with the camera permission.
    PUBLIC = 0,
    // Only system apps with the system camera permission.
    SYSTEM_ONLY_CAMERA,
    // Only native system processes; never listed to apps.
    HIDDEN_SECURE_CAMERA,
};

class CameraProviderManager : public virtual RefBase {
public:
    // Told of device and torch changes the providers report.
    struct StatusListener : virtual public RefBase {
        ~StatusListener() override {}

        virtual void onDeviceStatusChanged(const String8& cameraId,
                                           CameraDeviceStatus newStatus) = 0;
        virtual void onDeviceStatusChanged(const String8& cameraId, const String8& physicalCameraId,
                                           CameraDeviceStatus newStatus) = 0;
        virtual void onTorchStatusChanged(const String8& cameraId, TorchModeStatus newStatus,
                                          SystemCameraKind kind) = 0;
        virtual void onTorchStatusChanged(const String8& cameraId, TorchModeStatus newStatus) = 0;
        virtual void onNewProviderRegistered() = 0;
    };

    ~CameraProviderManager() override;

    // (system-only cameras, public cameras); hidden secure cameras are not counted.
    std::pair<int, int> getCameraCount() const;

    // Every device id, in the order the devices were added.
    std::vector<std::string> getCameraDeviceIds() const;

    // Ids an API1 app may open: public cameras first, then system-only cameras; physical
    // cameras of a logical camera and hidden secure cameras are left out.
    std::vector<std::string> getAPI1CompatibleCameraDeviceIds() const;

    // Whether the device has a flash unit (its android.flash.info.available).
    bool hasFlashUnit(const std::string& id) const;

    // The device's static characteristics; NAME_NOT_FOUND for an unknown id, BAD_VALUE for a
    // null output. The host keeps one set of characteristics, so overrideForPerfClass does not
    // change the answer.
    status_t getCameraCharacteristics(const std::string& id, bool overrideForPerfClass,
                                      CameraMetadata* characteristics) const;

    // Switches the torch of a device with a flash unit: NAME_NOT_FOUND for an unknown id,
    // INVALID_OPERATION without a flash unit.
    status_t setTorchMode(const std::string& id, bool enabled);
    bool supportSetTorchMode(const std::string& id) const;

    // True for a logical multi-camera; fills its physical camera ids when asked.
    bool isLogicalCamera(const std::string& id, std::vector<std::string>* physicalCameraIds);

    // From the device's capabilities: SECURE_IMAGE_DATA makes it hidden secure, SYSTEM_CAMERA
    // system-only. NAME_NOT_FOUND for an unknown id, BAD_VALUE for a null output.
    status_t getSystemCameraKind(const std::string& id, SystemCameraKind* kind) const;

    // True for a camera that is only a physical part of a logical camera.
    bool isHiddenPhysicalCamera(const std::string& cameraId) const;

    // The vendor id of the provider serving `id` (CAMERA_METADATA_INVALID_VENDOR_ID if none).
    metadata_vendor_id_t getProviderTagIdLocked(const std::string& id) const;

protected:
    struct DeviceInfo {
        CameraMetadata characteristics;
        metadata_vendor_id_t providerTagId = CAMERA_METADATA_INVALID_VENDOR_ID;
        bool torchOn = false;
    };

    CameraProviderManager() {}

    // Adds the device or replaces its information, keeping its place in the order.
    void putDevice(const std::string& id, const DeviceInfo& info);
    void eraseDevice(const std::string& id);
    bool torchOn(const std::string& id) const;

private:
    const DeviceInfo* findLocked(const std::string& id) const;
    SystemCameraKind kindLocked(const DeviceInfo& device) const;
    std::vector<std::string> physicalIdsLocked(const DeviceInfo& device) const;

    mutable std::mutex mInterfaceMutex;
    std::vector<std::pair<std::string, DeviceInfo>> mDevices;
};

}  // namespace android

#endif
