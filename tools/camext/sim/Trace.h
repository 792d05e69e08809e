/*
 * `camext run --trace FILE`: the played sessions as a Chrome JSON trace (the trace event format
 * that Perfetto's UI and chrome://tracing open). Each scenario is a process; its tracks are one
 * per camera, one for binder transactions, one for the device's other events, and one per
 * library thread for the library's atrace sections. Every hook call is a slice with its
 * arguments and verdict, side effects are instant events, and the clock is the scenario's
 * virtual time, so a wait of 300 ms shows as 300 ms.
 *
 * The scenario process adds what the trace needs to its step records (when each call returned,
 * the atrace events); the runner turns the records into the trace.
 */
#pragma once

#include <utils/Timers.h>

#include <map>
#include <string>
#include <vector>

#include "sim/Json.h"
#include "sim/StepRun.h"

namespace camext {
namespace sim {

// Scenario process: enables the camera atrace tag and keeps the library's atrace events.
void startTraceCapture();
// Adds the trace fields to a step record: "call_at_ms" (when each call returned) and "atrace"
// (the events since the last record), times in ms since `start`.
void addTraceFields(const StepRun& run, nsecs_t start, Json* record);
// The track a step belongs on: "camera <id>", "binder" or "device".
std::string traceTrack(const Step& step);

// Runner: collects the records of every scenario and writes the trace.
class TraceWriter {
public:
    void record(const Json& r);
    bool write(const std::string& path, std::string* error) const;

private:
    struct Open {
        double atMs;
        std::string track;
    };

    int trackId(const std::string& track);
    void meta(const char* what, int tid, const std::string& name);
    void step(const Json& r, const Open& open);

    Json mEvents = Json::array();
    int mPid = 0;
    std::map<std::string, int> mTracks;
    std::vector<Open> mOpen;
};

}  // namespace sim
}  // namespace camext
