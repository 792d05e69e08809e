/*
 * Duplicate members of the feature configuration: json-c keeps the last of several members with
 * one name, but configuration files were written for a reader that keeps the first. This puts
 * the first occurrence back, for sections of the root and for keys of each section.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_JSONFIRSTMEMBERS_H
#define VANTU_CAMERASERVICE_UTILS_JSONFIRSTMEMBERS_H

#include <string_view>

#include "utils/JsonC.h"

namespace android {
namespace vantu {

// `root` is json-c's reading of `text`. Where a section or a key of a section occurs more than
// once, its value in `root` is replaced by json-c's reading of the first occurrence. Text the
// scan does not follow leaves `root` as json-c read it. Returns the number of values replaced.
int keepFirstMembers(json_object* root, std::string_view text);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_JSONFIRSTMEMBERS_H
