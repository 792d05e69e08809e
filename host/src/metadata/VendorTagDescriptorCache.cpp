/*
 * The vendor tag descriptor cache (one descriptor per camera provider) and the process-wide
 * descriptor and cache that the camera metadata library consults through its vendor operations.
 */
#define LOG_TAG "VendorTagDescriptor"

#include <binder/Parcel.h>
#include <camera/VendorTagDescriptor.h>
#include <camera_metadata_hidden.h>
#include <inttypes.h>
#include <log/log.h>
#include <stdio.h>
#include <string.h>
#include <utils/Mutex.h>

namespace android {
namespace hardware {
namespace camera2 {
namespace params {

status_t VendorTagDescriptorCache::writeToParcel(Parcel* parcel) const {
    if (parcel == nullptr) {
        ALOGE("%s: parcel argument was NULL.", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = OK;
    if ((res = parcel->writeInt32(static_cast<int32_t>(mVendorMap.size()))) != OK) return res;
    for (const auto& iter : mVendorMap) {
        if ((res = parcel->writeUint64(iter.first)) != OK) break;
        if ((res = parcel->writeParcelable(*iter.second)) != OK) break;
    }
    return res;
}

status_t VendorTagDescriptorCache::readFromParcel(const Parcel* parcel) {
    if (parcel == nullptr) {
        ALOGE("%s: parcel argument was NULL.", __FUNCTION__);
        return BAD_VALUE;
    }
    status_t res = OK;
    int32_t vendorCount = 0;
    if ((res = parcel->readInt32(&vendorCount)) != OK) {
        ALOGE("%s: could not read vendor count from parcel", __FUNCTION__);
        return res;
    }
    if (vendorCount < 0) {
        ALOGE("%s: vendor count %d from is invalid.", __FUNCTION__, vendorCount);
        return BAD_VALUE;
    }
    for (int32_t i = 0; i < vendorCount; i++) {
        metadata_vendor_id_t id;
        if ((res = parcel->readUint64(&id)) != OK) {
            ALOGE("%s: could not read vendor id from parcel for index %d", __FUNCTION__, i);
            break;
        }
        sp<android::VendorTagDescriptor> desc = new android::VendorTagDescriptor();
        if ((res = parcel->readParcelable(desc.get())) != OK) {
            ALOGE("%s: could not read vendor tag descriptor from parcel for index %d rc = %d",
                  __FUNCTION__, i, res);
            break;
        }
        if ((res = addVendorDescriptor(id, desc)) != OK) {
            ALOGE("%s: failed to add vendor tag descriptor for index: %d ", __FUNCTION__, i);
            break;
        }
    }
    return res;
}

const std::unordered_map<metadata_vendor_id_t, sp<android::VendorTagDescriptor>>&
VendorTagDescriptorCache::getVendorIdsAndTagDescriptors() {
    return mVendorMap;
}

int VendorTagDescriptorCache::getTagCount(metadata_vendor_id_t id) const {
    auto desc = mVendorMap.find(id);
    if (desc == mVendorMap.end()) {
        ALOGE("%s: Vendor descriptor id is missing!", __func__);
        return 0;
    }
    return desc->second->getTagCount();
}

void VendorTagDescriptorCache::getTagArray(uint32_t* tagArray, metadata_vendor_id_t id) const {
    auto desc = mVendorMap.find(id);
    if (desc == mVendorMap.end()) {
        ALOGE("%s: Vendor descriptor id is missing!", __func__);
        return;
    }
    desc->second->getTagArray(tagArray);
}

const char* VendorTagDescriptorCache::getSectionName(uint32_t tag, metadata_vendor_id_t id) const {
    auto desc = mVendorMap.find(id);
    if (desc == mVendorMap.end()) {
        ALOGE("%s: Vendor descriptor id is missing!", __func__);
        return nullptr;
    }
    return desc->second->getSectionName(tag);
}

const char* VendorTagDescriptorCache::getTagName(uint32_t tag, metadata_vendor_id_t id) const {
    auto desc = mVendorMap.find(id);
    if (desc == mVendorMap.end()) {
        ALOGE("%s: Vendor descriptor id is missing!", __func__);
        return nullptr;
    }
    return desc->second->getTagName(tag);
}

int VendorTagDescriptorCache::getTagType(uint32_t tag, metadata_vendor_id_t id) const {
    auto desc = mVendorMap.find(id);
    if (desc == mVendorMap.end()) {
        ALOGE("%s: Vendor descriptor id is missing!", __func__);
        // The platform answers 0 (TYPE_BYTE) here, not -1; kept so type checks behave alike.
        return 0;
    }
    return desc->second->getTagType(tag);
}

void VendorTagDescriptorCache::dump(int fd, int verbosity, int indentation) const {
    for (const auto& desc : mVendorMap) {
        dprintf(fd, "%*sDumping vendor tag descriptors for vendor with id %" PRIu64 " \n",
                indentation, "", desc.first);
        desc.second->dump(fd, verbosity, indentation);
    }
}

int32_t VendorTagDescriptorCache::addVendorDescriptor(metadata_vendor_id_t id,
                                                      sp<android::VendorTagDescriptor> desc) {
    if (mVendorMap.find(id) != mVendorMap.end()) {
        ALOGE("%s: Vendor descriptor with same id already present!", __func__);
        return BAD_VALUE;
    }
    if (desc == nullptr) {
        ALOGE("%s: Vendor descriptor is NULL!", __func__);
        return BAD_VALUE;
    }
    mVendorMap.emplace(id, desc);
    return NO_ERROR;
}

int32_t VendorTagDescriptorCache::getVendorTagDescriptor(metadata_vendor_id_t id,
                                                         sp<android::VendorTagDescriptor>* desc) {
    auto entry = mVendorMap.find(id);
    if (entry == mVendorMap.end()) return NAME_NOT_FOUND;
    if (desc != nullptr) *desc = entry->second;
    return NO_ERROR;
}

}  // namespace params
}  // namespace camera2
}  // namespace hardware

namespace {

// The process-wide descriptor and cache, set by the camera service at start-up and read on any
// thread that handles metadata. They live for the process.
struct Globals {
    Mutex lock;
    sp<VendorTagDescriptor> descriptor;
    sp<VendorTagDescriptorCache> cache;
};

Globals& globals() {
    static Globals* g = new Globals();  // never destroyed: metadata may be touched at exit
    return *g;
}

int descriptorGetTagCount(const vendor_tag_ops_t*) {
    Mutex::Autolock al(globals().lock);
    if (globals().descriptor == nullptr) {
        ALOGE("%s: Vendor tag descriptor not initialized.", __FUNCTION__);
        return VENDOR_TAG_COUNT_ERR;
    }
    return globals().descriptor->getTagCount();
}

void descriptorGetAllTags(const vendor_tag_ops_t*, uint32_t* tagArray) {
    Mutex::Autolock al(globals().lock);
    if (globals().descriptor == nullptr) {
        ALOGE("%s: Vendor tag descriptor not initialized.", __FUNCTION__);
        return;
    }
    globals().descriptor->getTagArray(tagArray);
}

const char* descriptorGetSectionName(const vendor_tag_ops_t*, uint32_t tag) {
    Mutex::Autolock al(globals().lock);
    if (globals().descriptor == nullptr) {
        ALOGE("%s: Vendor tag descriptor not initialized.", __FUNCTION__);
        return VENDOR_SECTION_NAME_ERR;
    }
    return globals().descriptor->getSectionName(tag);
}

const char* descriptorGetTagName(const vendor_tag_ops_t*, uint32_t tag) {
    Mutex::Autolock al(globals().lock);
    if (globals().descriptor == nullptr) {
        ALOGE("%s: Vendor tag descriptor not initialized.", __FUNCTION__);
        return VENDOR_TAG_NAME_ERR;
    }
    return globals().descriptor->getTagName(tag);
}

int descriptorGetTagType(const vendor_tag_ops_t*, uint32_t tag) {
    Mutex::Autolock al(globals().lock);
    if (globals().descriptor == nullptr) {
        ALOGE("%s: Vendor tag descriptor not initialized.", __FUNCTION__);
        return VENDOR_TAG_TYPE_ERR;
    }
    return globals().descriptor->getTagType(tag);
}

int cacheGetTagCount(metadata_vendor_id_t id) {
    Mutex::Autolock al(globals().lock);
    if (globals().cache == nullptr) {
        ALOGE("%s: Vendor tag descriptor cache not initialized.", __FUNCTION__);
        return VENDOR_TAG_COUNT_ERR;
    }
    return globals().cache->getTagCount(id);
}

void cacheGetAllTags(uint32_t* tagArray, metadata_vendor_id_t id) {
    Mutex::Autolock al(globals().lock);
    if (globals().cache == nullptr) {
        ALOGE("%s: Vendor tag descriptor cache not initialized.", __FUNCTION__);
        return;
    }
    globals().cache->getTagArray(tagArray, id);
}

const char* cacheGetSectionName(uint32_t tag, metadata_vendor_id_t id) {
    Mutex::Autolock al(globals().lock);
    if (globals().cache == nullptr) {
        ALOGE("%s: Vendor tag descriptor cache not initialized.", __FUNCTION__);
        return VENDOR_SECTION_NAME_ERR;
    }
    return globals().cache->getSectionName(tag, id);
}

const char* cacheGetTagName(uint32_t tag, metadata_vendor_id_t id) {
    Mutex::Autolock al(globals().lock);
    if (globals().cache == nullptr) {
        ALOGE("%s: Vendor tag descriptor cache not initialized.", __FUNCTION__);
        return VENDOR_TAG_NAME_ERR;
    }
    return globals().cache->getTagName(tag, id);
}

int cacheGetTagType(uint32_t tag, metadata_vendor_id_t id) {
    Mutex::Autolock al(globals().lock);
    if (globals().cache == nullptr) {
        ALOGE("%s: Vendor tag descriptor cache not initialized.", __FUNCTION__);
        return VENDOR_TAG_TYPE_ERR;
    }
    return globals().cache->getTagType(tag, id);
}

// The tables handed to the metadata library are static rather than members of the installed
// object, so that a lookup racing a replacement never reads a freed table.
const vendor_tag_ops_t kDescriptorOps = {descriptorGetTagCount,    descriptorGetAllTags,
                                         descriptorGetSectionName, descriptorGetTagName,
                                         descriptorGetTagType,     {}};

const vendor_tag_cache_ops kCacheOps = {cacheGetTagCount, cacheGetAllTags, cacheGetSectionName,
                                        cacheGetTagName,  cacheGetTagType, {}};

}  // namespace

status_t VendorTagDescriptor::setAsGlobalVendorTagDescriptor(const sp<VendorTagDescriptor>& desc) {
    Mutex::Autolock al(globals().lock);
    globals().descriptor = desc;
    const vendor_tag_ops_t* opsPtr = nullptr;
    if (desc != nullptr) {
        desc->mVendorOps = kDescriptorOps;
        opsPtr = &kDescriptorOps;
    }
    status_t res = set_camera_metadata_vendor_ops(opsPtr);
    if (res != OK) {
        ALOGE("%s: Could not set vendor tag descriptor, received error %s (%d).", __FUNCTION__,
              strerror(-res), res);
    }
    return res;
}

void VendorTagDescriptor::clearGlobalVendorTagDescriptor() {
    Mutex::Autolock al(globals().lock);
    set_camera_metadata_vendor_ops(nullptr);
    globals().descriptor.clear();
}

sp<VendorTagDescriptor> VendorTagDescriptor::getGlobalVendorTagDescriptor() {
    Mutex::Autolock al(globals().lock);
    return globals().descriptor;
}

status_t VendorTagDescriptorCache::setAsGlobalVendorTagCache(
    const sp<VendorTagDescriptorCache>& cache) {
    Mutex::Autolock al(globals().lock);
    globals().cache = cache;
    const vendor_tag_cache_ops* opsPtr = nullptr;
    if (cache != nullptr) {
        cache->mVendorCacheOps = kCacheOps;
        opsPtr = &kCacheOps;
    }
    status_t res = set_camera_metadata_vendor_cache_ops(opsPtr);
    if (res != OK) {
        ALOGE("%s: Could not set vendor tag cache, received error %s (%d).", __FUNCTION__,
              strerror(-res), res);
    }
    return res;
}

void VendorTagDescriptorCache::clearGlobalVendorTagCache() {
    Mutex::Autolock al(globals().lock);
    set_camera_metadata_vendor_cache_ops(nullptr);
    globals().cache.clear();
}

sp<VendorTagDescriptorCache> VendorTagDescriptorCache::getGlobalVendorTagCache() {
    Mutex::Autolock al(globals().lock);
    return globals().cache;
}

bool VendorTagDescriptorCache::isVendorCachePresent(metadata_vendor_id_t vendorId) {
    Mutex::Autolock al(globals().lock);
    const sp<VendorTagDescriptorCache>& cache = globals().cache;
    return cache != nullptr && cache->mVendorMap.find(vendorId) != cache->mVendorMap.end();
}

}  // namespace android
