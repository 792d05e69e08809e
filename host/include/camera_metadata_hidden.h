/*
 * Private part of the camera metadata library (Android 13's
 * system/media/private/camera/include/camera_metadata_hidden.h): how the camera service tells the
 * library where vendor tags are described, and the vendor id a packet carries.
 */
#ifndef SYSTEM_MEDIA_PRIVATE_INCLUDE_CAMERA_METADATA_HIDDEN_H
#define SYSTEM_MEDIA_PRIVATE_INCLUDE_CAMERA_METADATA_HIDDEN_H

#include <system/camera_metadata.h>
#include <system/camera_vendor_tags.h>

#ifdef __cplusplus
extern "C" {
#endif

// Results of vendor tag queries that found nothing.
#define VENDOR_SECTION_NAME_ERR NULL
#define VENDOR_TAG_NAME_ERR NULL
#define VENDOR_TAG_COUNT_ERR (-1)
#define VENDOR_TAG_TYPE_ERR (-1)

// Sets the process-wide vendor tag operations (NULL clears them). The table must outlive its use.
ANDROID_API
int set_camera_metadata_vendor_ops(const vendor_tag_ops_t* query_ops);

// Sets the process-wide vendor tag cache operations, used for packets that carry a vendor id.
ANDROID_API
int set_camera_metadata_vendor_cache_ops(const struct vendor_tag_cache_ops* query_cache_ops);

ANDROID_API
void set_camera_metadata_vendor_id(camera_metadata_t* meta, metadata_vendor_id_t id);

// CAMERA_METADATA_INVALID_VENDOR_ID for NULL.
ANDROID_API
metadata_vendor_id_t get_camera_metadata_vendor_id(const camera_metadata_t* meta);

ANDROID_API
int get_local_camera_metadata_tag_type_vendor_id(uint32_t tag, metadata_vendor_id_t id);

ANDROID_API
const char* get_local_camera_metadata_section_name_vendor_id(uint32_t tag, metadata_vendor_id_t id);

ANDROID_API
const char* get_local_camera_metadata_tag_name_vendor_id(uint32_t tag, metadata_vendor_id_t id);

#ifdef __cplusplus
}
#endif

#endif  // SYSTEM_MEDIA_PRIVATE_INCLUDE_CAMERA_METADATA_HIDDEN_H
