/*
 * Vendor tag descriptors as Android 13's libcamera_client declares them: the parcelable
 * description of the tags of the vendor sections (names, sections, types), the per-provider
 * cache the camera service keeps, and the process-wide instances the camera metadata library
 * consults.
 */
#ifndef VENDOR_TAG_DESCRIPTOR_H

#include <binder/Parcelable.h>
#include <stdint.h>
#include <system/camera_vendor_tags.h>
#include <utils/KeyedVector.h>
#include <utils/RefBase.h>
#include <utils/SortedVector.h>
#include <utils/String8.h>
#include <utils/Vector.h>

#include <unordered_map>

namespace android {

class VendorTagDescriptor;

namespace hardware {
namespace camera2 {
namespace params {

// Parcelable container of vendor tag definitions, as enumerated by a camera HAL.
class VendorTagDescriptor : public Parcelable {
public:
    virtual ~VendorTagDescriptor();

    VendorTagDescriptor();
    VendorTagDescriptor(const VendorTagDescriptor& src);
    VendorTagDescriptor& operator=(const VendorTagDescriptor& rhs);

    void copyFrom(const VendorTagDescriptor& src);

    // Number of tags; -1 (VENDOR_TAG_COUNT_ERR) when there are none.
    int getTagCount() const;

    // Fills `tagArray` (getTagCount() entries) with the tag ids in ascending order.
    void getTagArray(uint32_t* tagArray) const;

    // Section name of a tag, NULL when unknown.
    const char* getSectionName(uint32_t tag) const;

    // Index of the tag's section in getAllSectionNames().
    ssize_t getSectionIndex(uint32_t tag) const;

    // Tag name within its section, NULL when unknown.
    const char* getTagName(uint32_t tag) const;

    // TYPE_* of a tag, -1 when unknown.
    int getTagType(uint32_t tag) const;

    virtual status_t writeToParcel(Parcel* parcel) const override;

    // Every section name, sorted. Valid for the life of this object or until it is refilled.
    const SortedVector<String8>* getAllSectionNames() const;

    // The id of tag `name` of section `section`; BAD_VALUE when either is unknown.
    status_t lookupTag(const String8& name, const String8& section, uint32_t* tag) const;

    void dump(int fd, int verbosity, int indentation) const;

    virtual status_t readFromParcel(const Parcel* parcel) override;

protected:
    KeyedVector<String8, KeyedVector<String8, uint32_t>*> mReverseMapping;
    KeyedVector<uint32_t, String8> mTagToNameMap;
    KeyedVector<uint32_t, uint32_t> mTagToSectionMap;  // value is an index into mSections
    KeyedVector<uint32_t, int32_t> mTagToTypeMap;
    SortedVector<String8> mSections;
    // int32_t to match Parcel::writeInt32.
    int32_t mTagCount;

    vendor_tag_ops mVendorOps;

    void clearReverseMapping();
    void addReverseMapping(const String8& section, const String8& name, uint32_t tag);
};

// The descriptors of several camera providers, keyed by each provider's vendor id.
class VendorTagDescriptorCache : public Parcelable {
public:
    VendorTagDescriptorCache() {}

    // BAD_VALUE when `id` already has a descriptor.
    int32_t addVendorDescriptor(metadata_vendor_id_t id, sp<android::VendorTagDescriptor> desc);

    // NO_ERROR and the descriptor of `id`, or NAME_NOT_FOUND.
    int32_t getVendorTagDescriptor(metadata_vendor_id_t id, sp<android::VendorTagDescriptor>* desc);

    status_t writeToParcel(Parcel* parcel) const override;
    status_t readFromParcel(const Parcel* parcel) override;

    // As the descriptor's operations, for the descriptor of `id`. An id without a descriptor
    // gives 0 tags, no names and type 0.
    int getTagCount(metadata_vendor_id_t id) const;
    void getTagArray(uint32_t* tagArray, metadata_vendor_id_t id) const;
    const char* getSectionName(uint32_t tag, metadata_vendor_id_t id) const;
    const char* getTagName(uint32_t tag, metadata_vendor_id_t id) const;
    int getTagType(uint32_t tag, metadata_vendor_id_t id) const;

    void dump(int fd, int verbosity, int indentation) const;

    const std::unordered_map<metadata_vendor_id_t, sp<android::VendorTagDescriptor>>&
    getVendorIdsAndTagDescriptors();

protected:
    std::unordered_map<metadata_vendor_id_t, sp<android::VendorTagDescriptor>> mVendorMap;
    struct vendor_tag_cache_ops mVendorCacheOps;
};

}  // namespace params
}  // namespace camera2
}  // namespace hardware

// A descriptor kept in sp<>, which can serve as the process-wide descriptor.
class VendorTagDescriptor : public ::android::hardware::camera2::params::VendorTagDescriptor,
                            public LightRefBase<VendorTagDescriptor> {
public:
    // Builds a descriptor from a HAL's operations; BAD_VALUE when they describe a tag below the
    // vendor boundary, a tag without name or section, or an unknown type.
    static status_t createDescriptorFromOps(const vendor_tag_ops_t* vOps,
                                            sp<VendorTagDescriptor>& descriptor);

    // Makes `desc` the descriptor the camera metadata library consults for vendor tags (NULL
    // clears it).
    static status_t setAsGlobalVendorTagDescriptor(const sp<VendorTagDescriptor>& desc);

    // NULL when none is set (the normal case inside the camera service).
    static sp<VendorTagDescriptor> getGlobalVendorTagDescriptor();

    static void clearGlobalVendorTagDescriptor();
};

// A cache kept in sp<>, which can serve as the process-wide cache.
class VendorTagDescriptorCache
    : public ::android::hardware::camera2::params::VendorTagDescriptorCache,
      public LightRefBase<VendorTagDescriptorCache> {
public:
    // Makes `cache` the cache the camera metadata library consults for packets that carry a
    // vendor id (NULL clears it).
    static status_t setAsGlobalVendorTagCache(const sp<VendorTagDescriptorCache>& cache);

    static sp<VendorTagDescriptorCache> getGlobalVendorTagCache();

    static void clearGlobalVendorTagCache();

    // Whether the process-wide cache has a descriptor for `id`.
    static bool isVendorCachePresent(metadata_vendor_id_t id);
};

}  // namespace android

#define VENDOR_TAG_DESCRIPTOR_H
#endif  // VENDOR_TAG_DESCRIPTOR_H
