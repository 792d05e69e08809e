/*
 * Control of the environment the library sees on the host: its device root and its clock.
 * Tests and the simulator use this; the library never does.
 */
#ifndef HOSTCTL_HOSTENV_H
#define HOSTCTL_HOSTENV_H

#include <stdint.h>
#include <sys/types.h>
#include <utils/Timers.h>

#include <functional>
#include <string>

namespace hostctl {

// Folder that stands for "/" on the device. Default: "/".
void setDeviceRoot(const std::string& root);
std::string deviceRoot();

// Real clocks and real sleeps (the default).
void useRealTime();
// Virtual clocks starting at these values: sleeps and timed waits of the library return at once
// in real time and move the virtual clocks instead.
void useVirtualTime(int64_t wallSeconds, nsecs_t monotonicNs);
bool isVirtualTime();
// Moves both virtual clocks forward (no effect in real time).
void advanceTime(nsecs_t ns);
// Moves the virtual clocks to this monotonic time if it is later than now.
void advanceTimeTo(nsecs_t monotonicNs);

// While the library sleeps or waits in virtual time, the host may run work that is due before
// the wait ends ("the occupant finishes closing 60 ms into the wait"). The scheduler is called
// with the wait's deadline (monotonic ns); it runs the earliest piece of work due at or before
// it, after moving the clock to that work's time, and returns true, or returns false when
// nothing is due. It is called without any lock of the library's held by the waiting thread.
using Scheduler = std::function<bool(nsecs_t deadlineMonotonicNs)>;
void setScheduler(Scheduler scheduler);

// What the library's getpid/gettid answer: these ids for every thread (0 and 0: the real ones
// again), or, for the calling thread only and ahead of the former, its own pair.
void setProcessIds(pid_t pid, pid_t tid);
void setThisThreadIds(pid_t pid, pid_t tid);

// Total virtual time the library has spent sleeping or waiting (for reports).
nsecs_t virtualTimeWaited();

}  // namespace hostctl

#endif  // HOSTCTL_HOSTENV_H
