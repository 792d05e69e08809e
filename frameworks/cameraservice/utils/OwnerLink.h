/*
 * A feature manager's link back to the extension object that uses it. The managers live for the
 * process while the extension object does not have to (a test builds several in turn), so the
 * link is rebound by each new owner and cut when that owner goes; readers take it once per use.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_OWNERLINK_H
#define VANTU_CAMERASERVICE_UTILS_OWNERLINK_H

#include <atomic>

namespace android {
namespace vantu {

template <typename T>
class OwnerLink {
public:
    explicit OwnerLink(T* owner) : mOwner(owner) {}
    T* get() const { return mOwner.load(std::memory_order_acquire); }
    void bind(T* owner) { mOwner.store(owner, std::memory_order_release); }
    // Cuts the link only when it still names `owner`: a newer owner keeps its link.
    void release(T* owner) {
        T* expected = owner;
        mOwner.compare_exchange_strong(expected, nullptr, std::memory_order_acq_rel);
    }

private:
    std::atomic<T*> mOwner;
};

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_OWNERLINK_H
