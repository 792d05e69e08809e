#define ATRACE_TAG ATRACE_TAG_CAMERA

#include "UxThreadTable.h"

#include <cutils/trace.h>
#include <stdarg.h>
#include <stdio.h>

#include "utils/Env.h"
#include "utils/VantuLog.h"

namespace android {

using vendor::vantu::hardware::performance::V1_0::IPerformance;

namespace {

constexpr uint32_t kNormalClass = 8;

uint64_t pack(uint32_t tid, uint32_t flag) {
    return (static_cast<uint64_t>(tid) << 32) | flag;
}
uint32_t tidOf(uint64_t word) {
    return static_cast<uint32_t>(word >> 32);
}
uint32_t flagOf(uint64_t word) {
    return static_cast<uint32_t>(word & 0xFFFFFFFFu);
}

// An atrace section holding one of the log texts, opened and closed at once.
__attribute__((format(printf, 1, 2))) void traceText(const char* format, ...) {
    if (!ATRACE_ENABLED()) return;
    char text[128];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof(text), format, args);
    va_end(args);
    ATRACE_BEGIN(text);
    ATRACE_END();
}

// Closes the "SetUxthread" section on every way out.
struct TraceScope {
    const bool on = ATRACE_ENABLED() != 0;
    TraceScope() {
        if (on) ATRACE_BEGIN("SetUxthread");
    }
    ~TraceScope() {
        if (on) ATRACE_END();
    }
};

}  // namespace

int UxThreadTable::find(uint32_t tid) const {
    if (tid == 0) return -1;
    for (int i = 0; i < kEntries; ++i) {
        if (tidOf(mEntries[i].load(std::memory_order_relaxed)) == tid) return i;
    }
    return -1;
}

uint32_t UxThreadTable::threadAt(int index) const {
    if (index < 0 || index >= kEntries) return 0;
    return tidOf(mEntries[index].load(std::memory_order_relaxed));
}

uint32_t UxThreadTable::flagAt(int index) const {
    if (index < 0 || index >= kEntries) return 0;
    return flagOf(mEntries[index].load(std::memory_order_relaxed));
}

sp<IPerformance> UxThreadTable::service(sp<IPerformance>* cache) {
    if (cache == nullptr) return IPerformance::tryGetService("default");
    std::lock_guard<std::mutex> g(mServiceLock);
    if (*cache == nullptr) *cache = IPerformance::tryGetService("default");
    return *cache;
}

bool UxThreadTable::send(sp<IPerformance>* cache, const char* value, uint32_t pid, uint32_t tid) {
    sp<IPerformance> perf = service(cache);
    if (perf == nullptr) {
        EXT_LOG(0, "PerformanceInterface is NULL!");
        return false;
    }
    char pidText[16];
    char tidText[16];
    snprintf(pidText, sizeof(pidText), "%u", pid);
    snprintf(tidText, sizeof(tidText), "%u", tid);
    hardware::Return<int32_t> ret = perf->setUxThread(value, pidText, tidText);
    // The answer is not used; a kept service that died is fetched again next time.
    if (!ret.isOk() && cache != nullptr) {
        std::lock_guard<std::mutex> g(mServiceLock);
        if (*cache == perf) cache->clear();
    }
    EXT_LOG(0, "Set UX successfully for %u", tid);
    return true;
}

void UxThreadTable::releaseCleared() {
    for (auto& entry : mEntries) {
        uint64_t word = entry.load(std::memory_order_relaxed);
        if (word != 0 && flagOf(word) == 0) {
            entry.compare_exchange_strong(word, 0, std::memory_order_relaxed);
        }
    }
}

UxThreadTable::Result UxThreadTable::apply(unsigned int enable, uint32_t boostValue,
                                           sp<IPerformance>* cache) {
    TraceScope trace;
    const uint32_t pid = static_cast<uint32_t>(vantu::processId());
    const uint32_t tid = static_cast<uint32_t>(vantu::threadId());
    char value[16];
    snprintf(value, sizeof(value), "%u", enable == 1 ? boostValue : kNormalClass);

    const int i = find(tid);
    EXT_LOG(2, "enableflag=%u p=%u t=%u i=%d", enable, pid, tid, i);
    traceText("enableflag=%u p=%u t=%u i=%d", enable, pid, tid, i);

    Result result;
    if (i >= 0) {
        uint64_t word = mEntries[i].load(std::memory_order_relaxed);
        if (flagOf(word) == enable) {
            EXT_LOG(2, "Already set %u to %u, No need to set again", tid, enable);
            traceText("Already set %u to %u, No need to set again", tid, enable);
            result = Result::kAlreadySet;
        } else {
            if (!send(cache, value, pid, tid)) return Result::kNoService;
            // Lost only when another thread freed the entry meanwhile; the class is set anyway.
            mEntries[i].compare_exchange_strong(word, pack(tid, enable), std::memory_order_relaxed);
            result = Result::kSet;
        }
    } else {
        int slot = -1;
        for (int k = 0; k < kEntries && slot < 0; ++k) {
            uint64_t expected = 0;
            if (mEntries[k].compare_exchange_strong(expected, pack(tid, enable),
                                                    std::memory_order_relaxed)) {
                slot = k;
            }
        }
        if (slot < 0) {
            EXT_LOG(2, "Array is full");
            traceText("Array is full");
            return Result::kFull;
        }
        if (!send(cache, value, pid, tid)) {
            uint64_t claimed = pack(tid, enable);
            mEntries[slot].compare_exchange_strong(claimed, 0, std::memory_order_relaxed);
            return Result::kNoService;
        }
        result = Result::kSet;
    }
    releaseCleared();
    return result;
}

}  // namespace android
