// One scenario being played: the step loop, virtual time with its scheduled steps, and the
// records sent to the report. The library side (device, hooks, host objects) lives in Host.
#pragma once

#include <stdint.h>
#include <utils/Timers.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "sim/Runner.h"
#include "sim/Scenario.h"
#include "sim/StepRun.h"

namespace camext {
namespace sim {

struct Host;
class Session;

// Plays one action; the table of actions lives in Actions.cpp.
using ActionFn = void (*)(Session& session, StepRun& run);
ActionFn findAction(const std::string& name);

// Host side, implemented with the platform stand-ins.
std::shared_ptr<Host> makeHost(Session& session);
// Device set-up: properties, root, files, config, vendor tags, services, cameras.
bool setUpDevice(Session& session, std::string* error);
// dlopen, getExtFactoryImpl, getCameraServiceExt.
bool loadLibrary(Session& session, std::string* error);
// Makes `caller` the binder caller of what follows.
void applyCaller(Session& session, const Caller& caller);
// Moves what the platform fakes recorded since the last call into `run`.
void collectEffects(Session& session, StepRun& run);

class Session {
public:
    Session(const Scenario& scenario, const RunOptions& options, int fd);
    ~Session();

    int play();

    const Scenario& scenario() const { return mScenario; }
    const RunOptions& options() const { return mOptions; }
    Host& host() { return *mHost; }

    // The step being played (the innermost one while a nested step runs).
    StepRun* current() { return mCurrent; }
    // Plays `step` now, inside the current step (scheduled steps, close sequences).
    void runNested(const Step& step);
    // Queues a scheduled step `afterMs` of virtual time from now.
    void schedule(const Step& step, int64_t afterMs);
    // Runs scheduled steps due up to `deadline`, then moves the clocks there.
    void advanceTo(nsecs_t deadline);
    // Virtual monotonic time now.
    nsecs_t now() const;
    // Runs `fn` once the current top-level step has finished (objects that must outlive the
    // library call that released them).
    void afterStep(std::function<void()> fn) { mAfterStep.push_back(std::move(fn)); }

    void send(const Json& record);

private:
    struct Pending {
        nsecs_t due;
        uint64_t seq;
        const Step* step;
    };

    void runStep(const Step& step, int depth);
    bool fireDue(nsecs_t deadline);
    Json beginRecord(const Step& step, int depth) const;

    const Scenario& mScenario;
    const RunOptions& mOptions;
    int mFd;
    std::shared_ptr<Host> mHost;
    StepRun* mCurrent = nullptr;
    int mDepth = 0;
    nsecs_t mStart = 0;
    uint64_t mSeq = 0;
    std::vector<Pending> mPending;
    std::vector<std::function<void()>> mAfterStep;
    std::thread::id mThread;
    int mFailedSteps = 0;
};

// A one-line title of a step for the timeline ("open camera 0 for com.app/.Main").
std::string stepTitle(const Step& step);

}  // namespace sim
}  // namespace camext
