/*
 * Resolution of the library's vendor tags ("com.vantu....") by name at run time.
 *
 * The camera server normally sets no global vendor tag descriptor; it registers each provider's
 * tags in the vendor tag cache under the provider's vendor id. A name is therefore looked up in
 * the global descriptor when one with tags exists, and otherwise in the cache's descriptor for
 * the vendor id of the connected provider.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H
#define VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H

#include <stdint.h>

namespace android {
namespace vantu {

// Resolves `name` to its tag id in *tag. False when no descriptor knows it.
bool findVendorTag(const char* name, uint64_t vendorId, uint32_t* tag);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H
