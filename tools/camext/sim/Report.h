// The report of a run: a readable timeline, or with --json one JSON record per step. The
// scenario process sends its records here (one JSON text per line); this side only renders.
#pragma once

#include <stdio.h>

#include <string>
#include <vector>

#include "sim/Json.h"
#include "sim/Scenario.h"

namespace camext {
namespace sim {

class Report {
public:
    Report(FILE* out, bool json) : mOut(out), mJson(json) {}

    // The file could not be read or is malformed.
    void malformed(const std::string& file, const std::vector<ParseError>& errors);
    // A record sent by the scenario process ("scenario", "begin", "step", "fatal", "end").
    void record(const std::string& file, const Json& record);
    // The scenario process died before it finished (`step`: the step it was in, or empty).
    void crashed(const std::string& file, const std::string& step, const std::string& what);
    // The file's outcome: 0 all held, 1 a failure, 2 malformed.
    void fileDone(const std::string& file, int status, int steps, int failedSteps);

private:
    void renderScenario(const Json& r);
    void renderBegin(const Json& r);
    void renderStep(const Json& r);
    void renderEnd(const Json& r);
    void emitJson(const std::string& file, Json r);
    void line(int depth, const std::string& text);

    struct Open {
        std::string path;
        bool interrupted;  // a scheduled step printed its block inside this one
    };

    FILE* mOut;
    bool mJson;
    int mPid = 0;
    std::vector<Open> mOpen;
};

// Side by side columns of expected and actual for a failed expectation, one row per item.
std::vector<std::string> sideBySide(const Json& expected, const Json& actual, size_t width);
// A value as a person reads it: strings bare when `bare`, else JSON.
std::string show(const Json& v, bool bare = false);

}  // namespace sim
}  // namespace camext
