/*
 * Text dump of a camera metadata packet, in the format of Android's dumpsys media.camera.
 */
#include <inttypes.h>
#include <stdio.h>
#include <string.h>
#include <system/camera_metadata.h>

#include "camera_metadata_internal.h"

using cammeta::dataArea;
using cammeta::entries;

namespace {

template <typename T>
T readValue(const uint8_t* p) {
    T value;
    memcpy(&value, p, sizeof(value));  // payloads are packed, so read without alignment
    return value;
}

void printData(int fd, const uint8_t* data_ptr, uint32_t tag, int type, int count, int indentation) {
    static const int kValuesPerLine[NUM_TYPES] = {16, 4, 8, 2, 4, 2};
    size_t type_size = camera_metadata_type_size[type];
    char enum_name[CAMERA_METADATA_ENUM_STRING_MAX_SIZE];

    int lines = count / kValuesPerLine[type];
    if (count % kValuesPerLine[type] != 0) lines++;

    size_t index = 0;
    for (int j = 0; j < lines; j++) {
        dprintf(fd, "%*s[", indentation + 4, "");
        for (int k = 0; k < kValuesPerLine[type] && count > 0; k++, count--, index += type_size) {
            const uint8_t* p = data_ptr + index;
            switch (type) {
                case TYPE_BYTE: {
                    uint8_t value = *p;
                    if (camera_metadata_enum_snprint(tag, value, enum_name, sizeof(enum_name)) == 0) {
                        dprintf(fd, "%s ", enum_name);
                    } else {
                        dprintf(fd, "%hhu ", value);
                    }
                    break;
                }
                case TYPE_INT32: {
                    int32_t value = readValue<int32_t>(p);
                    if (camera_metadata_enum_snprint(tag, static_cast<uint32_t>(value), enum_name,
                                                     sizeof(enum_name)) == 0) {
                        dprintf(fd, "%s ", enum_name);
                    } else {
                        dprintf(fd, "%" PRId32 " ", value);
                    }
                    break;
                }
                case TYPE_FLOAT:
                    dprintf(fd, "%0.8f ", static_cast<double>(readValue<float>(p)));
                    break;
                case TYPE_INT64:
                    dprintf(fd, "%" PRId64 " ", readValue<int64_t>(p));
                    break;
                case TYPE_DOUBLE:
                    dprintf(fd, "%0.8f ", readValue<double>(p));
                    break;
                case TYPE_RATIONAL:
                    dprintf(fd, "(%d / %d) ", readValue<int32_t>(p), readValue<int32_t>(p + 4));
                    break;
                default:
                    dprintf(fd, "??? ");
            }
        }
        dprintf(fd, "]\n");
    }
}

}  // namespace

extern "C" {

void dump_camera_metadata(const camera_metadata_t* metadata, int fd, int verbosity) {
    dump_indented_camera_metadata(metadata, fd, verbosity, 0);
}

void dump_indented_camera_metadata(const camera_metadata_t* metadata, int fd, int verbosity,
                                   int indentation) {
    if (metadata == nullptr) {
        dprintf(fd, "%*sDumping camera metadata array: Not allocated\n", indentation, "");
        return;
    }
    dprintf(fd,
            "%*sDumping camera metadata array: %" PRIu32 " / %" PRIu32 " entries, %" PRIu32
            " / %" PRIu32 " bytes of extra data.\n",
            indentation, "", metadata->entry_count, metadata->entry_capacity, metadata->data_count,
            metadata->data_capacity);
    dprintf(fd, "%*sVersion: %d, Flags: %08x\n", indentation + 2, "", metadata->version,
            metadata->flags);

    const camera_metadata_buffer_entry_t* entry = entries(metadata);
    for (uint32_t i = 0; i < metadata->entry_count; i++, entry++) {
        const char* tag_section = get_local_camera_metadata_section_name(entry->tag, metadata);
        if (tag_section == nullptr) tag_section = "unknownSection";
        const char* tag_name = get_local_camera_metadata_tag_name(entry->tag, metadata);
        if (tag_name == nullptr) tag_name = "unknownTag";
        const char* type_name =
            entry->type < NUM_TYPES ? camera_metadata_type_names[entry->type] : "unknown";
        dprintf(fd, "%*s%s.%s (%05x): %s[%" PRIu32 "]\n", indentation + 2, "", tag_section,
                tag_name, entry->tag, type_name, entry->count);

        if (verbosity < 1 || entry->type >= NUM_TYPES) continue;

        size_t bytes = cammeta::payloadBytes(entry->type, entry->count);
        const uint8_t* data_ptr;
        if (bytes > 4) {
            if (static_cast<uint64_t>(entry->data.offset) + bytes > metadata->data_count) {
                cammeta::logError("%s: Malformed entry data offset: %" PRIu32 " (max %" PRIu32 ")",
                                  __FUNCTION__, entry->data.offset, metadata->data_count);
                continue;
            }
            data_ptr = dataArea(metadata) + entry->data.offset;
        } else {
            data_ptr = entry->data.value;
        }
        int count = static_cast<int>(entry->count);
        if (verbosity < 2 && count > 16) count = 16;
        printData(fd, data_ptr, entry->tag, entry->type, count, indentation);
    }
}

}  // extern "C"
