// The scenario process: plays one scenario against the loaded library and sends its records to
// the report.
#pragma once

#include "sim/Runner.h"
#include "sim/Scenario.h"

namespace camext {
namespace sim {

// Plays `scenario` in this process, writing one JSON record per line to `fd`. Returns the exit
// status: 0 every expectation held, 1 one failed, 2 the device or library could not be set up.
int playScenario(const Scenario& scenario, const RunOptions& options, int fd);

// Checks tag names and values for the parser against the host's metadata tables.
TagChecker tagChecker();

}  // namespace sim
}  // namespace camext
