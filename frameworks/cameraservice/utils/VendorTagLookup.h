/*
 * Resolution of the library's vendor tags ("com.vantu....") by name at run time, and the writer
 * of the client-identity tags of the session parameters.
 *
 * The camera server normally sets no global vendor tag descriptor; it registers each provider's
 * tags in the vendor tag cache under the provider's vendor id. A name is therefore looked up in
 * the global descriptor when one with tags exists, and otherwise in the cache's descriptor for
 * the vendor id of the connected provider.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H
#define VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H

#include <stddef.h>
#include <stdint.h>

namespace android {

class CameraMetadata;

namespace vantu {

// Resolves `name` to its tag id in *tag. False when no descriptor knows it.
bool findVendorTag(const char* name, uint64_t vendorId, uint32_t* tag);

// Writes (`add`) the entry `name` = `count` values of `type` at `data` into `metadata`, or erases
// it (`add` false; `data` and `count` unused). A tag no descriptor knows is skipped with a debug
// line; a failed write or erase is logged as an error. `caller` names the operation in the lines.
void writeVendorTag(CameraMetadata& metadata, const char* caller, const char* name, uint8_t type,
                    const void* data, size_t count, uint64_t vendorId, bool add);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H
