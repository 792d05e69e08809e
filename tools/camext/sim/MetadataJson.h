// Camera metadata as scenarios write it: entries named as in Android ("android.flash.mode") or
// by vendor name ("com.vantu.device.state"), values as arrays of numbers (a string for a byte
// tag being its bytes and a zero).
#pragma once

#include <camera/CameraMetadata.h>
#include <stdint.h>

#include <string>

#include "sim/Json.h"

namespace camext {
namespace sim {

// Where vendor tag names are looked up: the global descriptor when one is set, else the
// descriptor of this provider in the global cache.
struct TagSpace {
    uint64_t vendorId = 0;
};

// The tag id and TYPE_* of `name`; false with the reason when unknown.
bool findTag(const TagSpace& space, const std::string& name, uint32_t* tag, int* type,
             std::string* why);
// "android.flash.mode", or "0x80000003" for a tag without a name.
std::string tagName(const TagSpace& space, uint32_t tag);
// Whether `value` can be written as an entry of this type; false with the reason.
bool valueFitsType(const Json& value, int type, std::string* why);

// Writes every entry of `entries` (name -> value) into `md`.
bool writeEntries(const TagSpace& space, const Json& entries, android::CameraMetadata* md,
                  std::string* error);
// Every entry of `md` as {name: [values]}, in tag order.
Json readEntries(const TagSpace& space, const android::CameraMetadata& md);
Json readEntries(const TagSpace& space, const camera_metadata_t* md);

// The entries that differ between two readings: [{"tag", "before", "after"}], with enum names
// ("before_name", "after_name") for single enum values.
Json diffEntries(const TagSpace& space, const Json& before, const Json& after);

// A new packet carrying the provider's vendor id, as the server's request and session packets do.
android::CameraMetadata newMetadata(const TagSpace& space);

}  // namespace sim
}  // namespace camext
