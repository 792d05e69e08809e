// Host binding of the library's environment seam: a switchable clock (real or virtual) and a
// device root that tests and the simulator point at a temporary folder.
#include "hostctl/HostEnv.h"

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <mutex>

#include "utils/Env.h"

namespace {

using android::vantu::Env;
using android::vantu::EnvCondition;
using android::vantu::WaitLock;

struct State {
    std::mutex lock;
    bool virtualTime = false;
    nsecs_t monotonic = 0;
    nsecs_t wallAtStart = 0;       // wall clock (ns) when virtual time began
    nsecs_t monotonicAtStart = 0;  // monotonic clock when virtual time began
    nsecs_t waited = 0;
    std::string root = "/";
    hostctl::Scheduler scheduler;
    // getpid/gettid as the library sees them; 0 means the real value.
    pid_t pid = 0;
    pid_t tid = 0;
};

// A thread's own identity, ahead of the process-wide one (0: none).
thread_local pid_t tThreadPid = 0;
thread_local pid_t tThreadTid = 0;

State& state() {
    static State* s = new State();
    return *s;
}

nsecs_t realMonotonic() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<nsecs_t>(ts.tv_sec) * 1000000000LL + ts.tv_nsec;
}

// Runs due work up to `deadline` and returns whether the scheduler ran anything.
bool runDue(nsecs_t deadline) {
    hostctl::Scheduler scheduler;
    {
        std::lock_guard<std::mutex> g(state().lock);
        scheduler = state().scheduler;
    }
    return scheduler && scheduler(deadline);
}

void advanceTo(nsecs_t t) {
    std::lock_guard<std::mutex> g(state().lock);
    if (state().virtualTime && t > state().monotonic) state().monotonic = t;
}

class HostEnv : public Env {
public:
    int64_t wallSeconds() override {
        std::lock_guard<std::mutex> g(state().lock);
        if (!state().virtualTime) return static_cast<int64_t>(time(nullptr));
        nsecs_t wall = state().wallAtStart + (state().monotonic - state().monotonicAtStart);
        return wall / 1000000000LL;
    }

    nsecs_t monotonicNs() override {
        std::lock_guard<std::mutex> g(state().lock);
        return state().virtualTime ? state().monotonic : realMonotonic();
    }

    void sleepNs(nsecs_t ns) override {
        if (!hostctl::isVirtualTime()) {
            if (ns > 0) {
                struct timespec ts = {static_cast<time_t>(ns / 1000000000LL),
                                      static_cast<long>(ns % 1000000000LL)};
                while (nanosleep(&ts, &ts) != 0) {
                }
            }
            return;
        }
        if (ns < 0) ns = 0;
        const nsecs_t deadline = monotonicNs() + ns;
        while (runDue(deadline)) {
        }
        advanceTo(deadline);
        addWaited(ns);
    }

    android::status_t waitRelative(EnvCondition& cond, WaitLock& lock, nsecs_t reltime) override {
        if (reltime < 0) reltime = 0;
        const uint64_t start = cond.generation();
        if (!hostctl::isVirtualTime()) {
            cond.native().wait_for(lock, std::chrono::nanoseconds(reltime),
                                   [&] { return cond.generation() != start; });
            return cond.generation() != start ? android::OK : android::TIMED_OUT;
        }
        const nsecs_t begin = monotonicNs();
        const nsecs_t deadline = begin + reltime;
        lock.unlock();
        bool signalled = cond.generation() != start;
        while (!signalled && runDue(deadline)) {
            signalled = cond.generation() != start;
        }
        if (!signalled) advanceTo(deadline);
        addWaited(monotonicNs() - begin);
        lock.lock();
        return signalled ? android::OK : android::TIMED_OUT;
    }

    std::string deviceRoot() override {
        std::lock_guard<std::mutex> g(state().lock);
        return state().root;
    }

    pid_t processId() override {
        if (tThreadPid != 0) return tThreadPid;
        std::lock_guard<std::mutex> g(state().lock);
        return state().pid != 0 ? state().pid : getpid();
    }

    pid_t threadId() override {
        if (tThreadTid != 0) return tThreadTid;
        std::lock_guard<std::mutex> g(state().lock);
        return state().tid != 0 ? state().tid : static_cast<pid_t>(syscall(SYS_gettid));
    }

private:
    static void addWaited(nsecs_t ns) {
        std::lock_guard<std::mutex> g(state().lock);
        state().waited += ns;
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) Env* android_vantu_host_env() {
    static HostEnv* env = new HostEnv();
    return env;
}

namespace hostctl {

void setDeviceRoot(const std::string& root) {
    std::lock_guard<std::mutex> g(state().lock);
    state().root = root.empty() ? "/" : root;
}

std::string deviceRoot() {
    std::lock_guard<std::mutex> g(state().lock);
    return state().root;
}

void useRealTime() {
    std::lock_guard<std::mutex> g(state().lock);
    state().virtualTime = false;
}

void useVirtualTime(int64_t wallSeconds, nsecs_t monotonicNs) {
    std::lock_guard<std::mutex> g(state().lock);
    state().virtualTime = true;
    state().monotonic = monotonicNs;
    state().monotonicAtStart = monotonicNs;
    state().wallAtStart = wallSeconds * 1000000000LL;
    state().waited = 0;
}

bool isVirtualTime() {
    std::lock_guard<std::mutex> g(state().lock);
    return state().virtualTime;
}

void advanceTime(nsecs_t ns) {
    std::lock_guard<std::mutex> g(state().lock);
    if (state().virtualTime && ns > 0) state().monotonic += ns;
}

void advanceTimeTo(nsecs_t monotonicNs) {
    advanceTo(monotonicNs);
}

void setScheduler(Scheduler scheduler) {
    std::lock_guard<std::mutex> g(state().lock);
    state().scheduler = std::move(scheduler);
}

void setProcessIds(pid_t pid, pid_t tid) {
    std::lock_guard<std::mutex> g(state().lock);
    state().pid = pid;
    state().tid = tid;
}

void setThisThreadIds(pid_t pid, pid_t tid) {
    tThreadPid = pid;
    tThreadTid = tid;
}

nsecs_t virtualTimeWaited() {
    std::lock_guard<std::mutex> g(state().lock);
    return state().waited;
}

}  // namespace hostctl
