/*
 * The camera metadata packet: allocation, copies, validation and entry operations, with the
 * binary layout and the rules of Android 13's libcamera_metadata.
 */
#include <camera_metadata_hidden.h>
#include <errno.h>
#include <inttypes.h>
#include <log/log.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <system/camera_metadata.h>

#include "camera_metadata_internal.h"

using cammeta::alignTo;
using cammeta::dataArea;
using cammeta::entries;
using cammeta::kDataAlignment;
using cammeta::kEntryAlignment;
using cammeta::kFlagSorted;
using cammeta::kPacketAlignment;
using cammeta::logError;
using cammeta::payloadBytes;

namespace {

constexpr int OK = 0;
constexpr int ERROR = 1;
constexpr int NOT_FOUND = -ENOENT;

// Payloads up to this many bytes live inside the entry record.
constexpr size_t kInlineBytes = 4;

int compareEntryTags(const void* p1, const void* p2) {
    uint32_t tag1 = static_cast<const camera_metadata_buffer_entry_t*>(p1)->tag;
    uint32_t tag2 = static_cast<const camera_metadata_buffer_entry_t*>(p2)->tag;
    return tag1 < tag2 ? -1 : tag1 == tag2 ? 0 : 1;
}

bool fitsWire(size_t value) {
    return value <= UINT32_MAX;
}

int addEntryRaw(camera_metadata_t* dst, uint32_t tag, uint8_t type, const void* data,
                size_t data_count) {
    if (dst == nullptr) return ERROR;
    if (dst->entry_count == dst->entry_capacity) return ERROR;
    if (data_count != 0 && data == nullptr) return ERROR;
    if (!fitsWire(data_count)) return ERROR;

    size_t data_bytes = calculate_camera_metadata_entry_data_size(type, data_count);
    if (data_bytes + dst->data_count > dst->data_capacity) return ERROR;

    size_t data_payload_bytes = payloadBytes(type, data_count);
    camera_metadata_buffer_entry_t* entry = entries(dst) + dst->entry_count;
    memset(entry, 0, sizeof(*entry));
    entry->tag = tag;
    entry->type = type;
    entry->count = static_cast<uint32_t>(data_count);

    if (data_bytes == 0) {
        if (data_payload_bytes != 0) memcpy(entry->data.value, data, data_payload_bytes);
    } else {
        entry->data.offset = dst->data_count;
        uint8_t* dest = dataArea(dst) + entry->data.offset;
        memcpy(dest, data, data_payload_bytes);
        // Zero the alignment padding so that identical contents give identical packets.
        memset(dest + data_payload_bytes, 0, data_bytes - data_payload_bytes);
        dst->data_count += static_cast<uint32_t>(data_bytes);
    }
    dst->entry_count++;
    dst->flags &= ~kFlagSorted;
    return OK;
}

// Removes `bytes` bytes at `offset` of the data area and moves the later payloads down.
void removeData(camera_metadata_t* dst, uint32_t offset, size_t bytes) {
    uint8_t* start = dataArea(dst) + offset;
    size_t length = dst->data_count - offset - bytes;
    memmove(start, start + bytes, length);
    camera_metadata_buffer_entry_t* e = entries(dst);
    for (size_t i = 0; i < dst->entry_count; i++, e++) {
        if (calculate_camera_metadata_entry_data_size(e->type, e->count) > 0 &&
            e->data.offset > offset) {
            e->data.offset -= static_cast<uint32_t>(bytes);
        }
    }
    dst->data_count -= static_cast<uint32_t>(bytes);
}

void toReadOnly(const camera_metadata_entry_t& rw, camera_metadata_ro_entry_t* ro) {
    ro->index = rw.index;
    ro->tag = rw.tag;
    ro->type = rw.type;
    ro->count = rw.count;
    ro->data.u8 = rw.data.u8;
}

}  // namespace

