#include "utils/VendorTagLookup.h"

#include <camera/CameraMetadata.h>
#include <camera/VendorTagDescriptor.h>

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

}  // namespace vantu
}  // namespace android
