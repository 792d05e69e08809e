/*
 * Tag names and types of the camera metadata library: built-in tags from the tag tables, vendor
 * tags through the process-wide vendor tag operations or, for a packet that carries a vendor id,
 * through the vendor tag cache operations.
 */
#include <camera_metadata_hidden.h>
#include <stdio.h>
#include <string.h>
#include <system/camera_metadata.h>

#include <atomic>

#include "camera_metadata_internal.h"

namespace {

// Installed and cleared by the camera service while request and result threads look tags up.
std::atomic<const vendor_tag_ops_t*> gVendorTagOps{nullptr};
std::atomic<const vendor_tag_cache_ops*> gVendorCacheOps{nullptr};

bool isVendorTag(uint32_t tag) {
    return (tag >> 16) >= VENDOR_SECTION;
}

const tag_info_t* builtInTag(uint32_t tag) {
    uint32_t section = tag >> 16;
    if (section >= ANDROID_SECTION_COUNT || tag >= camera_metadata_section_bounds[section][1]) {
        return nullptr;
    }
    return &camera_metadata_tag_info[section][tag & 0xFFFF];
}

}  // namespace

extern "C" {

const char* get_local_camera_metadata_section_name_vendor_id(uint32_t tag, metadata_vendor_id_t id) {
    if (isVendorTag(tag)) {
        const vendor_tag_cache_ops* cache = gVendorCacheOps.load(std::memory_order_acquire);
        if (cache != nullptr && id != CAMERA_METADATA_INVALID_VENDOR_ID) {
            return cache->get_section_name(tag, id);
        }
        const vendor_tag_ops_t* ops = gVendorTagOps.load(std::memory_order_acquire);
        return ops != nullptr ? ops->get_section_name(ops, tag) : nullptr;
    }
    uint32_t section = tag >> 16;
    return section < ANDROID_SECTION_COUNT ? camera_metadata_section_names[section] : nullptr;
}

const char* get_local_camera_metadata_tag_name_vendor_id(uint32_t tag, metadata_vendor_id_t id) {
    if (isVendorTag(tag)) {
        const vendor_tag_cache_ops* cache = gVendorCacheOps.load(std::memory_order_acquire);
        if (cache != nullptr && id != CAMERA_METADATA_INVALID_VENDOR_ID) {
            return cache->get_tag_name(tag, id);
        }
        const vendor_tag_ops_t* ops = gVendorTagOps.load(std::memory_order_acquire);
        return ops != nullptr ? ops->get_tag_name(ops, tag) : nullptr;
    }
    const tag_info_t* info = builtInTag(tag);
    return info != nullptr ? info->tag_name : nullptr;
}

int get_local_camera_metadata_tag_type_vendor_id(uint32_t tag, metadata_vendor_id_t id) {
    if (isVendorTag(tag)) {
        const vendor_tag_cache_ops* cache = gVendorCacheOps.load(std::memory_order_acquire);
        if (cache != nullptr && id != CAMERA_METADATA_INVALID_VENDOR_ID) {
            return cache->get_tag_type(tag, id);
        }
        const vendor_tag_ops_t* ops = gVendorTagOps.load(std::memory_order_acquire);
        return ops != nullptr ? ops->get_tag_type(ops, tag) : -1;
    }
    const tag_info_t* info = builtInTag(tag);
    return info != nullptr ? info->tag_type : -1;
}

const char* get_local_camera_metadata_section_name(uint32_t tag, const camera_metadata_t* meta) {
    return get_local_camera_metadata_section_name_vendor_id(tag,
                                                            get_camera_metadata_vendor_id(meta));
}

const char* get_local_camera_metadata_tag_name(uint32_t tag, const camera_metadata_t* meta) {
    return get_local_camera_metadata_tag_name_vendor_id(tag, get_camera_metadata_vendor_id(meta));
}

int get_local_camera_metadata_tag_type(uint32_t tag, const camera_metadata_t* meta) {
    return get_local_camera_metadata_tag_type_vendor_id(tag, get_camera_metadata_vendor_id(meta));
}

const char* get_camera_metadata_section_name(uint32_t tag) {
    return get_local_camera_metadata_section_name(tag, nullptr);
}

const char* get_camera_metadata_tag_name(uint32_t tag) {
    return get_local_camera_metadata_tag_name(tag, nullptr);
}

int get_camera_metadata_tag_type(uint32_t tag) {
    return get_local_camera_metadata_tag_type(tag, nullptr);
}

int set_camera_metadata_vendor_tag_ops(const vendor_tag_query_ops_t* /*query_ops*/) {
    // Superseded by set_camera_metadata_vendor_ops; kept so old callers link.
    return 1;
}

int set_camera_metadata_vendor_ops(const vendor_tag_ops_t* query_ops) {
    gVendorTagOps.store(query_ops, std::memory_order_release);
    return 0;
}

int set_camera_metadata_vendor_cache_ops(const struct vendor_tag_cache_ops* query_cache_ops) {
    gVendorCacheOps.store(query_cache_ops, std::memory_order_release);
    return 0;
}

const int32_t* get_camera_metadata_permission_needed(uint32_t* tag_count) {
    if (tag_count == nullptr) return nullptr;
    *tag_count = camera_metadata_permission_needed_count;
    return camera_metadata_permission_needed;
}

int camera_metadata_enum_snprint(uint32_t tag, uint32_t value, char* dst, size_t size) {
    for (size_t i = 0; i < camera_metadata_enum_name_count; ++i) {
        const camera_metadata_enum_name_t& e = camera_metadata_enum_names[i];
        if (e.tag == tag && static_cast<uint32_t>(e.value) == value) {
            if (dst != nullptr && size > 0) snprintf(dst, size, "%s", e.name);
            return 0;
        }
    }
    if (dst != nullptr && size > 0) snprintf(dst, size, "%s", "error: not an enum");
    return -1;
}

int camera_metadata_enum_value(uint32_t tag, const char* name, size_t size, uint32_t* value) {
    if (name == nullptr || value == nullptr) return -1;
    for (size_t i = 0; i < camera_metadata_enum_name_count; ++i) {
        const camera_metadata_enum_name_t& e = camera_metadata_enum_names[i];
        if (e.tag == tag && strlen(e.name) == size && strncmp(e.name, name, size) == 0) {
            *value = static_cast<uint32_t>(e.value);
            return 0;
        }
    }
    return -1;
}

}  // extern "C"
