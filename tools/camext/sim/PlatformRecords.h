// Reads what the platform fakes recorded (service calls, motor messages, calls on the binders a
// scenario handed out) since the last look, and files it as side effects of the current step.
#pragma once

#include <stddef.h>

#include <map>
#include <string>

#include "sim/StepRun.h"

namespace camext {
namespace sim {

class PlatformRecords {
public:
    // Starts from what the fakes hold now (nothing before belongs to a step).
    void skipExisting();
    void collect(StepRun& run);

private:
    size_t mServiceCalls = 0;
    size_t mMotorMessages = 0;
    std::map<std::string, size_t> mBinderCalls;
};

// The always-on camera callback's calls by code: 1 "onOpened", 2 "onClosed", 3 "onError(n)",
// 4 "onHEDetected(n)"; `arg` is the first int32 after the interface token, if any.
std::string aonCallbackName(uint32_t code, bool hasArg, int32_t arg);

}  // namespace sim
}  // namespace camext
