/*
 * The library's view of time and of the file system.
 *
 * Every clock read, sleep, timed wait and file path of the library goes through Env, so that a
 * host can run the library's waits in virtual time and its files under a temporary root. On a
 * phone the environment is the real one: POSIX clocks and sleeps, and the device root "/".
 */
#ifndef VANTU_CAMERASERVICE_UTILS_ENV_H
#define VANTU_CAMERASERVICE_UTILS_ENV_H

#include <stdint.h>
#include <sys/types.h>
#include <utils/Errors.h>
#include <utils/Timers.h>

#include <atomic>
#include <condition_variable>
#include <string>

namespace android {
namespace vantu {

// A lock the environment can release while it waits: anything with lock() and unlock()
// (android::Mutex, std::mutex, std::recursive_mutex) can be wrapped without copying it.
class WaitLock {
public:
    template <typename L>
    explicit WaitLock(L& lock)
        : mLock(&lock),
          mDoLock([](void* l) { static_cast<L*>(l)->lock(); }),
          mDoUnlock([](void* l) { static_cast<L*>(l)->unlock(); }) {}
    void lock() { mDoLock(mLock); }
    void unlock() { mDoUnlock(mLock); }

private:
    void* mLock;
    void (*mDoLock)(void*);
    void (*mDoUnlock)(void*);
};

// A condition variable on the monotonic clock whose timed waits run on the environment's clock.
// Each signal advances a generation count, so a virtual-time environment can tell whether the
// condition was signalled while it ran other work in place of a real wait.
class EnvCondition {
public:
    void signal();
    void broadcast();
    // Waits at most `reltime` ns for a signal, releasing `lock` meanwhile. OK or TIMED_OUT.
    template <typename L>
    status_t waitRelative(L& lock, nsecs_t reltime) {
        WaitLock wl(lock);
        return waitRelativeLocked(wl, reltime);
    }

    uint64_t generation() const { return mGeneration.load(std::memory_order_acquire); }
    std::condition_variable_any& native() { return mCond; }

private:
    status_t waitRelativeLocked(WaitLock& lock, nsecs_t reltime);

    std::condition_variable_any mCond;
    std::atomic<uint64_t> mGeneration{0};
};

class Env {
public:
    virtual ~Env() = default;

    // Seconds since the epoch (wall clock, can jump).
    virtual int64_t wallSeconds() = 0;
    // Monotonic clock in nanoseconds.
    virtual nsecs_t monotonicNs() = 0;
    // Sleeps for `ns` nanoseconds of this environment's time.
    virtual void sleepNs(nsecs_t ns) = 0;
    // Releases `lock`, waits until `cond` is signalled or `reltime` ns pass, re-acquires `lock`.
    // Returns OK when signalled, TIMED_OUT otherwise. Like a real condition variable, a wait may
    // also end early without a signal; callers re-check their predicate.
    virtual status_t waitRelative(EnvCondition& cond, WaitLock& lock, nsecs_t reltime) = 0;
    // The device root every library path is resolved against: "/" on a phone.
    virtual std::string deviceRoot() = 0;
    // The process and the calling thread as the kernel knows them (getpid, gettid).
    virtual pid_t processId() = 0;
    virtual pid_t threadId() = 0;

    // The environment of this process.
    static Env* Default();
};

// The real environment: POSIX clocks, real sleeps and waits, root "/".
Env* NewPosixEnv();

// C symbol through which a host platform may provide the process environment
// (signature: android::vantu::Env* (void)). Absent on a phone.
constexpr const char kHostEnvSymbol[] = "android_vantu_host_env";

// Shorthands for the library code.
inline int64_t wallSeconds() {
    return Env::Default()->wallSeconds();
}
inline nsecs_t monotonicNs() {
    return Env::Default()->monotonicNs();
}
inline void sleepMs(int64_t ms) {
    Env::Default()->sleepNs(ms * 1000000LL);
}
inline void sleepUs(int64_t us) {
    Env::Default()->sleepNs(us * 1000LL);
}
inline pid_t processId() {
    return Env::Default()->processId();
}
inline pid_t threadId() {
    return Env::Default()->threadId();
}

// Resolves a device path ("/data/.camera/x" or "odm/etc/camera/fwk_config.json", relative paths
// being relative to the camera server's working directory "/") against the device root.
std::string devicePath(const char* path);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_ENV_H
