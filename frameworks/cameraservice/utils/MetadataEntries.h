/*
 * Small entry operations of requests, results and characteristics: one-byte entries (triggers,
 * modes, 3A states) read with their type checked and written in place when the packet already
 * holds them as one byte, and the erasing of every entry of a tag.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_METADATAENTRIES_H
#define VANTU_CAMERASERVICE_UTILS_METADATAENTRIES_H

#include <camera/CameraMetadata.h>
#include <stddef.h>
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

// Erases every entry of `tag` and answers how many went. Every writer of a vendor tag calls it
// first, so that its write adds the only entry: a packet may hold an entry of another type (from
// a provider that declares the tag differently), which updated in place would take as many bytes
// as its own type needs from the library's value, or several entries of a tag (validation does
// not refuse them), of which an update or an erase reaches only the first. An entry stays only
// in a packet that will not change (a locked one).
inline size_t eraseEntries(CameraMetadata& metadata, uint32_t tag) {
    const CameraMetadata& view = metadata;
    size_t erased = 0;
    while (view.exists(tag) && metadata.erase(tag) == OK) ++erased;
    return erased;
}

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_METADATAENTRIES_H
