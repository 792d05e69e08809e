/*
 * What the camera metadata sources share: the packet's binary layout and the tag tables.
 */
#ifndef HOST_METADATA_CAMERA_METADATA_INTERNAL_H
#define HOST_METADATA_CAMERA_METADATA_INTERNAL_H

#include <stddef.h>
#include <stdint.h>
#include <system/camera_metadata.h>
#include <system/camera_vendor_tags.h>

// The packet header; its size and field offsets are part of the wire format.
struct camera_metadata {
    uint32_t size;     // bytes of the packet, unused capacity included
    uint32_t version;  // CURRENT_METADATA_VERSION
    uint32_t flags;    // FLAG_SORTED
    uint32_t entry_count;
    uint32_t entry_capacity;
    uint32_t entries_start;  // byte offset of the first entry record from the header
    uint32_t data_count;     // bytes used in the data area
    uint32_t data_capacity;
    uint32_t data_start;  // byte offset of the data area from the header
    uint32_t padding;
    metadata_vendor_id_t vendor_id;
};

// One entry record. A payload of at most 4 bytes is stored in `data.value`.
struct camera_metadata_buffer_entry_t {
    uint32_t tag;
    uint32_t count;
    union {
        uint32_t offset;
        uint8_t value[4];
    } data;
    uint8_t type;
    uint8_t reserved[3];
};

static_assert(sizeof(camera_metadata) == 48, "header is 48 bytes");
static_assert(offsetof(camera_metadata, entries_start) == 20, "entries_start at 20");
static_assert(offsetof(camera_metadata, data_start) == 32, "data_start at 32");
static_assert(offsetof(camera_metadata, vendor_id) == 40, "vendor_id at 40");
static_assert(sizeof(camera_metadata_buffer_entry_t) == 16, "entry record is 16 bytes");
static_assert(offsetof(camera_metadata_buffer_entry_t, data) == 8, "entry data at 8");
static_assert(offsetof(camera_metadata_buffer_entry_t, type) == 12, "entry type at 12");

namespace cammeta {

constexpr uint32_t kCurrentMetadataVersion = 1;
constexpr uint32_t kFlagSorted = 0x1;
constexpr size_t kEntryAlignment = 4;
constexpr size_t kDataAlignment = 8;
constexpr size_t kPacketAlignment = 8;

constexpr size_t alignTo(size_t value, size_t alignment) {
    return (value + alignment - 1) & ~(alignment - 1);
}

inline camera_metadata_buffer_entry_t* entries(const camera_metadata_t* m) {
    return reinterpret_cast<camera_metadata_buffer_entry_t*>(
        reinterpret_cast<uint8_t*>(const_cast<camera_metadata_t*>(m)) + m->entries_start);
}

inline uint8_t* dataArea(const camera_metadata_t* m) {
    return reinterpret_cast<uint8_t*>(const_cast<camera_metadata_t*>(m)) + m->data_start;
}

// Bytes of the entry's payload (count * type size); 0 for an unknown type.
inline size_t payloadBytes(uint8_t type, size_t count) {
    return type < NUM_TYPES ? count * camera_metadata_type_size[type] : 0;
}

// Emits one error line of the camera metadata library to the platform log.
void logError(const char* fmt, ...) __attribute__((format(printf, 1, 2)));

}  // namespace cammeta

// Name and type of one built-in tag.
struct tag_info_t {
    const char* tag_name;
    uint8_t tag_type;
};

// Name of one value of an enumerated tag.
struct camera_metadata_enum_name_t {
    uint32_t tag;
    int32_t value;
    const char* name;
};

// Per section, the tags from *_START to *_END.
extern const tag_info_t* const camera_metadata_tag_info[ANDROID_SECTION_COUNT];

extern const camera_metadata_enum_name_t camera_metadata_enum_names[];
extern const size_t camera_metadata_enum_name_count;

extern const int32_t camera_metadata_permission_needed[];
extern const uint32_t camera_metadata_permission_needed_count;

#endif  // HOST_METADATA_CAMERA_METADATA_INTERNAL_H
