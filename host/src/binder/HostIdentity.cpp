#include "HostIdentity.h"

#include <stdint.h>
#include <unistd.h>

#include <atomic>

namespace android {
namespace hostbinder {

namespace {

// uid in the high half, pid in the low half, so readers always see a matching pair.
constexpr uint64_t kUnset = UINT64_MAX;
std::atomic<uint64_t> gProcessIdentity{kUnset};

}  // namespace

Identity processIdentity() {
    const uint64_t packed = gProcessIdentity.load(std::memory_order_relaxed);
    if (packed == kUnset) return Identity{getuid(), getpid()};
    return Identity{static_cast<uid_t>(packed >> 32),
                    static_cast<pid_t>(static_cast<int32_t>(packed & 0xffffffffu))};
}

void setProcessIdentity(uid_t uid, pid_t pid) {
    const uint64_t packed = (static_cast<uint64_t>(uid) << 32) | static_cast<uint32_t>(pid);
    gProcessIdentity.store(packed, std::memory_order_relaxed);
}

void resetProcessIdentity() {
    gProcessIdentity.store(kUnset, std::memory_order_relaxed);
}

}  // namespace hostbinder
}  // namespace android
