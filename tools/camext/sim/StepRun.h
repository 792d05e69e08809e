// What one step leaves behind while it plays: the hooks it drove, the main call's verdict, what
// the library changed and the side effects, for the expectations and the report.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "sim/Json.h"
#include "sim/LogSink.h"
#include "sim/Scenario.h"
#include "utils/Env.h"

namespace camext {
namespace sim {

struct StepRun {
    explicit StepRun(const Step& s) : step(s) {}

    const Step& step;
    // Hook calls in the order driven ("beforeConnect(\"0\", \"com.app/.Main\", false) = 0").
    std::vector<std::string> calls;
    // The step's main call and its result (see the format's "return").
    std::string verdictCall;
    bool hasVerdict = false;
    Json verdict;
    // The action could not be played as written (e.g. "close" of a camera nobody opened).
    std::string problem;

    // Changed metadata entries: [{"tag", "before", "after"}]; properties: [{"name", ...}].
    Json metadataChanges = Json::array();
    Json propertyChanges = Json::array();
    // Stream ids before the library and as they reached the hardware configuration.
    Json streams;
    // Side effects by kind: "motor", "torch_status", "aon_callbacks", "client_events",
    // "meta_buffers",
    // "services": {name: [...]}, each a list in the order they happened.
    Json effects = Json::object();
    std::vector<LogLine> log;

    // Lookups the expectations use; each returns the values of an entry, or null when absent.
    std::function<Json(const std::string& tag)> metadataEntry;
    std::function<Json(const std::string& tag)> halSessionEntry;
    Json halStreams;  // the ids that reached the hardware configuration, or null
    // Reads the reply parcel as the given list of shapes ({"int32": n}, ...); null without reply.
    std::function<Json(const Json& shapes)> readReply;
    // The text of a file under the device root, or null when it cannot be read as a file.
    std::function<Json(const std::string& devicePath)> fileText;

    // Properties as last seen, for the diff of what this step changed.
    std::map<std::string, std::string> propertiesSeen;

    // When each call returned (the library's monotonic clock), for the trace.
    std::vector<nsecs_t> callTimes;

    void call(std::string text) {
        calls.push_back(std::move(text));
        callTimes.push_back(android::vantu::monotonicNs());
    }
    void setVerdict(const std::string& callName, Json value) {
        verdictCall = callName;
        hasVerdict = true;
        verdict = std::move(value);
    }
    // Appends one side effect of `kind` ("motor", ...), or of service `kind` under "services".
    void effect(const std::string& kind, Json value);
    void serviceCall(const std::string& service, Json value);
};

// One checked expectation: {"key", "ok", "expected", "actual"} and for lists of named things
// (properties, metadata) one entry per name.
struct Verdict {
    std::string key;
    bool ok;
    Json expected;
    Json actual;
};

// Checks the step's "expect" against what happened. Compares only; computes no policy.
std::vector<Verdict> checkExpectations(const Json& expect, const StepRun& run,
                                       const std::map<std::string, std::string>& properties);

// True when two metadata values are the same entry (numbers compared with float precision;
// a string stands for its bytes and a terminating zero).
bool metadataValuesMatch(const Json& expected, const Json& actual);
// A value as an array of numbers: 3 -> [3], "ab" -> [97, 98, 0].
Json canonicalMetadataValue(const Json& value);

}  // namespace sim
}  // namespace camext
