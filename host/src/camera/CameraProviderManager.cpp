// The provider manager's queries, answered from the devices' static characteristics.
#define LOG_TAG "CameraProviderManager"

#include "common/CameraProviderManager.h"

#include <log/log.h>
#include <stdlib.h>
#include <system/camera_metadata.h>

#include <algorithm>
#include <map>
#include <unordered_set>

namespace android {

namespace {

bool hasCapability(const CameraMetadata& characteristics, uint8_t capability) {
    camera_metadata_ro_entry_t caps = characteristics.find(ANDROID_REQUEST_AVAILABLE_CAPABILITIES);
    for (size_t i = 0; i < caps.count; i++) {
        if (caps.data.u8[i] == capability) return true;
    }
    return false;
}

int facingOf(const CameraMetadata& characteristics) {
    camera_metadata_ro_entry_t facing = characteristics.find(ANDROID_LENS_FACING);
    return facing.count > 0 ? facing.data.u8[0] : -1;
}

// Device ids that are plain unsigned numbers sort first, numerically; the rest by text.
bool api1Order(const std::string& a, const std::string& b) {
    auto asUint = [](const std::string& s, unsigned long* out) {
        if (s.empty() || s.find_first_not_of("0123456789") != std::string::npos) return false;
        *out = strtoul(s.c_str(), nullptr, 10);
        return true;
    };
    unsigned long aUint = 0;
    unsigned long bUint = 0;
    bool aIsUint = asUint(a, &aUint);
    bool bIsUint = asUint(b, &bUint);
    if (aIsUint && bIsUint) return aUint < bUint;
    if (aIsUint != bIsUint) return aIsUint;
    return a < b;
}

}  // namespace

CameraProviderManager::~CameraProviderManager() {}

const CameraProviderManager::DeviceInfo* CameraProviderManager::findLocked(
    const std::string& id) const {
    for (const auto& device : mDevices) {
        if (device.first == id) return &device.second;
    }
    return nullptr;
}

SystemCameraKind CameraProviderManager::kindLocked(const DeviceInfo& device) const {
    camera_metadata_ro_entry_t caps =
        device.characteristics.find(ANDROID_REQUEST_AVAILABLE_CAPABILITIES);
    // A camera whose only capability is secure image data is never shown to apps.
    if (caps.count == 1 &&
        caps.data.u8[0] == ANDROID_REQUEST_AVAILABLE_CAPABILITIES_SECURE_IMAGE_DATA) {
        return HIDDEN_SECURE_CAMERA;
    }
    if (hasCapability(device.characteristics, ANDROID_REQUEST_AVAILABLE_CAPABILITIES_SYSTEM_CAMERA)) {
        return SYSTEM_ONLY_CAMERA;
    }
    return PUBLIC;
}

std::vector<std::string> CameraProviderManager::physicalIdsLocked(const DeviceInfo& device) const {
    std::vector<std::string> ids;
    if (!hasCapability(device.characteristics,
                       ANDROID_REQUEST_AVAILABLE_CAPABILITIES_LOGICAL_MULTI_CAMERA)) {
        return ids;
    }
    // The ids are one byte array of NUL-terminated strings.
    camera_metadata_ro_entry_t entry =
        device.characteristics.find(ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS);
    const char* bytes = reinterpret_cast<const char*>(entry.data.u8);
    size_t start = 0;
    for (size_t i = 0; i < entry.count; i++) {
        if (bytes[i] == '\0') {
            if (i > start) ids.emplace_back(bytes + start, i - start);
            start = i + 1;
        }
    }
    if (start < entry.count) ids.emplace_back(bytes + start, entry.count - start);
    return ids;
}

std::pair<int, int> CameraProviderManager::getCameraCount() const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    int systemCameraCount = 0;
    int publicCameraCount = 0;
    for (const auto& device : mDevices) {
        switch (kindLocked(device.second)) {
            case PUBLIC:
                publicCameraCount++;
                break;
            case SYSTEM_ONLY_CAMERA:
                systemCameraCount++;
                break;
            default:
                break;
        }
    }
    return std::make_pair(systemCameraCount, publicCameraCount);
}

std::vector<std::string> CameraProviderManager::getCameraDeviceIds() const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    std::vector<std::string> ids;
    for (const auto& device : mDevices) ids.push_back(device.first);
    return ids;
}

