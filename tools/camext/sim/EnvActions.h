// Actions on the device's environment: properties, files, clocks, scheduled steps, signals.
#pragma once

#include <string>

#include "sim/Session.h"

namespace camext {
namespace sim {

// Where device path "/data/x" (or "odm/etc/x") lives on this machine.
std::string hostPath(const Session& session, const std::string& devicePath);
bool writeDeviceFile(const Session& session, const std::string& devicePath, const std::string& text,
                     std::string* error);

void actSetProperties(Session& session, StepRun& run);
void actWriteFiles(Session& session, StepRun& run);
void actAdvanceClock(Session& session, StepRun& run);
void actSchedule(Session& session, StepRun& run);
void actSignal(Session& session, StepRun& run);

}  // namespace sim
}  // namespace camext
