/*
 * json-c as the library sees it, whichever copy the build has: the current layout
 * (<json-c/json.h>, json-c 0.13 and later, as Debian ships it) or the older copy that device
 * trees carry as "libjson", which exports <json.h> and has no json_util_get_last_err.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_JSONC_H
#define VANTU_CAMERASERVICE_UTILS_JSONC_H

#if __has_include(<json-c/json.h>)
#include <json-c/json.h>
#elif __has_include(<json.h>)
#include <json.h>
#else
#error \
    "json-c headers not found: the build needs json-c (<json-c/json.h> or <json.h>); on a device tree add its libjson module to the system partition, see docs/device-integration.md"
#endif

// json_util_get_last_err arrived in json-c 0.13 (version number 0x000d00).
#if defined(JSON_C_VERSION_NUM) && JSON_C_VERSION_NUM >= 0x000d00
#define VANTU_JSONC_HAS_LAST_ERR 1
#else
#define VANTU_JSONC_HAS_LAST_ERR 0
#endif

namespace android {
namespace vantu {

// json-c's message about its last failure, or null when the copy in the build keeps none.
inline const char* jsonLastError() {
#if VANTU_JSONC_HAS_LAST_ERR
    return json_util_get_last_err();
#else
    return nullptr;
#endif
}

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_JSONC_H
