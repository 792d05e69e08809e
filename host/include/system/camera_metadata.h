/*
 * The camera metadata library (libcamera_metadata) as Android 13 declares it: a packet of
 * tagged, typed entries in one contiguous allocation that the camera service, the HALs and the
 * apps exchange.
 *
 * Packet layout (all native-endian): a 48-byte header, then entry_capacity 16-byte entry records,
 * then, 8-aligned, data_capacity bytes of data. A payload of at most 4 bytes lives inside its
 * entry record; a larger one lives in the data area, each payload padded to 8 bytes. Functions
 * returning int give 0 on success and non-zero on failure; the find functions give -ENOENT when
 * the tag is absent.
 */
#ifndef SYSTEM_MEDIA_INCLUDE_ANDROID_CAMERA_METADATA_H
#define SYSTEM_MEDIA_INCLUDE_ANDROID_CAMERA_METADATA_H

#include <cutils/compiler.h>
#include <stdint.h>
#include <string.h>

#ifdef __cplusplus
extern "C" {
#endif

// Types of the entries' values.
enum {
    TYPE_BYTE = 0,      // uint8_t
    TYPE_INT32 = 1,     // int32_t
    TYPE_FLOAT = 2,     // float
    TYPE_INT64 = 3,     // int64_t
    TYPE_DOUBLE = 4,    // double
    TYPE_RATIONAL = 5,  // camera_metadata_rational_t
    NUM_TYPES
};

typedef struct camera_metadata_rational {
    int32_t numerator;
    int32_t denominator;
} camera_metadata_rational_t;

// A view of one entry; `data` points into the packet and `count` counts values, not bytes.
typedef struct camera_metadata_entry {
    size_t index;
    uint32_t tag;
    uint8_t type;
    size_t count;
    union {
        uint8_t* u8;
        int32_t* i32;
        float* f;
        int64_t* i64;
        double* d;
        camera_metadata_rational_t* r;
    } data;
} camera_metadata_entry_t;

typedef struct camera_metadata_ro_entry {
    size_t index;
    uint32_t tag;
    uint8_t type;
    size_t count;
    union {
        const uint8_t* u8;
        const int32_t* i32;
        const float* f;
        const int64_t* i64;
        const double* d;
        const camera_metadata_rational_t* r;
    } data;
} camera_metadata_ro_entry_t;

typedef struct camera_metadata camera_metadata_t;

ANDROID_API
extern const size_t camera_metadata_type_size[NUM_TYPES];

ANDROID_API
extern const char* camera_metadata_type_names[NUM_TYPES];

// Allocates a packet able to hold `entry_capacity` entries and `data_capacity` bytes of
// out-of-line data. NULL on failure. Free with free_camera_metadata.
ANDROID_API
camera_metadata_t* allocate_camera_metadata(size_t entry_capacity, size_t data_capacity);

// Alignment a packet must have in memory (8).
ANDROID_API
size_t get_camera_metadata_alignment();

// Allocates a copy of the `src_size` bytes at `src` and validates it; NULL when too small or
// malformed.
ANDROID_API
camera_metadata_t* allocate_copy_camera_metadata_checked(const camera_metadata_t* src,
                                                         size_t src_size);

// Lays out an empty packet in caller memory; NULL if `dst_size` is too small. The result must
// not be passed to free_camera_metadata.
ANDROID_API
camera_metadata_t* place_camera_metadata(void* dst, size_t dst_size, size_t entry_capacity,
                                         size_t data_capacity);

ANDROID_API
void free_camera_metadata(camera_metadata_t* metadata);

// Bytes a packet of the given capacities occupies.
ANDROID_API
size_t calculate_camera_metadata_size(size_t entry_count, size_t data_count);

// Total bytes of the packet, unused capacity included.
ANDROID_API
size_t get_camera_metadata_size(const camera_metadata_t* metadata);

// Bytes the packet would occupy without unused capacity.
ANDROID_API
size_t get_camera_metadata_compact_size(const camera_metadata_t* metadata);

ANDROID_API
size_t get_camera_metadata_entry_count(const camera_metadata_t* metadata);

ANDROID_API
size_t get_camera_metadata_entry_capacity(const camera_metadata_t* metadata);

ANDROID_API
size_t get_camera_metadata_data_count(const camera_metadata_t* metadata);

ANDROID_API
size_t get_camera_metadata_data_capacity(const camera_metadata_t* metadata);

// Copies `src` into caller memory without unused capacity; NULL if `dst_size` is too small.
ANDROID_API
camera_metadata_t* copy_camera_metadata(void* dst, size_t dst_size, const camera_metadata_t* src);

// Results of validate_camera_metadata_structure besides 0.
#define CAMERA_METADATA_VALIDATION_ERROR 1
// Well formed, but not at an aligned address: usable only as a source to copy from.
#define CAMERA_METADATA_VALIDATION_SHIFTED 2

// Checks that the packet's header and entries are consistent and, if `expected_size` is given,
// that the packet fits in that many bytes.
ANDROID_API
int validate_camera_metadata_structure(const camera_metadata_t* metadata,
                                       const size_t* expected_size);

// Appends every entry of `src` to `dst`, which must have room. Fails when both packets carry
// different vendor ids.
ANDROID_API
int append_camera_metadata(camera_metadata_t* dst, const camera_metadata_t* src);

// Allocates a compact copy of `src`; NULL for NULL.
ANDROID_API
camera_metadata_t* clone_camera_metadata(const camera_metadata_t* src);

// Out-of-line bytes that `data_count` values of `type` need: 0 when they fit in the entry.
ANDROID_API
size_t calculate_camera_metadata_entry_data_size(uint8_t type, size_t data_count);

// Adds an entry at the end; the type comes from the tag. Fails when there is no room or the
// tag is unknown.
ANDROID_API
int add_camera_metadata_entry(camera_metadata_t* dst, uint32_t tag, const void* data,
                              size_t data_count);

// Sorts the entries by tag so that finds use binary search.
ANDROID_API
int sort_camera_metadata(camera_metadata_t* dst);

ANDROID_API
int get_camera_metadata_entry(camera_metadata_t* src, size_t index, camera_metadata_entry_t* entry);

ANDROID_API
int get_camera_metadata_ro_entry(const camera_metadata_t* src, size_t index,
                                 camera_metadata_ro_entry_t* entry);

// 0 when found, -ENOENT when absent, non-zero on error.
ANDROID_API
int find_camera_metadata_entry(camera_metadata_t* src, uint32_t tag, camera_metadata_entry_t* entry);

ANDROID_API
int find_camera_metadata_ro_entry(const camera_metadata_t* src, uint32_t tag,
                                  camera_metadata_ro_entry_t* entry);

// Removes an entry, moving later entries and data down. Sort order is kept.
ANDROID_API
int delete_camera_metadata_entry(camera_metadata_t* dst, size_t index);

// Replaces the values of an entry; fails when the packet has no room for a larger payload.
// `updated_entry` (may be NULL) receives the entry as it is afterwards.
ANDROID_API
int update_camera_metadata_entry(camera_metadata_t* dst, size_t index, const void* data,
                                 size_t data_count, camera_metadata_entry_t* updated_entry);

// Deprecated query operations of early vendor tag support.
typedef struct vendor_tag_query_ops vendor_tag_query_ops_t;
struct vendor_tag_query_ops {
    const char* (*get_camera_vendor_section_name)(const vendor_tag_query_ops_t* v, uint32_t tag);
    const char* (*get_camera_vendor_tag_name)(const vendor_tag_query_ops_t* v, uint32_t tag);
    int (*get_camera_vendor_tag_type)(const vendor_tag_query_ops_t* v, uint32_t tag);
    int (*get_camera_vendor_tag_count)(const vendor_tag_query_ops_t* v);
    void (*get_camera_vendor_tags)(const vendor_tag_query_ops_t* v, uint32_t* tag_array);
};

// Deprecated: does nothing and returns 1.
ANDROID_API
int set_camera_metadata_vendor_tag_ops(const vendor_tag_query_ops_t* query_ops);

// Section name ("android.control"), tag name ("aeMode") and TYPE_* of a tag, consulting the
// global vendor tag operations for vendor tags. NULL / -1 when unknown.
ANDROID_API
const char* get_camera_metadata_section_name(uint32_t tag);

ANDROID_API
const char* get_camera_metadata_tag_name(uint32_t tag);

ANDROID_API
int get_camera_metadata_tag_type(uint32_t tag);

// As above, but vendor tags are looked up in the vendor tag cache under the vendor id of `meta`
// when it has one.
ANDROID_API
const char* get_local_camera_metadata_section_name(uint32_t tag, const camera_metadata_t* meta);

ANDROID_API
const char* get_local_camera_metadata_tag_name(uint32_t tag, const camera_metadata_t* meta);

ANDROID_API
int get_local_camera_metadata_tag_type(uint32_t tag, const camera_metadata_t* meta);

// Tags whose values only apps holding the camera permission may see.
ANDROID_API
const int32_t* get_camera_metadata_permission_needed(uint32_t* tag_count);

// Prints the packet: verbosity 0 tags only, 1 up to 16 values per entry, 2 all values.
ANDROID_API
void dump_camera_metadata(const camera_metadata_t* metadata, int fd, int verbosity);

ANDROID_API
void dump_indented_camera_metadata(const camera_metadata_t* metadata, int fd, int verbosity,
                                   int indentation);

// Longest enum value name, terminator included.
#define CAMERA_METADATA_ENUM_STRING_MAX_SIZE 29

// Writes the name of enum value `value` of `tag`; 0 on success, -1 when the tag has no enum or
// the value is out of range.
ANDROID_API
int camera_metadata_enum_snprint(uint32_t tag, uint32_t value, char* dst, size_t size);

// Finds the value of enum name `name` (its first `size` characters) of `tag`; 0 on success.
ANDROID_API
int camera_metadata_enum_value(uint32_t tag, const char* name, size_t size, uint32_t* value);

#ifdef __cplusplus
}
#endif

#include "camera_metadata_tags.h"

#ifdef __cplusplus
extern "C" {
#endif

ANDROID_API
extern unsigned int camera_metadata_section_bounds[ANDROID_SECTION_COUNT][2];

ANDROID_API
extern const char* camera_metadata_section_names[ANDROID_SECTION_COUNT];

#ifdef __cplusplus
}
#endif

#endif  // SYSTEM_MEDIA_INCLUDE_ANDROID_CAMERA_METADATA_H