extern "C" {

const size_t camera_metadata_type_size[NUM_TYPES] = {
    sizeof(uint8_t), sizeof(int32_t), sizeof(float),
    sizeof(int64_t), sizeof(double),  sizeof(camera_metadata_rational_t),
};

const char* camera_metadata_type_names[NUM_TYPES] = {
    "byte", "int32", "float", "int64", "double", "rational",
};

camera_metadata_t* allocate_camera_metadata(size_t entry_capacity, size_t data_capacity) {
    size_t memory_needed = calculate_camera_metadata_size(entry_capacity, data_capacity);
    if (memory_needed == 0 || !fitsWire(memory_needed)) return nullptr;
    void* buffer = calloc(1, memory_needed);
    if (buffer == nullptr) return nullptr;
    camera_metadata_t* metadata =
        place_camera_metadata(buffer, memory_needed, entry_capacity, data_capacity);
    if (metadata == nullptr) free(buffer);
    return metadata;
}

size_t get_camera_metadata_alignment() {
    return kPacketAlignment;
}

camera_metadata_t* allocate_copy_camera_metadata_checked(const camera_metadata_t* src,
                                                         size_t src_size) {
    if (src == nullptr) return nullptr;
    if (src_size < sizeof(camera_metadata_t)) {
        logError("%s: Source size too small!", __FUNCTION__);
        return nullptr;
    }
    void* buffer = malloc(src_size);
    if (buffer == nullptr) return nullptr;
    memcpy(buffer, src, src_size);
    camera_metadata_t* metadata = static_cast<camera_metadata_t*>(buffer);
    if (validate_camera_metadata_structure(metadata, &src_size) != OK) {
        free(buffer);
        return nullptr;
    }
    return metadata;
}

camera_metadata_t* place_camera_metadata(void* dst, size_t dst_size, size_t entry_capacity,
                                         size_t data_capacity) {
    if (dst == nullptr) return nullptr;
    if (!fitsWire(entry_capacity) || !fitsWire(data_capacity)) return nullptr;
    size_t memory_needed = calculate_camera_metadata_size(entry_capacity, data_capacity);
    if (memory_needed == 0 || memory_needed > dst_size || !fitsWire(memory_needed)) {
        return nullptr;
    }
    if (reinterpret_cast<uintptr_t>(dst) % kPacketAlignment != 0) return nullptr;

    camera_metadata_t* metadata = static_cast<camera_metadata_t*>(dst);
    metadata->version = cammeta::kCurrentMetadataVersion;
    metadata->flags = 0;
    metadata->entry_count = 0;
    metadata->entry_capacity = static_cast<uint32_t>(entry_capacity);
    metadata->entries_start =
        static_cast<uint32_t>(alignTo(sizeof(camera_metadata_t), kEntryAlignment));
    metadata->data_count = 0;
    metadata->data_capacity = static_cast<uint32_t>(data_capacity);
    metadata->size = static_cast<uint32_t>(memory_needed);
    size_t data_unaligned =
        metadata->entries_start + sizeof(camera_metadata_buffer_entry_t) * entry_capacity;
    metadata->data_start = static_cast<uint32_t>(alignTo(data_unaligned, kDataAlignment));
    metadata->padding = 0;
    metadata->vendor_id = CAMERA_METADATA_INVALID_VENDOR_ID;
    return metadata;
}

void free_camera_metadata(camera_metadata_t* metadata) {
    free(metadata);
}

size_t calculate_camera_metadata_size(size_t entry_count, size_t data_count) {
    // Counts this large cannot be described by the 32-bit header; 0 tells the callers.
    if (entry_count > UINT32_MAX || data_count > UINT32_MAX) return 0;
    size_t memory_needed = sizeof(camera_metadata_t);
    memory_needed = alignTo(memory_needed, kEntryAlignment);
    memory_needed += sizeof(camera_metadata_buffer_entry_t) * entry_count;
    memory_needed = alignTo(memory_needed, kDataAlignment);
    memory_needed += data_count;
    memory_needed = alignTo(memory_needed, kPacketAlignment);
    return memory_needed;
}

size_t get_camera_metadata_size(const camera_metadata_t* metadata) {
    if (metadata == nullptr) return ERROR;
    return metadata->size;
}

size_t get_camera_metadata_compact_size(const camera_metadata_t* metadata) {
    if (metadata == nullptr) return ERROR;
    return calculate_camera_metadata_size(metadata->entry_count, metadata->data_count);
}

size_t get_camera_metadata_entry_count(const camera_metadata_t* metadata) {
    return metadata == nullptr ? 0 : metadata->entry_count;
}

size_t get_camera_metadata_entry_capacity(const camera_metadata_t* metadata) {
    return metadata == nullptr ? 0 : metadata->entry_capacity;
}

size_t get_camera_metadata_data_count(const camera_metadata_t* metadata) {
    return metadata == nullptr ? 0 : metadata->data_count;
}

size_t get_camera_metadata_data_capacity(const camera_metadata_t* metadata) {
    return metadata == nullptr ? 0 : metadata->data_capacity;
}

camera_metadata_t* copy_camera_metadata(void* dst, size_t dst_size, const camera_metadata_t* src) {
    if (dst == nullptr || src == nullptr) return nullptr;
    size_t memory_needed = get_camera_metadata_compact_size(src);
    if (dst_size < memory_needed) return nullptr;

    camera_metadata_t* metadata =
        place_camera_metadata(dst, dst_size, src->entry_count, src->data_count);
    if (metadata == nullptr) return nullptr;
    metadata->flags = src->flags;
    metadata->entry_count = src->entry_count;
    metadata->data_count = src->data_count;
    metadata->vendor_id = src->vendor_id;
    memcpy(entries(metadata), entries(src),
           sizeof(camera_metadata_buffer_entry_t) * metadata->entry_count);
    memcpy(dataArea(metadata), dataArea(src), metadata->data_count);
    return metadata;
}

int validate_camera_metadata_structure(const camera_metadata_t* metadata,
                                       const size_t* expected_size) {
    if (metadata == nullptr) {
        logError("%s: metadata is null!", __FUNCTION__);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    if (expected_size != nullptr && *expected_size < sizeof(camera_metadata_t)) {
        logError("%s: Metadata size (%zu) is smaller than its header", __FUNCTION__, *expected_size);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    // The header, the entry records and the data must all be read at their natural alignment.
    if (reinterpret_cast<uintptr_t>(metadata) % kPacketAlignment != 0) {
        logError("%s: Metadata pointer is not aligned (actual %p, expected alignment %zu)",
                 __FUNCTION__, static_cast<const void*>(metadata), kPacketAlignment);
        return CAMERA_METADATA_VALIDATION_SHIFTED;
    }

    const uint64_t size = metadata->size;
    if (expected_size != nullptr && size > *expected_size) {
        logError("%s: Metadata size (%" PRIu64 ") should be <= expected size (%zu)", __FUNCTION__,
                 size, *expected_size);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    if (metadata->entry_count > metadata->entry_capacity) {
        logError("%s: Entry count (%" PRIu32 ") should be <= entry capacity (%" PRIu32 ")",
                 __FUNCTION__, metadata->entry_count, metadata->entry_capacity);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    if (metadata->data_count > metadata->data_capacity) {
        logError("%s: Data count (%" PRIu32 ") should be <= data capacity (%" PRIu32 ")",
                 __FUNCTION__, metadata->data_count, metadata->data_capacity);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    if (metadata->entries_start < sizeof(camera_metadata_t) ||
        metadata->entries_start % kEntryAlignment != 0) {
        logError("%s: Entries start (%" PRIu32 ") overlaps the header or is misaligned",
                 __FUNCTION__, metadata->entries_start);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    const uint64_t entries_end = static_cast<uint64_t>(metadata->entries_start) +
                                 sizeof(camera_metadata_buffer_entry_t) * metadata->entry_capacity;
    if (entries_end > metadata->data_start) {
        logError("%s: Entry end (%" PRIu64 ") should be <= data start (%" PRIu32 ")", __FUNCTION__,
                 entries_end, metadata->data_start);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    if (metadata->data_start % kDataAlignment != 0) {
        logError("%s: Data start (%" PRIu32 ") is not aligned", __FUNCTION__, metadata->data_start);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }
    const uint64_t data_end = static_cast<uint64_t>(metadata->data_start) + metadata->data_capacity;
    if (data_end > size) {
        logError("%s: Data end (%" PRIu64 ") should be <= metadata size (%" PRIu64 ")",
                 __FUNCTION__, data_end, size);
        return CAMERA_METADATA_VALIDATION_ERROR;
    }

    const camera_metadata_buffer_entry_t* entry = entries(metadata);
    for (size_t i = 0; i < metadata->entry_count; ++i, ++entry) {
        if (entry->type >= NUM_TYPES) {
            logError("%s: Entry index %zu had a bad type %d", __FUNCTION__, i, entry->type);
            return CAMERA_METADATA_VALIDATION_ERROR;
        }
        // Vendor tags are described in another process at times, so only built-in tags are
        // held to their registered type.
        uint32_t tag_section = entry->tag >> 16;
        int tag_type = get_local_camera_metadata_tag_type(entry->tag, metadata);
        if (tag_type != static_cast<int>(entry->type) && tag_section < VENDOR_SECTION) {
            logError("%s: Entry index %zu had tag type %d, but the type was %d", __FUNCTION__, i,
                     tag_type, entry->type);
            return CAMERA_METADATA_VALIDATION_ERROR;
        }

        size_t data_size = calculate_camera_metadata_entry_data_size(entry->type, entry->count);
        if (data_size != 0) {
            if (entry->data.offset % kDataAlignment != 0) {
                logError("%s: Entry index %zu had a misaligned data offset %" PRIu32, __FUNCTION__,
                         i, entry->data.offset);
                return CAMERA_METADATA_VALIDATION_ERROR;
            }
            uint64_t data_entry_end = static_cast<uint64_t>(entry->data.offset) + data_size;
            if (data_entry_end > metadata->data_capacity) {
                logError("%s: Entry index %zu data ends (%" PRIu64 ") beyond the capacity (%" PRIu32
                         ")",
                         __FUNCTION__, i, data_entry_end, metadata->data_capacity);
                return CAMERA_METADATA_VALIDATION_ERROR;
            }
        } else if (entry->count == 0 && entry->data.offset != 0) {
            logError("%s: Entry index %zu had 0 items, but offset was non-0 (%" PRIu32 ")",
                     __FUNCTION__, i, entry->data.offset);
            return CAMERA_METADATA_VALIDATION_ERROR;
        }
    }
    return OK;
}

int append_camera_metadata(camera_metadata_t* dst, const camera_metadata_t* src) {
    if (dst == nullptr || src == nullptr) return ERROR;
    if (static_cast<uint64_t>(dst->entry_count) + src->entry_count > dst->entry_capacity) {
        return ERROR;
    }
    if (static_cast<uint64_t>(dst->data_count) + src->data_count > dst->data_capacity) {
        return ERROR;
    }
    if (dst->vendor_id != CAMERA_METADATA_INVALID_VENDOR_ID &&
        src->vendor_id != CAMERA_METADATA_INVALID_VENDOR_ID && dst->vendor_id != src->vendor_id) {
        logError("%s: Append for metadata from different vendors is not supported!", __FUNCTION__);
        return ERROR;
    }

    memcpy(entries(dst) + dst->entry_count, entries(src),
           sizeof(camera_metadata_buffer_entry_t) * src->entry_count);
    memcpy(dataArea(dst) + dst->data_count, dataArea(src), src->data_count);
    if (dst->data_count != 0) {
        camera_metadata_buffer_entry_t* entry = entries(dst) + dst->entry_count;
        for (size_t i = 0; i < src->entry_count; i++, entry++) {
            if (calculate_camera_metadata_entry_data_size(entry->type, entry->count) > 0) {
                entry->data.offset += dst->data_count;
            }
        }
    }
    if (dst->entry_count == 0) {
        // An empty destination takes the source's order as it is.
        dst->flags |= src->flags & kFlagSorted;
    } else if (src->entry_count != 0) {
        dst->flags &= ~kFlagSorted;
    }
    dst->entry_count += src->entry_count;
    dst->data_count += src->data_count;
    if (dst->vendor_id == CAMERA_METADATA_INVALID_VENDOR_ID) dst->vendor_id = src->vendor_id;
    return OK;
}

camera_metadata_t* clone_camera_metadata(const camera_metadata_t* src) {
    if (src == nullptr) return nullptr;
    camera_metadata_t* clone = allocate_camera_metadata(get_camera_metadata_entry_count(src),
                                                        get_camera_metadata_data_count(src));
    if (clone != nullptr && append_camera_metadata(clone, src) != OK) {
        free_camera_metadata(clone);
        clone = nullptr;
    }
    return clone;
}

size_t calculate_camera_metadata_entry_data_size(uint8_t type, size_t data_count) {
    if (type >= NUM_TYPES) return 0;
    size_t data_bytes = data_count * camera_metadata_type_size[type];
    return data_bytes <= kInlineBytes ? 0 : alignTo(data_bytes, kDataAlignment);
}

int add_camera_metadata_entry(camera_metadata_t* dst, uint32_t tag, const void* data,
                              size_t data_count) {
    int type = get_local_camera_metadata_tag_type(tag, dst);
    if (type == -1) {
        logError("%s: Unknown tag %04x.", __FUNCTION__, tag);
        return ERROR;
    }
    return addEntryRaw(dst, tag, static_cast<uint8_t>(type), data, data_count);
}

int sort_camera_metadata(camera_metadata_t* dst) {
    if (dst == nullptr) return ERROR;
    if (dst->flags & kFlagSorted) return OK;
    qsort(entries(dst), dst->entry_count, sizeof(camera_metadata_buffer_entry_t), compareEntryTags);
    dst->flags |= kFlagSorted;
    return OK;
}

int get_camera_metadata_entry(camera_metadata_t* src, size_t index, camera_metadata_entry_t* entry) {
    if (src == nullptr || entry == nullptr) return ERROR;
    if (index >= src->entry_count) return ERROR;

    camera_metadata_buffer_entry_t* buffer_entry = entries(src) + index;
    if (buffer_entry->type >= NUM_TYPES) return ERROR;
    size_t bytes = payloadBytes(buffer_entry->type, buffer_entry->count);
    if (bytes > kInlineBytes &&
        static_cast<uint64_t>(buffer_entry->data.offset) + bytes > src->data_capacity) {
        return ERROR;  // a damaged record must not hand out a pointer beyond the packet
    }
    entry->index = index;
    entry->tag = buffer_entry->tag;
    entry->type = buffer_entry->type;
    entry->count = buffer_entry->count;
    if (bytes > kInlineBytes) {
        entry->data.u8 = dataArea(src) + buffer_entry->data.offset;
    } else {
        entry->data.u8 = buffer_entry->data.value;
    }
    return OK;
}

int get_camera_metadata_ro_entry(const camera_metadata_t* src, size_t index,
                                 camera_metadata_ro_entry_t* entry) {
    if (entry == nullptr) return ERROR;
    camera_metadata_entry_t rw;
    int res = get_camera_metadata_entry(const_cast<camera_metadata_t*>(src), index, &rw);
    if (res == OK) toReadOnly(rw, entry);
    return res;
}

int find_camera_metadata_entry(camera_metadata_t* src, uint32_t tag,
                               camera_metadata_entry_t* entry) {
    if (src == nullptr) return ERROR;

    size_t index;
    camera_metadata_buffer_entry_t* first = entries(src);
    if (src->flags & kFlagSorted) {
        camera_metadata_buffer_entry_t key;
        key.tag = tag;
        void* found = bsearch(&key, first, src->entry_count, sizeof(camera_metadata_buffer_entry_t),
                              compareEntryTags);
        if (found == nullptr) return NOT_FOUND;
        index = static_cast<camera_metadata_buffer_entry_t*>(found) - first;
    } else {
        for (index = 0; index < src->entry_count; index++) {
            if (first[index].tag == tag) break;
        }
        if (index == src->entry_count) return NOT_FOUND;
    }
    return get_camera_metadata_entry(src, index, entry);
}

int find_camera_metadata_ro_entry(const camera_metadata_t* src, uint32_t tag,
                                  camera_metadata_ro_entry_t* entry) {
    camera_metadata_entry_t rw;
    int res = find_camera_metadata_entry(const_cast<camera_metadata_t*>(src), tag,
                                         entry != nullptr ? &rw : nullptr);
    if (res == OK && entry != nullptr) toReadOnly(rw, entry);
    return res;
}

int delete_camera_metadata_entry(camera_metadata_t* dst, size_t index) {
    if (dst == nullptr) return ERROR;
    if (index >= dst->entry_count) return ERROR;

    camera_metadata_buffer_entry_t* entry = entries(dst) + index;
    size_t data_bytes = calculate_camera_metadata_entry_data_size(entry->type, entry->count);
    if (data_bytes > 0) removeData(dst, entry->data.offset, data_bytes);
    memmove(entry, entry + 1,
            sizeof(camera_metadata_buffer_entry_t) * (dst->entry_count - index - 1));
    dst->entry_count -= 1;
    return OK;
}

int update_camera_metadata_entry(camera_metadata_t* dst, size_t index, const void* data,
                                 size_t data_count, camera_metadata_entry_t* updated_entry) {
    if (dst == nullptr) return ERROR;
    if (index >= dst->entry_count) return ERROR;
    if (data_count != 0 && data == nullptr) return ERROR;
    if (!fitsWire(data_count)) return ERROR;

    camera_metadata_buffer_entry_t* entry = entries(dst) + index;
    size_t data_bytes = calculate_camera_metadata_entry_data_size(entry->type, data_count);
    size_t data_payload_bytes = payloadBytes(entry->type, data_count);
    size_t entry_bytes = calculate_camera_metadata_entry_data_size(entry->type, entry->count);
    if (data_bytes != entry_bytes) {
        if (dst->data_capacity < dst->data_count + data_bytes - entry_bytes) {
            return ERROR;  // no room
        }
        if (entry_bytes != 0) removeData(dst, entry->data.offset, entry_bytes);
        if (data_bytes != 0) {
            entry->data.offset = dst->data_count;
            uint8_t* dest = dataArea(dst) + entry->data.offset;
            memcpy(dest, data, data_payload_bytes);
            memset(dest + data_payload_bytes, 0, data_bytes - data_payload_bytes);
            dst->data_count += static_cast<uint32_t>(data_bytes);
        }
    } else if (data_bytes != 0) {
        // Same size: overwrite in place.
        memcpy(dataArea(dst) + entry->data.offset, data, data_payload_bytes);
    }
    if (data_bytes == 0) {
        // The old offset must not survive in the unused inline bytes (a 0-count entry needs 0).
        memset(entry->data.value, 0, sizeof(entry->data.value));
        if (data_payload_bytes != 0) memcpy(entry->data.value, data, data_payload_bytes);
    }
    entry->count = static_cast<uint32_t>(data_count);

    if (updated_entry != nullptr) get_camera_metadata_entry(dst, index, updated_entry);
    return OK;
}

void set_camera_metadata_vendor_id(camera_metadata_t* meta, metadata_vendor_id_t id) {
    if (meta != nullptr) meta->vendor_id = id;
}

metadata_vendor_id_t get_camera_metadata_vendor_id(const camera_metadata_t* meta) {
    return meta == nullptr ? CAMERA_METADATA_INVALID_VENDOR_ID : meta->vendor_id;
}

}  // extern "C"

namespace cammeta {

void logError(const char* fmt, ...) {
    va_list ap;
    va_start(ap, fmt);
    __android_log_vprint(ANDROID_LOG_ERROR, "camera_metadata", fmt, ap);
    va_end(ap);
}

}  // namespace cammeta
