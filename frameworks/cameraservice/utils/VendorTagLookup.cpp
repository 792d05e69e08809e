#include "utils/VendorTagLookup.h"

#include <camera/CameraMetadata.h>
#include <camera/VendorTagDescriptor.h>

#include "utils/MetadataEntries.h"
#include "utils/VantuLog.h"

namespace android {
namespace vantu {

bool findVendorTag(const char* name, uint64_t vendorId, uint32_t* tag) {
    sp<VendorTagDescriptor> descriptor = VendorTagDescriptor::getGlobalVendorTagDescriptor();
    if (descriptor == nullptr || descriptor->getTagCount() <= 0) {
        descriptor.clear();
        sp<VendorTagDescriptorCache> cache = VendorTagDescriptorCache::getGlobalVendorTagCache();
        if (cache != nullptr) cache->getVendorTagDescriptor(vendorId, &descriptor);
    }
    return CameraMetadata::getTagFromName(name, descriptor.get(), tag) == OK;
}

void writeVendorTag(CameraMetadata& metadata, const char* caller, const char* name, uint8_t type,
                    const void* data, size_t count, uint64_t vendorId, bool add) {
    uint32_t tag = 0;
    if (!findVendorTag(name, vendorId, &tag)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: Unknown tag %s, ignoring", caller, name);
        return;
    }
    if (!add) {
        const status_t res = metadata.erase(tag);
        if (res != OK) EXT_LOG(0, "%s: metadata erase fail! res = %d", caller, res);
        // The write before the configuration left one entry; an app's duplicates went with it.
        if (res == OK) eraseEntries(metadata, tag);
        return;
    }
    eraseEntries(metadata, tag);
    camera_metadata_ro_entry entry = {};
    entry.tag = tag;
    entry.type = type;
    entry.count = count;
    entry.data.u8 = static_cast<const uint8_t*>(data);
    const status_t res = metadata.update(entry);
    // The tag name stands where the operation's name is expected and the reverse; log readers
    // match the line as it has always been written.
    if (res != OK) EXT_LOG(0, "%s: metadata %s update fail! res = %d", name, caller, res);
}

}  // namespace vantu
}  // namespace android
