/*
 * Control of the vendor tags the host's camera provider declares. Tests and the simulator build
 * a descriptor from tag names and types and install it as Android 13's camera service does (in
 * the vendor tag cache under the provider's vendor id) and/or as the process-wide descriptor;
 * the library only sees <camera/VendorTagDescriptor.h> and the metadata functions.
 */
#ifndef HOSTCTL_VENDORTAGS_H
#define HOSTCTL_VENDORTAGS_H

#include <camera/CameraMetadata.h>
#include <camera/VendorTagDescriptor.h>
#include <stdint.h>
#include <utils/StrongPointer.h>

#include <string>
#include <vector>

namespace hostctl {

// A vendor tag by its full name ("com.vantu.device.state") and its TYPE_* value.
struct VendorTag {
    std::string name;
    int type;
};

// Every vendor tag the extension library reads or writes, with its type.
const std::vector<VendorTag>& libraryVendorTags();

// The entry of libraryVendorTags() with that full name, or nullptr.
const VendorTag* findLibraryVendorTag(const std::string& name);

// Builds a descriptor from `tags`. Each name is split at its last '.' into section and tag
// name; sections are numbered from 0x8000 in order of first appearance and the tags of a
// section from 0 in list order, so the first tag is 0x80000000. Returns nullptr with a message
// in `error` for a name without a section or a tag part, an unknown type or a repeated name.
android::sp<android::VendorTagDescriptor> makeVendorTagDescriptor(const std::vector<VendorTag>& tags,
                                                                  std::string* error = nullptr);

// Registers `desc` in the process-wide vendor tag cache under `vendorId`, creating the cache
// when there is none and replacing a descriptor registered earlier for that id.
bool registerVendorTagsInCache(uint64_t vendorId,
                               const android::sp<android::VendorTagDescriptor>& desc);

// Makes `desc` the process-wide vendor tag descriptor.
bool setGlobalVendorTags(const android::sp<android::VendorTagDescriptor>& desc);

// Builds a descriptor from `tags` and installs it in the cache under `vendorId` (`inCache`)
// and/or as the process-wide descriptor (`global`).
bool installVendorTags(const std::vector<VendorTag>& tags, uint64_t vendorId, bool inCache,
                       bool global, std::string* error = nullptr);

// Removes the process-wide descriptor and cache.
void clearVendorTags();

// Marks `metadata` as coming from the provider `vendorId` (allocating an empty packet when it
// has none), so that its vendor tags resolve through the cache as a provider's packets do.
void setMetadataVendorId(android::CameraMetadata* metadata, uint64_t vendorId);

// Resolves a full tag name, built-in ("android.control.aeMode") or vendor: vendor names through
// the process-wide descriptor, else the cache's descriptor of `vendorId`. `type` may be null.
bool lookupTag(const std::string& name, uint64_t vendorId, uint32_t* tag, int* type);

// The full name of a tag ("android.control.aeMode", "com.vantu.device.state"), looking vendor
// tags up as a packet of `vendorId` would; "0x%08x" when unknown.
std::string tagName(uint32_t tag, uint64_t vendorId);

// TYPE_* of a tag as a packet of `vendorId` would see it, -1 when unknown.
int tagType(uint32_t tag, uint64_t vendorId);

}  // namespace hostctl

#endif  // HOSTCTL_VENDORTAGS_H
