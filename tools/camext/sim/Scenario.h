// The scenario model: a device, then steps. Built by the parser, which has checked every key,
// so the player reads values without re-validating them.
#pragma once

#include <stdint.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sim/Json.h"

namespace camext {
namespace sim {

// The binder caller of a step.
struct Caller {
    int32_t uid = 10100;
    int32_t pid = 5000;
    // The host thread that makes the step's calls (the library's gettid); 0: pid + 1.
    int32_t tid = 0;
    std::vector<std::string> permissions;
};

struct CameraSpec {
    std::string id;
    std::string facing;    // "back", "front" or "external"
    Json characteristics;  // object tag -> value
};

struct Device {
    std::vector<std::pair<std::string, std::string>> properties;
    std::string propertiesFile;  // build.prop style file, resolved against the scenario's folder
    bool hasConfig = false;
    Json config;
    std::string configFile;  // resolved against the scenario's folder
    std::vector<std::pair<std::string, std::string>> files;
    bool allVendorTags = true;
    std::vector<std::string> vendorTags;
    bool vendorTagsGlobal = false;
    uint64_t vendorId = 1;
    std::vector<CameraSpec> cameras;
    Json services = Json::object();
    Json apsLibrary;  // null, "full" or {"missing": [...], "features": {...}}
    int64_t wallSeconds = 1700000000;
    int64_t monotonicNs = 1000000000LL;
};

struct Step {
    std::string path;    // "steps[3]", or "steps[3].schedule.step" for a scheduled step
    std::string action;  // "open", "hook", ...
    Json args;           // the action's value; for "hook" {"name": ..., "args": ...}
    Caller caller;       // resolved: the step's own "as" or the one before it
    std::string note;
    Json expect = Json::object();
    // "schedule": the step to run once virtual time has moved `afterMs` further.
    std::shared_ptr<Step> inner;
    int64_t afterMs = 0;
};

struct Scenario {
    std::string file;  // as given on the command line
    std::string dir;   // folder of the file, for relative paths
    std::string name;
    Device device;
    std::vector<Step> steps;
};

struct ParseError {
    std::string path;  // JSON path of the fault ("steps[3].expect.metadata"), empty for the file
    std::string message;
};

// Checks a metadata tag name ("android.control.aeMode", "com.vantu.device.state") and, unless it
// is null, a value for it; returns false with the reason when the simulator cannot write it.
using TagChecker = std::function<bool(const std::string& name, const Json& value, std::string* why)>;

// Reads and validates a scenario file. Returns false with every fault found.
bool loadScenario(const std::string& file, const TagChecker& tags, Scenario* out,
                  std::vector<ParseError>* errors);
// The same for text already read (`file` names it in messages and resolves relative paths).
bool parseScenario(const std::string& text, const std::string& file, const TagChecker& tags,
                   Scenario* out, std::vector<ParseError>* errors);

// Actions a step may name, in the order of the format's table.
const std::vector<std::string>& actionNames();

}  // namespace sim
}  // namespace camext
