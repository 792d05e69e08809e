/*
 * Flags that several host threads read and write without a lock.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_RELAXED_H
#define VANTU_CAMERASERVICE_UTILS_RELAXED_H

#include <atomic>

namespace android {
namespace vantu {

// A value that several host threads read and write without a lock: each access is a relaxed
// atomic load or store, so a reader sees one of the written values and never a torn one.
template <typename T>
class Relaxed {
public:
    constexpr Relaxed(T value = T()) : mValue(value) {}
    Relaxed& operator=(T value) {
        mValue.store(value, std::memory_order_relaxed);
        return *this;
    }
    operator T() const { return mValue.load(std::memory_order_relaxed); }
    T exchange(T value) { return mValue.exchange(value, std::memory_order_relaxed); }

private:
    std::atomic<T> mValue;
};

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_RELAXED_H
