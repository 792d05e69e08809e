#include "utils/Env.h"

#include <dlfcn.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <mutex>

namespace android {
namespace vantu {

void EnvCondition::signal() {
    mGeneration.fetch_add(1, std::memory_order_acq_rel);
    mCond.notify_one();
}

void EnvCondition::broadcast() {
    mGeneration.fetch_add(1, std::memory_order_acq_rel);
    mCond.notify_all();
}

status_t EnvCondition::waitRelativeLocked(WaitLock& lock, nsecs_t reltime) {
    return Env::Default()->waitRelative(*this, lock, reltime);
}

std::string devicePath(const char* path) {
    std::string root = Env::Default()->deviceRoot();
    if (path == nullptr) return root;
    while (!root.empty() && root.back() == '/') root.pop_back();
    if (path[0] == '/') return root + path;
    return root + "/" + path;
}

namespace {

class PosixEnv : public Env {
public:
    int64_t wallSeconds() override { return static_cast<int64_t>(time(nullptr)); }

    nsecs_t monotonicNs() override {
        struct timespec ts;
        clock_gettime(CLOCK_MONOTONIC, &ts);
        return static_cast<nsecs_t>(ts.tv_sec) * 1000000000LL + ts.tv_nsec;
    }

    void sleepNs(nsecs_t ns) override {
        if (ns <= 0) return;
        struct timespec ts;
        ts.tv_sec = ns / 1000000000LL;
        ts.tv_nsec = ns % 1000000000LL;
        while (nanosleep(&ts, &ts) != 0) {
        }
    }

    status_t waitRelative(EnvCondition& cond, WaitLock& lock, nsecs_t reltime) override {
        const uint64_t start = cond.generation();
        // condition_variable_any waits on the steady (monotonic) clock.
        cond.native().wait_for(lock, std::chrono::nanoseconds(reltime > 0 ? reltime : 0),
                               [&] { return cond.generation() != start; });
        return cond.generation() != start ? OK : TIMED_OUT;
    }

    std::string deviceRoot() override { return "/"; }

    pid_t processId() override { return getpid(); }
    pid_t threadId() override { return static_cast<pid_t>(syscall(SYS_gettid)); }
};

}  // namespace

Env* NewPosixEnv() {
    return new PosixEnv();
}

Env* Env::Default() {
    // A host platform (the Linux stand-ins) exports this entry to give the library a virtual
    // clock and a temporary device root; a phone has no such symbol and runs on the real
    // environment. The environment is chosen once and lives for the process.
    static Env* const env = [] {
        using Provider = Env* (*)();
        auto provider = reinterpret_cast<Provider>(dlsym(RTLD_DEFAULT, kHostEnvSymbol));
        Env* hostEnv = provider != nullptr ? provider() : nullptr;
        return hostEnv != nullptr ? hostEnv : NewPosixEnv();
    }();
    return env;
}

}  // namespace vantu
}  // namespace android
