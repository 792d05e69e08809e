/*
 * The host camera provider's vendor tags: the table of the library's tags, descriptors built
 * from names through the same vendor tag operations a HAL offers, and their installation.
 */
#include <camera_metadata_hidden.h>
#include <hostctl/VendorTags.h>
#include <stdio.h>
#include <system/camera_metadata.h>

#include <map>
#include <mutex>

namespace hostctl {

namespace {

struct TableEntry {
    uint32_t tag;
    std::string section;
    std::string name;
    int type;
};

// vendor_tag_ops over a table, as a HAL module presents its tags; `ops` comes first so that
// the callbacks can find the table from the pointer they are given.
struct TableOps {
    vendor_tag_ops_t ops;
    const std::vector<TableEntry>* entries;
};

const TableEntry* findEntry(const vendor_tag_ops_t* v, uint32_t tag) {
    const TableOps* table = reinterpret_cast<const TableOps*>(v);
    for (const TableEntry& e : *table->entries) {
        if (e.tag == tag) return &e;
    }
    return nullptr;
}

int tableTagCount(const vendor_tag_ops_t* v) {
    return static_cast<int>(reinterpret_cast<const TableOps*>(v)->entries->size());
}

void tableAllTags(const vendor_tag_ops_t* v, uint32_t* tagArray) {
    for (const TableEntry& e : *reinterpret_cast<const TableOps*>(v)->entries) *tagArray++ = e.tag;
}

const char* tableSectionName(const vendor_tag_ops_t* v, uint32_t tag) {
    const TableEntry* e = findEntry(v, tag);
    return e != nullptr ? e->section.c_str() : nullptr;
}

const char* tableTagName(const vendor_tag_ops_t* v, uint32_t tag) {
    const TableEntry* e = findEntry(v, tag);
    return e != nullptr ? e->name.c_str() : nullptr;
}

int tableTagType(const vendor_tag_ops_t* v, uint32_t tag) {
    const TableEntry* e = findEntry(v, tag);
    return e != nullptr ? e->type : -1;
}

// The descriptors hostctl registered in the cache, so that one id can be replaced (the
// platform's cache refuses a second descriptor for an id).
std::mutex gCacheLock;
std::map<uint64_t, android::sp<android::VendorTagDescriptor>> gCacheEntries;

void setError(std::string* error, const std::string& text) {
    if (error != nullptr) *error = text;
}

// The vendor tag descriptor a packet of `vendorId` resolves through, as the library finds it.
android::sp<android::VendorTagDescriptor> descriptorFor(uint64_t vendorId) {
    android::sp<android::VendorTagDescriptor> desc =
        android::VendorTagDescriptor::getGlobalVendorTagDescriptor();
    if (desc == nullptr || desc->getTagCount() <= 0) {
        android::sp<android::VendorTagDescriptorCache> cache =
            android::VendorTagDescriptorCache::getGlobalVendorTagCache();
        desc.clear();
        if (cache != nullptr) cache->getVendorTagDescriptor(vendorId, &desc);
    }
    return desc;
}

}  // namespace

const std::vector<VendorTag>& libraryVendorTags() {
    static const std::vector<VendorTag> kTags = {
        // Client identity, written into the session parameters around stream configuration.
        {"com.vantu.packageName", TYPE_BYTE},
        {"com.vantu.activityName", TYPE_BYTE},
        {"com.vantu.fwkApiLevel", TYPE_INT32},
        // Folding state, in the session parameters and every request.
        {"com.vantu.device.state", TYPE_INT64},
        {"com.vantu.fwkBeauty", TYPE_INT32},
        // Only its presence in the session parameters counts.
        {"com.vantu.is.sdk.camera.package", TYPE_BYTE},
        {"com.vantu.zumio.init", TYPE_BYTE},
        {"com.vantu.zumio.json.info", TYPE_BYTE},
        // Result bytes the frame number is printed into.
        {"com.vantu.aps.result.data", TYPE_BYTE},
        {"com.vantu.caller.package.name", TYPE_BYTE},
        {"com.vantu.control.torch.intensity", TYPE_INT32},
        {"com.vantu.CTP.query.ALL", TYPE_INT32},
        {"com.vantu.CTP.hotspot.voltage", TYPE_INT32},
    };
    return kTags;
}

const VendorTag* findLibraryVendorTag(const std::string& name) {
    for (const VendorTag& t : libraryVendorTags()) {
        if (t.name == name) return &t;
    }
    return nullptr;
}

android::sp<android::VendorTagDescriptor> makeVendorTagDescriptor(const std::vector<VendorTag>& tags,
                                                                  std::string* error) {
    std::vector<TableEntry> entries;
    std::vector<std::string> sections;  // in order of first appearance
    std::map<std::string, uint32_t> nextIndex;
    for (const VendorTag& t : tags) {
        size_t dot = t.name.rfind('.');
        if (dot == std::string::npos || dot == 0 || dot + 1 == t.name.size()) {
            setError(error, "vendor tag \"" + t.name + "\" has no section or no tag name");
            return nullptr;
        }
        if (t.type < 0 || t.type >= NUM_TYPES) {
            setError(error, "vendor tag \"" + t.name + "\" has an unknown type");
            return nullptr;
        }
        std::string section = t.name.substr(0, dot);
        std::string name = t.name.substr(dot + 1);
        size_t sectionNumber = 0;
        while (sectionNumber < sections.size() && sections[sectionNumber] != section) {
            sectionNumber++;
        }
        if (sectionNumber == sections.size()) sections.push_back(section);
        for (const TableEntry& e : entries) {
            if (e.section == section && e.name == name) {
                setError(error, "vendor tag \"" + t.name + "\" is listed twice");
                return nullptr;
            }
        }
        uint32_t tag =
            ((VENDOR_SECTION + static_cast<uint32_t>(sectionNumber)) << 16) | nextIndex[section]++;
        entries.push_back({tag, section, name, t.type});
    }

    TableOps table = {
        {tableTagCount, tableAllTags, tableSectionName, tableTagName, tableTagType, {}}, &entries};
    android::sp<android::VendorTagDescriptor> desc;
    if (android::VendorTagDescriptor::createDescriptorFromOps(&table.ops, desc) != android::OK) {
        setError(error, "the vendor tag descriptor could not be built");
        return nullptr;
    }
    return desc;
}

bool registerVendorTagsInCache(uint64_t vendorId,
                               const android::sp<android::VendorTagDescriptor>& desc) {
    if (desc == nullptr) return false;
    std::lock_guard<std::mutex> lock(gCacheLock);
    gCacheEntries[vendorId] = desc;
    // A fresh cache each time, since the platform's cache takes an id only once.
    android::sp<android::VendorTagDescriptorCache> cache = new android::VendorTagDescriptorCache();
    for (const auto& entry : gCacheEntries) {
        if (cache->addVendorDescriptor(entry.first, entry.second) != android::OK) return false;
    }
    return android::VendorTagDescriptorCache::setAsGlobalVendorTagCache(cache) == android::OK;
}

bool setGlobalVendorTags(const android::sp<android::VendorTagDescriptor>& desc) {
    return android::VendorTagDescriptor::setAsGlobalVendorTagDescriptor(desc) == android::OK;
}

bool installVendorTags(const std::vector<VendorTag>& tags, uint64_t vendorId, bool inCache,
                       bool global, std::string* error) {
    android::sp<android::VendorTagDescriptor> desc = makeVendorTagDescriptor(tags, error);
    if (desc == nullptr) return false;
    if (inCache && !registerVendorTagsInCache(vendorId, desc)) {
        setError(error, "the vendor tag cache could not be set");
        return false;
    }
    if (global && !setGlobalVendorTags(desc)) {
        setError(error, "the global vendor tag descriptor could not be set");
        return false;
    }
    return true;
}

void clearVendorTags() {
    std::lock_guard<std::mutex> lock(gCacheLock);
    gCacheEntries.clear();
    android::VendorTagDescriptor::clearGlobalVendorTagDescriptor();
    android::VendorTagDescriptorCache::clearGlobalVendorTagCache();
}

void setMetadataVendorId(android::CameraMetadata* metadata, uint64_t vendorId) {
    if (metadata == nullptr) return;
    camera_metadata_t* raw = metadata->release();
    if (raw == nullptr) raw = allocate_camera_metadata(1, 0);
    set_camera_metadata_vendor_id(raw, vendorId);
    metadata->acquire(raw);
}

bool lookupTag(const std::string& name, uint64_t vendorId, uint32_t* tag, int* type) {
    if (tag == nullptr) return false;
    uint32_t found = 0;
    if (android::CameraMetadata::getTagFromName(name.c_str(), nullptr, &found) == android::OK) {
        *tag = found;
        if (type != nullptr) *type = get_camera_metadata_tag_type(found);
        return true;
    }
    android::sp<android::VendorTagDescriptor> desc = descriptorFor(vendorId);
    if (desc == nullptr ||
        android::CameraMetadata::getTagFromName(name.c_str(), desc.get(), &found) != android::OK ||
        found < CAMERA_METADATA_VENDOR_TAG_BOUNDARY) {
        return false;
    }
    *tag = found;
    if (type != nullptr) *type = desc->getTagType(found);
    return true;
}

std::string tagName(uint32_t tag, uint64_t vendorId) {
    const char* section = get_local_camera_metadata_section_name_vendor_id(tag, vendorId);
    const char* name = get_local_camera_metadata_tag_name_vendor_id(tag, vendorId);
    if (section == nullptr || name == nullptr) {
        char text[16];
        snprintf(text, sizeof(text), "0x%08x", tag);
        return text;
    }
    return std::string(section) + "." + name;
}

int tagType(uint32_t tag, uint64_t vendorId) {
    return get_local_camera_metadata_tag_type_vendor_id(tag, vendorId);
}

}  // namespace hostctl
