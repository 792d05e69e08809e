/*
 * One-byte entries of requests and results (triggers, modes, 3A states): read with their type
 * checked, written in place when the packet already holds the entry as one byte.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_METADATABYTES_H
#define VANTU_CAMERASERVICE_UTILS_METADATABYTES_H

#include <camera/CameraMetadata.h>
#include <stdint.h>
#include <system/camera_metadata.h>
#include <utils/Errors.h>

namespace android {
namespace vantu {

// The first value of the byte entry `tag`; false when it is absent, empty or not bytes.
inline bool firstByte(const camera_metadata* metadata, uint32_t tag, uint8_t* value) {
    camera_metadata_ro_entry_t entry{};
    if (metadata == nullptr || find_camera_metadata_ro_entry(metadata, tag, &entry) != OK ||
        entry.count == 0 || entry.type != TYPE_BYTE || entry.data.u8 == nullptr) {
        return false;
    }
    *value = entry.data.u8[0];
    return true;
}

inline bool firstByte(const CameraMetadata& metadata, uint32_t tag, uint8_t* value) {
    const camera_metadata_ro_entry_t entry = metadata.find(tag);
    if (entry.count == 0 || entry.type != TYPE_BYTE || entry.data.u8 == nullptr) return false;
    *value = entry.data.u8[0];
    return true;
}

// Sets `tag` to the one byte `value`: in place when the packet holds it as one byte, else
// through update. The write's status.
inline status_t setByte(CameraMetadata& metadata, uint32_t tag, uint8_t value) {
    const camera_metadata_entry entry = metadata.find(tag);
    if (entry.count == 1 && entry.type == TYPE_BYTE && entry.data.u8 != nullptr) {
        entry.data.u8[0] = value;
        return OK;
    }
    return metadata.update(tag, &value, 1);
}

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_METADATABYTES_H
