/*
 * Vendor tag operations of the camera metadata library, as Android 13 declares them: the table
 * of callbacks through which a camera HAL (vendor_tag_ops) or the camera service's per-provider
 * cache (vendor_tag_cache_ops) describes the tags of the vendor sections.
 */
#ifndef SYSTEM_MEDIA_INCLUDE_ANDROID_CAMERA_VENDOR_TAGS_H
#define SYSTEM_MEDIA_INCLUDE_ANDROID_CAMERA_VENDOR_TAGS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Every vendor tag id is at or above this value (section 0x8000 and up).
#define CAMERA_METADATA_VENDOR_TAG_BOUNDARY 0x80000000u

// The vendor id of a metadata buffer that belongs to no camera provider.
#define CAMERA_METADATA_INVALID_VENDOR_ID UINT64_MAX

typedef uint64_t metadata_vendor_id_t;

typedef struct vendor_tag_ops vendor_tag_ops_t;

struct vendor_tag_ops {
    // Number of vendor tags, or -1 on error.
    int (*get_tag_count)(const vendor_tag_ops_t* v);
    // Fills `tag_array` (get_tag_count() entries) with every vendor tag id.
    void (*get_all_tags)(const vendor_tag_ops_t* v, uint32_t* tag_array);
    // Section name of a vendor tag ("com.vendor.section"), NULL when unknown.
    const char* (*get_section_name)(const vendor_tag_ops_t* v, uint32_t tag);
    // Tag name within its section, NULL when unknown.
    const char* (*get_tag_name)(const vendor_tag_ops_t* v, uint32_t tag);
    // TYPE_* of the tag, -1 when unknown.
    int (*get_tag_type)(const vendor_tag_ops_t* v, uint32_t tag);

    // Must be NULL.
    void* reserved[8];
};

struct vendor_tag_cache_ops {
    int (*get_tag_count)(metadata_vendor_id_t id);
    void (*get_all_tags)(uint32_t* tag_array, metadata_vendor_id_t id);
    const char* (*get_section_name)(uint32_t tag, metadata_vendor_id_t id);
    const char* (*get_tag_name)(uint32_t tag, metadata_vendor_id_t id);
    int (*get_tag_type)(uint32_t tag, metadata_vendor_id_t id);

    // Must be NULL.
    void* reserved[8];
};

#ifdef __cplusplus
}
#endif

#endif  // SYSTEM_MEDIA_INCLUDE_ANDROID_CAMERA_VENDOR_TAGS_H
