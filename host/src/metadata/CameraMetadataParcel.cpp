/*
 * android::CameraMetadata: the parcel form, tag lookup by name and the removal of entries that
 * need the camera permission.
 */
#define LOG_TAG "Camera2-Metadata"

#include <binder/Parcel.h>
#include <camera/CameraMetadata.h>
#include <camera_metadata_hidden.h>
#include <log/log.h>
#include <string.h>

#include <algorithm>
#include <vector>

namespace android {

status_t CameraMetadata::readFromParcel(const Parcel& data, camera_metadata_t** out) {
    if (out != nullptr) *out = nullptr;

    int32_t blobSizeTmp = -1;
    status_t err = data.readInt32(&blobSizeTmp);
    if (err != OK) {
        ALOGE("%s: Failed to read metadata size (error %d %s)", __FUNCTION__, err, strerror(-err));
        return err;
    }
    // A zero size stands for no packet at all.
    if (blobSizeTmp == 0) return OK;

    const size_t alignment = get_camera_metadata_alignment();
    if (blobSizeTmp < 0 || static_cast<size_t>(blobSizeTmp) <= alignment) {
        ALOGE("%s: metadata blob is malformed, blobSize(%d) should be larger than alignment(%zu)",
              __FUNCTION__, blobSizeTmp, alignment);
        return BAD_VALUE;
    }
    const size_t blobSize = static_cast<size_t>(blobSizeTmp);
    const size_t metadataSize = blobSize - alignment;

    Parcel::ReadableBlob blob;
    err = data.readBlob(blobSize, &blob);
    if (err != OK) {
        ALOGE(
            "%s: Failed to read metadata blob (sized %zu). Possible insufficient space in "
            "binder buffer",
            __FUNCTION__, blobSize);
        return err;
    }

    camera_metadata_t* metadata = nullptr;
    int32_t offsetTmp = 0;
    err = data.readInt32(&offsetTmp);
    if (err != OK) {
        ALOGE("%s: Failed to read metadata offsetSize (error %d %s)", __FUNCTION__, err,
              strerror(-err));
    } else if (offsetTmp < 0 || static_cast<size_t>(offsetTmp) >= alignment) {
        ALOGE("%s: metadata offset(%d) should be less than alignment(%zu)", __FUNCTION__, offsetTmp,
              alignment);
        err = BAD_VALUE;
    } else {
        const uint8_t* start = static_cast<const uint8_t*>(blob.data()) + offsetTmp;
        // The copy is validated; a packet that fails validation counts as a malformed parcel.
        metadata = allocate_copy_camera_metadata_checked(
            reinterpret_cast<const camera_metadata_t*>(start), metadataSize);
        if (metadata == nullptr) {
            ALOGE("%s: metadata allocation and copy failed", __FUNCTION__);
            err = BAD_VALUE;
        }
    }
    blob.release();

    if (out != nullptr) {
        *out = metadata;
    } else if (metadata != nullptr) {
        free_camera_metadata(metadata);
    }
    return err;
}

status_t CameraMetadata::writeToParcel(Parcel& data, const camera_metadata_t* metadata) {
    if (metadata == nullptr) return data.writeInt32(0);

    // The blob gets one alignment's worth of slack so that the packet can start at an aligned
    // address wherever the blob itself lands.
    const size_t metadataSize = get_camera_metadata_compact_size(metadata);
    const size_t alignment = get_camera_metadata_alignment();
    const size_t blobSize = metadataSize + alignment;
    status_t res = data.writeInt32(static_cast<int32_t>(blobSize));
    if (res != OK) return res;

    size_t offset = 0;
    Parcel::WritableBlob blob;
    res = data.writeBlob(blobSize, false, &blob);
    if (res == OK) {
        uintptr_t blobStart = reinterpret_cast<uintptr_t>(blob.data());
        uintptr_t metadataStart = (blobStart + alignment - 1) & ~(alignment - 1);
        offset = metadataStart - blobStart;
        // A failed copy shows up as a malformed packet on the reading side.
        copy_camera_metadata(reinterpret_cast<void*>(metadataStart), metadataSize, metadata);
    }
    blob.release();
    if (res != OK) return res;
    return data.writeInt32(static_cast<int32_t>(offset));
}

status_t CameraMetadata::readFromParcel(const Parcel* parcel) {
    if (parcel == nullptr) {
        ALOGE("%s: parcel is null", __FUNCTION__);
        return BAD_VALUE;
    }
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    camera_metadata* buffer = nullptr;
    status_t res = CameraMetadata::readFromParcel(*parcel, &buffer);
    if (res != NO_ERROR) {
        ALOGE("%s: Failed to read from parcel. Metadata is unchanged.", __FUNCTION__);
        return res;
    }
    clear();
    mBuffer = buffer;
    return OK;
}

status_t CameraMetadata::writeToParcel(Parcel* parcel) const {
    if (parcel == nullptr) {
        ALOGE("%s: parcel is null", __FUNCTION__);
        return BAD_VALUE;
    }
    return CameraMetadata::writeToParcel(*parcel, mBuffer);
}

status_t CameraMetadata::getTagFromName(const char* name, const VendorTagDescriptor* vTags,
                                        uint32_t* tag) {
    if (name == nullptr || tag == nullptr) return BAD_VALUE;

    size_t nameLength = strlen(name);
    const SortedVector<String8>* vendorSections = nullptr;
    size_t vendorSectionCount = 0;
    if (vTags != nullptr) {
        vendorSections = vTags->getAllSectionNames();
        vendorSectionCount = vendorSections->size();
    }

    // The section is the longest built-in or vendor section name the name begins with, so that
    // "android.flash.info.available" falls in "android.flash.info" rather than "android.flash".
    const char* section = nullptr;
    size_t sectionIndex = 0;
    size_t sectionLength = 0;
    size_t totalSectionCount = ANDROID_SECTION_COUNT + vendorSectionCount;
    for (size_t i = 0; i < totalSectionCount; ++i) {
        const char* str = (i < ANDROID_SECTION_COUNT)
                              ? camera_metadata_section_names[i]
                              : (*vendorSections)[i - ANDROID_SECTION_COUNT].c_str();
        size_t strLength = strlen(str);
        if (strncmp(name, str, strLength) == 0 &&
            (section == nullptr || sectionLength < strLength)) {
            section = str;
            sectionIndex = i;
            sectionLength = strLength;
        }
    }
    if (section == nullptr) return NAME_NOT_FOUND;

    // The character after the section is skipped unchecked: it is the '.' in any real name.
    if (sectionLength + 1 >= nameLength) return BAD_VALUE;
    const char* nameTagName = name + sectionLength + 1;

    uint32_t candidateTag = 0;
    if (sectionIndex < ANDROID_SECTION_COUNT) {
        uint32_t tagBegin = camera_metadata_section_bounds[sectionIndex][0];
        uint32_t tagEnd = camera_metadata_section_bounds[sectionIndex][1];
        for (candidateTag = tagBegin; candidateTag < tagEnd; ++candidateTag) {
            const char* tagName = get_camera_metadata_tag_name(candidateTag);
            if (tagName != nullptr && strcmp(nameTagName, tagName) == 0) break;
        }
        if (candidateTag == tagEnd) return NAME_NOT_FOUND;
    } else if (vTags != nullptr) {
        if (vTags->lookupTag(String8(nameTagName), String8(section), &candidateTag) != OK) {
            return NAME_NOT_FOUND;
        }
    }
    *tag = candidateTag;
    return OK;
}

status_t CameraMetadata::removePermissionEntries(metadata_vendor_id_t vendorId,
                                                 std::vector<int32_t>* tagsRemoved) {
    if (tagsRemoved == nullptr) return BAD_VALUE;

    std::vector<int32_t> tagsToRemove;
    sp<VendorTagDescriptor> vTags = VendorTagDescriptor::getGlobalVendorTagDescriptor();
    if (vTags == nullptr || vTags->getTagCount() <= 0) {
        sp<VendorTagDescriptorCache> cache = VendorTagDescriptorCache::getGlobalVendorTagCache();
        if (cache != nullptr) cache->getVendorTagDescriptor(vendorId, &vTags);
    }
    if (vTags != nullptr && vTags->getTagCount() > 0) {
        std::vector<uint32_t> vendorTags(vTags->getTagCount());
        vTags->getTagArray(vendorTags.data());
        tagsToRemove.insert(tagsToRemove.end(), vendorTags.begin(), vendorTags.end());
    }

    uint32_t tagCount = 0;
    const int32_t* tagsNeedingPermission = get_camera_metadata_permission_needed(&tagCount);
    if (tagsNeedingPermission != nullptr) {
        tagsToRemove.insert(tagsToRemove.end(), tagsNeedingPermission,
                            tagsNeedingPermission + tagCount);
    }

    for (int32_t t : tagsToRemove) {
        uint32_t removed = static_cast<uint32_t>(t);
        if (!exists(removed)) continue;
        status_t rc = erase(removed);
        if (rc != NO_ERROR) {
            ALOGE("%s: Failed to remove tag: %x", __FUNCTION__, removed);
            return rc;
        }
        tagsRemoved->push_back(t);
    }

    // The characteristics key list must no longer advertise what was removed.
    if (exists(ANDROID_REQUEST_AVAILABLE_CHARACTERISTICS_KEYS)) {
        std::vector<int32_t> removedSorted(*tagsRemoved);
        std::sort(removedSorted.begin(), removedSorted.end());
        camera_metadata_entry keys = find(ANDROID_REQUEST_AVAILABLE_CHARACTERISTICS_KEYS);
        std::vector<int32_t> currentKeys(keys.data.i32, keys.data.i32 + keys.count);
        std::sort(currentKeys.begin(), currentKeys.end());
        std::vector<int32_t> newKeys;
        std::set_difference(currentKeys.begin(), currentKeys.end(), removedSorted.begin(),
                            removedSorted.end(), std::back_inserter(newKeys));
        update(ANDROID_REQUEST_AVAILABLE_CHARACTERISTICS_KEYS, newKeys.data(), newKeys.size());
    }
    return NO_ERROR;
}

}  // namespace android