std::vector<std::string> CameraProviderManager::getAPI1CompatibleCameraDeviceIds() const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    std::vector<std::string> candidates;
    for (const auto& device : mDevices) {
        if (hasCapability(device.second.characteristics,
                          ANDROID_REQUEST_AVAILABLE_CAPABILITIES_BACKWARD_COMPATIBLE) &&
            kindLocked(device.second) != HIDDEN_SECURE_CAMERA) {
            candidates.push_back(device.first);
        }
    }

    // API1 apps handle logical cameras badly: of each facing's logical camera and its physical
    // cameras, only the id listed first stays.
    std::map<int, std::unordered_set<std::string>> idCombos;
    for (const auto& id : candidates) {
        const DeviceInfo* device = findLocked(id);
        std::vector<std::string> combo = physicalIdsLocked(*device);
        if (combo.empty()) continue;
        combo.push_back(id);
        idCombos[facingOf(device->characteristics)].insert(combo.begin(), combo.end());
    }
    for (auto& entry : idCombos) {
        auto& removedIds = entry.second;
        for (const auto& id : candidates) {
            auto found = removedIds.find(id);
            if (found != removedIds.end()) {
                removedIds.erase(found);
                break;
            }
        }
        candidates.erase(
            std::remove_if(candidates.begin(), candidates.end(),
                           [&removedIds](const std::string& s) { return removedIds.count(s) > 0; }),
            candidates.end());
    }

    // System cameras go last, since they are pared off for apps without the permission.
    std::vector<std::string> publicIds;
    std::vector<std::string> systemIds;
    for (const auto& id : candidates) {
        (kindLocked(*findLocked(id)) == PUBLIC ? publicIds : systemIds).push_back(id);
    }
    std::sort(publicIds.begin(), publicIds.end(), api1Order);
    std::sort(systemIds.begin(), systemIds.end(), api1Order);
    publicIds.insert(publicIds.end(), systemIds.begin(), systemIds.end());
    return publicIds;
}

bool CameraProviderManager::hasFlashUnit(const std::string& id) const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    const DeviceInfo* device = findLocked(id);
    if (device == nullptr) return false;
    camera_metadata_ro_entry_t flash = device->characteristics.find(ANDROID_FLASH_INFO_AVAILABLE);
    return flash.count > 0 && flash.data.u8[0] == ANDROID_FLASH_INFO_AVAILABLE_TRUE;
}

status_t CameraProviderManager::getCameraCharacteristics(const std::string& id,
                                                         bool /*overrideForPerfClass*/,
                                                         CameraMetadata* characteristics) const {
    if (characteristics == nullptr) {
        ALOGE("%s: null output for camera %s", __FUNCTION__, id.c_str());
        return BAD_VALUE;
    }
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    const DeviceInfo* device = findLocked(id);
    if (device == nullptr) return NAME_NOT_FOUND;
    *characteristics = device->characteristics;
    return OK;
}

status_t CameraProviderManager::setTorchMode(const std::string& id, bool enabled) {
    {
        std::lock_guard<std::mutex> lock(mInterfaceMutex);
        if (findLocked(id) == nullptr) return NAME_NOT_FOUND;
    }
    if (!hasFlashUnit(id)) {
        ALOGE("%s: camera %s has no flash unit", __FUNCTION__, id.c_str());
        return INVALID_OPERATION;
    }
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    for (auto& device : mDevices) {
        if (device.first == id) device.second.torchOn = enabled;
    }
    return OK;
}

bool CameraProviderManager::supportSetTorchMode(const std::string& id) const {
    return hasFlashUnit(id);
}

bool CameraProviderManager::isLogicalCamera(const std::string& id,
                                            std::vector<std::string>* physicalCameraIds) {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    const DeviceInfo* device = findLocked(id);
    if (device == nullptr) return false;
    std::vector<std::string> ids = physicalIdsLocked(*device);
    if (ids.empty()) return false;
    if (physicalCameraIds != nullptr) *physicalCameraIds = ids;
    return true;
}

status_t CameraProviderManager::getSystemCameraKind(const std::string& id,
                                                    SystemCameraKind* kind) const {
    if (kind == nullptr) return BAD_VALUE;
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    const DeviceInfo* device = findLocked(id);
    if (device == nullptr) return NAME_NOT_FOUND;
    *kind = kindLocked(*device);
    return OK;
}

bool CameraProviderManager::isHiddenPhysicalCamera(const std::string& cameraId) const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    if (findLocked(cameraId) != nullptr) return false;
    for (const auto& device : mDevices) {
        std::vector<std::string> ids = physicalIdsLocked(device.second);
        if (std::find(ids.begin(), ids.end(), cameraId) != ids.end()) return true;
    }
    return false;
}

metadata_vendor_id_t CameraProviderManager::getProviderTagIdLocked(const std::string& id) const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    const DeviceInfo* device = findLocked(id);
    return device != nullptr ? device->providerTagId : CAMERA_METADATA_INVALID_VENDOR_ID;
}

void CameraProviderManager::putDevice(const std::string& id, const DeviceInfo& info) {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    for (auto& device : mDevices) {
        if (device.first == id) {
            device.second = info;
            return;
        }
    }
    mDevices.emplace_back(id, info);
}

void CameraProviderManager::eraseDevice(const std::string& id) {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    mDevices.erase(std::remove_if(mDevices.begin(), mDevices.end(),
                                  [&id](const auto& device) { return device.first == id; }),
                   mDevices.end());
}

bool CameraProviderManager::torchOn(const std::string& id) const {
    std::lock_guard<std::mutex> lock(mInterfaceMutex);
    const DeviceInfo* device = findLocked(id);
    return device != nullptr && device->torchOn;
}

}  // namespace android
