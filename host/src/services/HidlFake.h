// Base of the host's HIDL services: they stand for services in other processes, so they keep
// the death recipients linked to them and can die, and they record the calls they receive.
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <stdint.h>

#include <atomic>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "hostctl/Services.h"

namespace hostsvc {

class DeathLinks {
public:
    explicit DeathLinks(std::string service) : mService(std::move(service)) {}

    android::hardware::Return<bool> link(
        const android::sp<android::hardware::hidl_death_recipient>& r, uint64_t cookie);
    android::hardware::Return<bool> unlink(
        const android::sp<android::hardware::hidl_death_recipient>& r);
    void setAnswer(hostctl::LinkToDeathAnswer answer);
    // Marks the service dead and tells each linked recipient that `who` died.
    void die(const android::wp<android::hidl::base::V1_0::IBase>& who);
    bool dead() const { return mDead.load(std::memory_order_relaxed); }
    const std::string& service() const { return mService; }

private:
    const std::string mService;
    std::mutex mLock;
    std::vector<std::pair<android::wp<android::hardware::hidl_death_recipient>, uint64_t>> mLinks;
    hostctl::LinkToDeathAnswer mAnswer = hostctl::LinkToDeathAnswer::kLinked;
    std::atomic<bool> mDead{false};
};

template <typename INTERFACE>
class HidlFake : public INTERFACE {
public:
    explicit HidlFake(std::string service) : mDeath(std::move(service)) {}

    android::hardware::Return<bool> linkToDeath(
        const android::sp<android::hardware::hidl_death_recipient>& recipient,
        uint64_t cookie) override {
        return mDeath.link(recipient, cookie);
    }
    android::hardware::Return<bool> unlinkToDeath(
        const android::sp<android::hardware::hidl_death_recipient>& recipient) override {
        return mDeath.unlink(recipient);
    }
    android::hardware::Return<void> ping() override {
        if (dead()) return deadStatus();
        return android::hardware::Void();
    }

    void die() { mDeath.die(android::wp<android::hidl::base::V1_0::IBase>(this)); }
    bool dead() const { return mDeath.dead(); }
    void setLinkToDeathAnswer(hostctl::LinkToDeathAnswer a) { mDeath.setAnswer(a); }

protected:
    static android::hardware::Status deadStatus() {
        return android::hardware::Status::fromStatusT(android::DEAD_OBJECT);
    }
    void record(const char* method, std::vector<std::string> args = {}) {
        hostctl::recordServiceCall(mDeath.service(), method, std::move(args));
    }

private:
    DeathLinks mDeath;
};

}  // namespace hostsvc
