// The actions a step may name, each played as the camera server or the device would.
#pragma once

#include "sim/Session.h"
#include "sim/StepRun.h"

namespace camext {
namespace sim {

void actOpen(Session& session, StepRun& run);
void actClose(Session& session, StepRun& run);
void actCharacteristics(Session& session, StepRun& run);
void actTransact(Session& session, StepRun& run);
void actConfigure(Session& session, StepRun& run);
void actRequest(Session& session, StepRun& run);
void actResult(Session& session, StepRun& run);
void actHook(Session& session, StepRun& run);
void actBinderDied(Session& session, StepRun& run);
void actSensorEvent(Session& session, StepRun& run);

// Files the records of the host camera objects (client events, listener, camera service,
// battery statistics) as side effects of `run`.
void fileHostRecords(Session& session, StepRun& run);

}  // namespace sim
}  // namespace camext
