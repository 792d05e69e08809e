#include "HidlFake.h"

using android::sp;
using android::wp;
using android::hardware::hidl_death_recipient;
using android::hardware::Return;
using android::hardware::Status;

namespace hostsvc {

Return<bool> DeathLinks::link(const sp<hidl_death_recipient>& r, uint64_t cookie) {
    // Linking to a dead service fails in the caller's process; the service never hears of it.
    if (dead()) return false;
    hostctl::recordServiceCall(mService, "linkToDeath", {std::to_string(cookie)});
    std::lock_guard<std::mutex> g(mLock);
    if (mAnswer == hostctl::LinkToDeathAnswer::kTransportError) {
        return Status::fromStatusT(android::FAILED_TRANSACTION);
    }
    if (r == nullptr || mAnswer == hostctl::LinkToDeathAnswer::kRefused) return false;
    mLinks.emplace_back(r, cookie);
    return true;
}

Return<bool> DeathLinks::unlink(const sp<hidl_death_recipient>& r) {
    hostctl::recordServiceCall(mService, "unlinkToDeath", {});
    std::lock_guard<std::mutex> g(mLock);
    for (auto it = mLinks.begin(); it != mLinks.end(); ++it) {
        if (it->first == r) {
            mLinks.erase(it);
            return true;
        }
    }
    return false;
}

void DeathLinks::setAnswer(hostctl::LinkToDeathAnswer answer) {
    std::lock_guard<std::mutex> g(mLock);
    mAnswer = answer;
}

void DeathLinks::die(const wp<android::hidl::base::V1_0::IBase>& who) {
    std::vector<std::pair<wp<hidl_death_recipient>, uint64_t>> links;
    {
        std::lock_guard<std::mutex> g(mLock);
        if (dead()) return;
        mDead.store(true, std::memory_order_relaxed);
        links.swap(mLinks);
    }
    // Told without the lock: a recipient may call back into the service.
    for (const auto& link : links) {
        sp<hidl_death_recipient> recipient = link.first.promote();
        if (recipient != nullptr) recipient->serviceDied(link.second, who);
    }
}

}  // namespace hostsvc
