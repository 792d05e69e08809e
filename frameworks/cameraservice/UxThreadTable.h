/*
 * The UX thread table of the chips that raise the scheduling class of the server's camera
 * threads: 64 entries of a thread id (0 = free) and the UX flag last set for it. A thread asks
 * for its own class through the performance HAL; the table keeps it from asking twice for the
 * same flag and frees its place once the boost is removed.
 */
#ifndef VANTU_CAMERASERVICE_UXTHREADTABLE_H
#define VANTU_CAMERASERVICE_UXTHREADTABLE_H

#include <stdint.h>
#include <utils/StrongPointer.h>
#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include <atomic>
#include <mutex>

namespace android {

class UxThreadTable {
public:
    static constexpr int kEntries = 64;

    enum class Result {
        kSet,         // the service was asked for the class
        kAlreadySet,  // the thread already has this flag
        kNoService,   // the performance HAL is unavailable
        kFull,        // no free entry for a new thread
    };

    // SetUxthread for the calling thread (the environment's getpid/gettid): the class sent is
    // the decimal text of `boostValue` when `enable` is 1, else of 8. With `cache` the service is
    // fetched once and kept there; without it, it is fetched at each call.
    Result apply(unsigned int enable, uint32_t boostValue,
                 sp<vendor::vantu::hardware::performance::V1_0::IPerformance>* cache);

    // The index of `tid`, or -1 (for tests and the trace).
    int find(uint32_t tid) const;
    // The flag stored at `index` and its thread id (0 when free).
    uint32_t threadAt(int index) const;
    uint32_t flagAt(int index) const;

private:
    sp<vendor::vantu::hardware::performance::V1_0::IPerformance> service(
        sp<vendor::vantu::hardware::performance::V1_0::IPerformance>* cache);
    bool send(sp<vendor::vantu::hardware::performance::V1_0::IPerformance>* cache,
              const char* value, uint32_t pid, uint32_t tid);
    void releaseCleared();

    // Each entry is one word, the thread id in the high half and the flag in the low half, so
    // that threads claiming, updating and freeing entries at once (the server calls from several
    // threads, without a lock) do so by compare-and-swap and can never take one place twice.
    std::atomic<uint64_t> mEntries[kEntries] = {};
    // Guards the cached service pointer of the chips that keep one.
    std::mutex mServiceLock;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_UXTHREADTABLE_H
