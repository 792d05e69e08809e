/*
 * Every key of the feature configuration that the extension reads, as data: its getter's type,
 * the caller's default and the feature that reads it. Code may spell a key at its call site,
 * but a key missing here is a key the configuration tools do not know.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_CONFIGKEYS_H
#define VANTU_CAMERASERVICE_UTILS_CONFIGKEYS_H

#include <stddef.h>
#include <stdint.h>

#include <string_view>

#include "utils/JsonC.h"

namespace android {
namespace vantu {

// The getter a key is read with.
enum class ConfigType : uint8_t {
    Bool,
    Int,
    Double,
    String,
    BoolArray,
    IntArray,
    DoubleArray,
    StringArray,
};

struct ConfigKey {
    const char* name;
    ConfigType type;
    // The caller's constant default as JSON text ("true", "0", "1920"); nullptr when the caller
    // passes its current value (so an absent key changes nothing) and for lists, which are
    // simply not appended to.
    const char* defaultValue;
    // The feature that reads the key.
    const char* usedBy;
};

struct ConfigKeyTable {
    const ConfigKey* keys;
    size_t count;

    const ConfigKey* begin() const { return keys; }
    const ConfigKey* end() const { return keys + count; }
    size_t size() const { return count; }
};

// Every key the extension reads, grouped by type and feature.
ConfigKeyTable configKeys();
// The key named exactly `name` (case-sensitive), or nullptr.
const ConfigKey* findConfigKey(std::string_view name);

// "bool", "int", "double", "string", "bool[]", "int[]", "double[]", "string[]".
const char* configTypeName(ConfigType type);
// The getter's name: "getBool" ... "getStringArray".
const char* configGetterName(ConfigType type);
bool isArrayType(ConfigType type);
// The JSON type the getter accepts for the value (json_type_array for lists).
json_type configValueJsonType(ConfigType type);
// The JSON type of a list's elements; for scalars, the value's type.
json_type configElementJsonType(ConfigType type);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_CONFIGKEYS_H
