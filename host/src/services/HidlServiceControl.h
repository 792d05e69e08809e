// Control of one HIDL service of the host: registered under its instance name while running.
#pragma once

#include <utils/StrongPointer.h>

#include <functional>
#include <mutex>
#include <string>
#include <utility>

#include "HidlRegistry.h"
#include "ServiceControl.h"

namespace hostsvc {

// FAKE derives from HidlFake<Interface>; `make` builds a fresh one with the current settings.
template <typename FAKE>
class HidlServiceControl : public ServiceControl {
public:
    HidlServiceControl(std::string instance, std::function<android::sp<FAKE>()> make)
        : mInstance(std::move(instance)), mMake(std::move(make)) {}

    bool start(std::string* error) override {
        std::lock_guard<std::mutex> g(mLock);
        if (mService != nullptr) return true;
        android::sp<FAKE> service = mMake();
        service->setLinkToDeathAnswer(mLinkAnswer);
        if (service->registerAsService(mInstance) != android::OK) {
            if (error) *error = std::string("cannot register ") + FAKE::descriptor;
            return false;
        }
        mService = service;
        return true;
    }

    void stop() override {
        android::sp<FAKE> service = take();
        if (service != nullptr) unregisterHidlService(FAKE::descriptor, mInstance);
    }

    bool kill() override {
        android::sp<FAKE> service = take();
        if (service == nullptr) return false;
        // Gone from the registry first, so a recipient looking it up again finds nothing.
        unregisterHidlService(FAKE::descriptor, mInstance);
        service->die();
        return true;
    }

    bool running() override { return current() != nullptr; }

    void reset() override {
        std::lock_guard<std::mutex> g(mLock);
        mLinkAnswer = hostctl::LinkToDeathAnswer::kLinked;
        declareHidlService(FAKE::descriptor, mInstance, false);
    }

    bool declare(bool declared) override {
        declareHidlService(FAKE::descriptor, mInstance, declared);
        return true;
    }

    void setLinkToDeathAnswer(hostctl::LinkToDeathAnswer answer) override {
        android::sp<FAKE> service;
        {
            std::lock_guard<std::mutex> g(mLock);
            mLinkAnswer = answer;
            service = mService;
        }
        if (service != nullptr) service->setLinkToDeathAnswer(answer);
    }

    android::sp<FAKE> current() {
        std::lock_guard<std::mutex> g(mLock);
        return mService;
    }

private:
    android::sp<FAKE> take() {
        std::lock_guard<std::mutex> g(mLock);
        android::sp<FAKE> service = mService;
        mService = nullptr;
        return service;
    }

    const std::string mInstance;
    const std::function<android::sp<FAKE>()> mMake;
    std::mutex mLock;
    android::sp<FAKE> mService;
    hostctl::LinkToDeathAnswer mLinkAnswer = hostctl::LinkToDeathAnswer::kLinked;
};

}  // namespace hostsvc
