// The bodies behind <cutils/trace.h>: the enabled-tag mask and the event sink that tests and the
// simulator set through hostctl/Atrace.h.
#include "hostctl/Atrace.h"

#include <cutils/trace.h>

#include <atomic>
#include <mutex>

#include "utils/Env.h"

extern "C" android::vantu::Env* android_vantu_host_env();

namespace {

std::atomic<uint64_t> gTags{0};

struct Sink {
    std::mutex lock;
    hostctl::AtraceSink fn;
};

Sink& sink() {
    static Sink* s = new Sink();  // lives for the process
    return *s;
}

void emit(hostctl::AtraceEvent::Kind kind, const char* name, int64_t value) {
    hostctl::AtraceSink fn;
    {
        std::lock_guard<std::mutex> g(sink().lock);
        fn = sink().fn;
    }
    if (!fn) return;
    hostctl::AtraceEvent e;
    e.kind = kind;
    e.name = name ? name : "";
    e.value = value;
    // The host environment: the clock and ids the library sees.
    android::vantu::Env* env = android_vantu_host_env();
    e.pid = env->processId();
    e.tid = env->threadId();
    e.time = env->monotonicNs();
    fn(e);
}

}  // namespace

extern "C" {

void atrace_setup() {}
void atrace_update_tags() {}
void atrace_set_debuggable(bool) {}
void atrace_set_tracing_enabled(bool) {}
void atrace_init() {}

uint64_t atrace_get_enabled_tags() {
    return gTags.load(std::memory_order_relaxed);
}

void atrace_begin_body(const char* name) {
    emit(hostctl::AtraceEvent::Kind::kBegin, name, 0);
}

void atrace_end_body() {
    emit(hostctl::AtraceEvent::Kind::kEnd, nullptr, 0);
}

void atrace_async_begin_body(const char* name, int32_t cookie) {
    emit(hostctl::AtraceEvent::Kind::kAsyncBegin, name, cookie);
}

void atrace_async_end_body(const char* name, int32_t cookie) {
    emit(hostctl::AtraceEvent::Kind::kAsyncEnd, name, cookie);
}

void atrace_int_body(const char* name, int32_t value) {
    emit(hostctl::AtraceEvent::Kind::kCounter, name, value);
}

void atrace_int64_body(const char* name, int64_t value) {
    emit(hostctl::AtraceEvent::Kind::kCounter, name, value);
}

}  // extern "C"

namespace hostctl {

void setAtraceTags(uint64_t tags) {
    gTags.store(tags, std::memory_order_relaxed);
}

void setAtraceSink(AtraceSink fn) {
    std::lock_guard<std::mutex> g(sink().lock);
    sink().fn = std::move(fn);
}

}  // namespace hostctl
