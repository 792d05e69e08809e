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

// Erases every entry of the vendor tag `tag`, so that the write that follows adds the only one.
// Every writer of a vendor tag calls it first: a packet may hold an entry of another type (from a
// provider that declares the tag differently), which updated in place would take as many bytes as
// its own type needs from the library's value, or several entries of the tag (validation does not
// refuse them), of which an update or an erase reaches only the first. False when an entry stays
// (a locked packet).
bool eraseVendorEntries(CameraMetadata& metadata, uint32_t tag);

// Writes (`add`) the entry `name` = `count` values of `type` at `data` into `metadata`, or erases
// it (`add` false; `data` and `count` unused). A tag no descriptor knows is skipped with a debug
// line; a failed write or erase is logged as an error. `caller` names the operation in the lines.
void writeVendorTag(CameraMetadata& metadata, const char* caller, const char* name, uint8_t type,
                    const void* data, size_t count, uint64_t vendorId, bool add);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_VENDORTAGLOOKUP_H
