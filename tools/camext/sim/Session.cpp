#include "sim/Session.h"

#include <errno.h>
#include <unistd.h>

#include <algorithm>

#include "hostctl/HostEnv.h"
#include "hostctl/Properties.h"
#include "sim/LogSink.h"
#include "sim/Player.h"
#include "sim/Trace.h"
#include "utils/Env.h"

namespace camext {
namespace sim {

namespace {

Json propertyValue(const std::map<std::string, std::string>& props, const std::string& name) {
    auto it = props.find(name);
    return it == props.end() ? Json() : Json(it->second);
}

// Adds what changed between `run.propertiesSeen` and now to the step's property diff.
void accountProperties(StepRun& run) {
    const auto now = hostctl::properties();
    std::vector<std::string> names;
    for (const auto& p : run.propertiesSeen) names.push_back(p.first);
    for (const auto& p : now) names.push_back(p.first);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    for (const auto& name : names) {
        Json before = propertyValue(run.propertiesSeen, name);
        Json after = propertyValue(now, name);
        if (before == after) continue;
        bool merged = false;
        for (auto& c : run.propertyChanges.items()) {
            if (c["name"].asString() == name) {
                c.set("after", after);
                merged = true;
            }
        }
        if (!merged) {
            run.propertyChanges.push(
                Json::object({{"name", name}, {"before", before}, {"after", after}}));
        }
    }
    run.propertiesSeen = now;
}

void collect(Session& session, StepRun& run) {
    for (auto& line : LogSink::take()) run.log.push_back(std::move(line));
    collectEffects(session, run);
    accountProperties(run);
}

Json stringList(const std::vector<std::string>& v) {
    Json a = Json::array();
    for (const auto& s : v) a.push(s);
    return a;
}

}  // namespace

Session::Session(const Scenario& scenario, const RunOptions& options, int fd)
    : mScenario(scenario), mOptions(options), mFd(fd) {}

Session::~Session() {
    hostctl::setScheduler(nullptr);
}

nsecs_t Session::now() const {
    return android::vantu::Env::Default()->monotonicNs();
}

void Session::send(const Json& record) {
    std::string line = record.dump() + "\n";
    const char* p = line.data();
    size_t left = line.size();
    while (left > 0) {
        ssize_t n = write(mFd, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;
        p += n;
        left -= static_cast<size_t>(n);
    }
}

int Session::play() {
    mThread = std::this_thread::get_id();
    LogSink::install();
    hostctl::useVirtualTime(mScenario.device.wallSeconds, mScenario.device.monotonicNs);
    mStart = now();
    send(Json::object({{"type", "scenario"},
                       {"file", mScenario.file},
                       {"name", mScenario.name},
                       {"pid", static_cast<int>(getpid())},
                       {"library", mOptions.libPath}}));
    if (!mOptions.tracePath.empty()) startTraceCapture();
    mHost = makeHost(*this);
    std::string error;
    if (!setUpDevice(*this, &error) || !loadLibrary(*this, &error)) {
        Json log = Json::array();
        for (const auto& l : LogSink::take()) log.push(LogSink::toJson(l));
        send(Json::object({{"type", "fatal"}, {"message", error}, {"log", log}}));
        return 2;
    }
    hostctl::setScheduler([this](nsecs_t deadline) { return fireDue(deadline); });

    for (const auto& step : mScenario.steps) runStep(step, 0);

    Json pending = Json::array();
    int neverRan = 0;
    std::sort(mPending.begin(), mPending.end(),
              [](const Pending& a, const Pending& b) { return a.seq < b.seq; });
    for (const auto& p : mPending) {
        const bool expects = p.step->expect.size() > 0;
        if (expects) ++neverRan;
        pending.push(Json::object({{"path", p.step->path}, {"expects", expects}}));
    }
    send(Json::object(
        {{"type", "end"}, {"pending", pending}, {"never_ran_with_expectations", neverRan}}));
    hostctl::setScheduler(nullptr);
    return mFailedSteps > 0 || neverRan > 0 ? 1 : 0;
}

Json Session::beginRecord(const Step& step, int depth) const {
    return Json::object({{"type", "begin"},
                         {"path", step.path},
                         {"action", step.action},
                         {"title", stepTitle(step)},
                         {"depth", depth},
                         {"at_ms", static_cast<double>(now() - mStart) / 1e6},
                         {"note", step.note},
                         {"track", traceTrack(step)}});
}

void Session::runStep(const Step& step, int depth) {
    StepRun* outer = mCurrent;
    if (outer) collect(*this, *outer);
    StepRun run(step);
    run.propertiesSeen = hostctl::properties();
    mCurrent = &run;
    const int outerDepth = mDepth;
    mDepth = depth;
    send(beginRecord(step, depth));
    applyCaller(*this, step.caller);

    ActionFn action = findAction(step.action);
    if (action) {
        action(*this, run);
    } else {
        run.problem = "the simulator cannot play \"" + step.action + "\" in this build";
    }

    collect(*this, run);
    const auto verdicts = checkExpectations(step.expect, run, hostctl::properties());
    bool ok = run.problem.empty();
    Json expect = Json::array();
    for (const auto& v : verdicts) {
        ok = ok && v.ok;
        expect.push(Json::object(
            {{"key", v.key}, {"ok", v.ok}, {"expected", v.expected}, {"actual", v.actual}}));
    }
    if (!ok) ++mFailedSteps;

    Json record = beginRecord(step, depth);
    record.set("type", "step");
    record.set("calls", stringList(run.calls));
    if (!mOptions.tracePath.empty()) addTraceFields(run, mStart, &record);
    if (run.hasVerdict) {
        record.set("verdict", Json::object({{"call", run.verdictCall}, {"value", run.verdict}}));
    }
    if (!run.problem.empty()) record.set("problem", run.problem);
    Json changes =
        Json::object({{"metadata", run.metadataChanges}, {"properties", run.propertyChanges}});
    if (!run.streams.isNull()) changes.set("streams", run.streams);
    record.set("changes", changes);
    record.set("effects", run.effects);
    Json log = Json::array();
    for (const auto& l : run.log) log.push(LogSink::toJson(l));
    record.set("log", log);
    record.set("expect", expect);
    record.set("ok", ok);
    send(record);

    mCurrent = outer;
    mDepth = outerDepth;
    if (outer) {
        outer->propertiesSeen = hostctl::properties();
        applyCaller(*this, outer->step.caller);
    }
    if (depth == 0) {
        while (fireDue(now())) {
        }
        std::vector<std::function<void()>> later;
        later.swap(mAfterStep);
        for (auto& fn : later) fn();
    }
}

void Session::runNested(const Step& step) {
    runStep(step, mDepth + 1);
}

void Session::schedule(const Step& step, int64_t afterMs) {
    mPending.push_back({now() + afterMs * 1000000LL, mSeq++, &step});
}

bool Session::fireDue(nsecs_t deadline) {
    // Scheduled steps play on the scenario's thread only: a library thread that sleeps (a
    // sensor callback, say) just lets its time pass.
    if (std::this_thread::get_id() != mThread || mPending.empty()) return false;
    auto it =
        std::min_element(mPending.begin(), mPending.end(), [](const Pending& a, const Pending& b) {
            return a.due != b.due ? a.due < b.due : a.seq < b.seq;
        });
    if (it->due > deadline) return false;
    Pending p = *it;
    mPending.erase(it);
    hostctl::advanceTimeTo(p.due);
    runStep(*p.step, mCurrent ? mDepth + 1 : 0);
    return true;
}

void Session::advanceTo(nsecs_t deadline) {
    while (fireDue(deadline)) {
    }
    hostctl::advanceTimeTo(deadline);
}

int playScenario(const Scenario& scenario, const RunOptions& options, int fd) {
    Session session(scenario, options, fd);
    return session.play();
}

}  // namespace sim
}  // namespace camext
