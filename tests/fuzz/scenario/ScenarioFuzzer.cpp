/*
 * camext's scenario reader: the input is a scenario file. It is read and validated as
 * `camext run` does before it plays anything (every key of the device and of every step is
 * checked there); then what a valid scenario hands the player is converted as the player would
 * convert it (camera characteristics and hook arguments into metadata, transaction parcels into
 * parcels), without playing, so nothing sleeps or loads the library.
 *
 * What must hold whatever the file says: the reader succeeds exactly when it reports no fault,
 * every fault names its reason, every step of a valid scenario names a known action, and the
 * compact text that step records travel as reads back to itself.
 */
#include <binder/Parcel.h>
#include <stddef.h>
#include <stdint.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/FuzzWorld.h"
#include "sim/Json.h"
#include "sim/MetadataJson.h"
#include "sim/ParcelJson.h"
#include "sim/Player.h"
#include "sim/Scenario.h"

namespace {

using camext::sim::Json;

bool knownAction(const std::string& action) {
    const std::vector<std::string>& names = camext::sim::actionNames();
    return std::find(names.begin(), names.end(), action) != names.end();
}

// Converts what the player would convert for one step.
void convert(const camext::sim::Step& step) {
    FUZZ_CHECK(knownAction(step.action));
    if (step.inner != nullptr) convert(*step.inner);
    std::string error;
    if (step.args.isObject() && step.args.has("parcel")) {
        android::Parcel parcel;
        camext::sim::writeParcelItems(step.args["parcel"], &parcel, &error);
    }
    if (step.action == "hook" && step.args["args"].isArray()) {
        for (const Json& arg : step.args["args"].items()) {
            if (!arg.isObject()) continue;
            android::CameraMetadata md;
            camext::sim::writeEntries(camext::sim::TagSpace{}, arg, &md, &error);
        }
    }
}

// The compact text reads back to a value with the same text.
void checkRoundTrip(const Json& value) {
    const std::string text = value.dump();
    std::string error;
    const Json back = Json::parse(text, &error);
    FUZZ_CHECK(error.empty());
    FUZZ_CHECK(back.dump() == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzzworld::useDeviceRoot();
    static const camext::sim::TagChecker tags = camext::sim::tagChecker();
    const std::string text(reinterpret_cast<const char*>(data), size);
    camext::sim::Scenario scenario;
    std::vector<camext::sim::ParseError> errors;
    const bool ok = camext::sim::parseScenario(text, fuzzworld::hostPath("scenarios/fuzz.json"),
                                               tags, &scenario, &errors);
    FUZZ_CHECK(ok == errors.empty());
    for (const auto& e : errors) FUZZ_CHECK(!e.message.empty());

    std::string syntax;
    const Json root = Json::parse(text, &syntax);
    if (syntax.empty()) checkRoundTrip(root);
    if (!ok) return 0;

    for (const camext::sim::CameraSpec& camera : scenario.device.cameras) {
        android::CameraMetadata md;
        std::string error;
        camext::sim::writeEntries(camext::sim::TagSpace{}, camera.characteristics, &md, &error);
    }
    for (const camext::sim::Step& step : scenario.steps) convert(step);
    return 0;
}
