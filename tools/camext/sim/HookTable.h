// The operations of the hook interface as a scenario's "hook" step names them: each one's
// parameters that a scenario supplies, in the contract's order. Host objects (clients, the
// camera service, listeners, stream sets, capture states) are the simulator's and not listed.
#pragma once

#include <string>
#include <vector>

#include "sim/Json.h"

namespace camext {
namespace sim {

enum class ArgKind {
    String,    // a camera id, package or name
    CameraId,  // an integer camera id, written as "1" or 1
    Bool,
    Int,    // 32-bit
    Int64,  // long, size_t, uint64_t
    Float,
    Metadata,  // object tag -> value
    Sizes,     // [[width, height], ...]
    Binder,    // the name of a scenario binder, or null
    Parcel,    // parcel items as in "transact"
};

struct HookParam {
    const char* name;
    ArgKind kind;
    bool inOut;  // a reference the hook may change; its final value is reported
};

struct HookSpec {
    const char* name;
    std::vector<HookParam> params;
};

// Every operation, in slot order.
const std::vector<HookSpec>& hookSpecs();
const HookSpec* findHook(const std::string& name);

// Checks `args` (an array in parameter order or an object by name) against the hook's
// parameters; returns false with the path and reason of the first fault.
bool checkHookArgs(const HookSpec& hookSpec, const Json& args, std::string* subPath,
                   std::string* why);
// The argument for parameter `index`: from the array by position or the object by name; null
// when omitted.
const Json& hookArg(const HookSpec& hookSpec, const Json& args, size_t index);

}  // namespace sim
}  // namespace camext
