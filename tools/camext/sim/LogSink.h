// Captures the lines the library writes through liblog while a scenario plays, in the order
// written, until a step takes them.
#pragma once

#include <string>
#include <vector>

#include "sim/Json.h"

namespace camext {
namespace sim {

struct LogLine {
    int priority;  // android_LogPriority
    std::string tag;
    std::string text;
};

class LogSink {
public:
    // Routes liblog to this process's sink (from now on, for the life of the process).
    static void install();
    // The lines written since the last take.
    static std::vector<LogLine> take();
    // A line as logcat's brief form prints it: "E/VantuCameraService( 1234): text".
    static std::string brief(const LogLine& line, int pid);
    // {"level": "E", "tag": ..., "text": ...}
    static Json toJson(const LogLine& line);
};

}  // namespace sim
}  // namespace camext
