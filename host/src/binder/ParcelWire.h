/*
 * Wire constants of the kernel binder's parcel format shared by the Parcel sources.
 */
#ifndef HOST_BINDER_PARCEL_WIRE_H
#define HOST_BINDER_PARCEL_WIRE_H

#include <binder/IBinder.h>
#include <stddef.h>
#include <stdint.h>

namespace android {
namespace parcelwire {

// Every item of a parcel is padded to 4 bytes.
inline constexpr size_t padSize(size_t s) {
    return (s + 3) & ~static_cast<size_t>(3);
}

// Header word of an RPC header written by system-partition code.
constexpr int32_t kHeader = static_cast<int32_t>(B_PACK_CHARS('S', 'Y', 'S', 'T'));
// Set in the strict-mode word of every RPC header.
constexpr int32_t kStrictModePenaltyGather = static_cast<int32_t>(1u << 31);

// The kernel's flat_binder_object on a 64-bit build: type, flags, binder/handle, cookie.
constexpr size_t kFlatBinderObjectSize = 24;
constexpr uint32_t kBinderTypeBinder = B_PACK_CHARS('s', 'b', '*', 0x85);
constexpr uint32_t kBinderTypeHandle = B_PACK_CHARS('s', 'h', '*', 0x85);
constexpr uint32_t kFlatBinderFlagAcceptsFds = 0x100;
// SCHED_NORMAL at nice 19: the scheduling bits every binder carries unless background
// scheduling is disabled.
constexpr uint32_t kDefaultSchedBits = 19;
// Stability of a binder written by system code (Stability::Level::SYSTEM); 0 for null.
constexpr int32_t kStabilitySystem = 0x0c;

// A flat_binder_object as laid out on a 64-bit kernel.
struct FlatBinderObject {
    uint32_t type;
    uint32_t flags;
    uint64_t binder;  // or the handle in its low 32 bits
    uint64_t cookie;
};
static_assert(sizeof(FlatBinderObject) == kFlatBinderObjectSize,
              "flat_binder_object is 24 bytes on a 64-bit kernel");

enum BlobType : int32_t {
    BLOB_INPLACE = 0,
    BLOB_ASHMEM_IMMUTABLE = 1,
    BLOB_ASHMEM_MUTABLE = 2,
};

}  // namespace parcelwire
}  // namespace android

#endif  // HOST_BINDER_PARCEL_WIRE_H
