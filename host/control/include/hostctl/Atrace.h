/*
 * Control of the host's atrace: which tags are enabled (none by default, as on a phone that is
 * not being traced) and where the events of enabled tags go.
 */
#ifndef HOSTCTL_ATRACE_H
#define HOSTCTL_ATRACE_H

#include <stdint.h>
#include <sys/types.h>
#include <utils/Timers.h>

#include <functional>
#include <string>

namespace hostctl {

// The mask atrace_get_enabled_tags() answers (ATRACE_TAG_CAMERA, ...).
void setAtraceTags(uint64_t tags);

struct AtraceEvent {
    enum class Kind { kBegin, kEnd, kAsyncBegin, kAsyncEnd, kCounter };
    Kind kind;
    std::string name;   // empty for kEnd
    int64_t value = 0;  // the counter's value, or the async slice's cookie
    pid_t pid = 0;      // the library's getpid/gettid when the event happened
    pid_t tid = 0;
    nsecs_t time = 0;  // the library's monotonic clock
};
// Receives every event of an enabled tag on the thread that made it; null: events are dropped.
using AtraceSink = std::function<void(const AtraceEvent&)>;
void setAtraceSink(AtraceSink sink);

}  // namespace hostctl

#endif  // HOSTCTL_ATRACE_H
