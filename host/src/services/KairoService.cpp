// The device maker's thermal service "kairo": a binder service in the service manager that
// answers its one transaction with the current device temperature.
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <stdio.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <atomic>
#include <mutex>

#include "ServiceControl.h"
#include "hostctl/Binder.h"

using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;

namespace hostsvc {

namespace {

constexpr char kDescriptor[] = "com.vantu.kairo.IKairoService";
constexpr uint32_t kGetCurrentThermal = 17;

std::atomic<float> gTemperature{0.0f};
std::atomic<status_t> gTransactError{android::OK};

// The interface token at the start of `data` as text, or "?" without a readable one.
std::string tokenOf(const Parcel& data) {
    data.setDataPosition(0);
    int32_t header[3] = {0, 0, 0};
    for (int32_t& word : header) {
        if (data.readInt32(&word) != android::OK) return "?";
    }
    size_t len = 0;
    const char16_t* name = data.readString16Inplace(&len);
    data.setDataPosition(0);
    return name ? android::String8(name, len).string() : "?";
}

status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    hostctl::recordServiceCall(hostctl::kKairoService, "transact",
                               {std::to_string(code), tokenOf(data), std::to_string(flags)});
    const status_t error = gTransactError.load(std::memory_order_relaxed);
    if (error != android::OK) return error;
    if (code != kGetCurrentThermal) return android::UNKNOWN_TRANSACTION;
    if (!data.enforceInterface(String16(kDescriptor))) return android::PERMISSION_DENIED;
    // The reply is the temperature alone, without an exception header.
    return reply ? reply->writeFloat(gTemperature.load(std::memory_order_relaxed)) : android::OK;
}

class KairoControl : public ServiceControl {
public:
    bool start(std::string* error) override {
        std::lock_guard<std::mutex> g(mLock);
        if (mBinder != nullptr && mBinder->isBinderAlive()) return true;
        sp<hostctl::HostBinder> binder = hostctl::createBinder(hostctl::kKairoService, kDescriptor);
        binder->setHandler(onTransact);
        if (android::defaultServiceManager()->addService(String16(hostctl::kKairoService),
                                                         binder) != android::OK) {
            if (error) *error = "cannot add the service \"kairo\"";
            return false;
        }
        mBinder = binder;
        return true;
    }

    void stop() override {
        if (take() == nullptr) return;
        hostctl::removeService(hostctl::kKairoService);
    }

    // The service manager forgets a service whose process died.
    bool kill() override {
        sp<hostctl::HostBinder> binder = take();
        if (binder == nullptr) return false;
        hostctl::removeService(hostctl::kKairoService);
        return binder->kill();
    }

    bool running() override {
        std::lock_guard<std::mutex> g(mLock);
        return mBinder != nullptr && mBinder->isBinderAlive();
    }

    void reset() override {
        gTemperature.store(0.0f, std::memory_order_relaxed);
        gTransactError.store(android::OK, std::memory_order_relaxed);
    }

private:
    sp<hostctl::HostBinder> take() {
        std::lock_guard<std::mutex> g(mLock);
        sp<hostctl::HostBinder> binder = mBinder;
        mBinder = nullptr;
        return binder;
    }

    std::mutex mLock;
    sp<hostctl::HostBinder> mBinder;
};

}  // namespace

ServiceControl& kairoControl() {
    static auto* c = new KairoControl();  // lives for the process
    return *c;
}

}  // namespace hostsvc

namespace hostctl {

void setKairoTemperature(float celsius) {
    hostsvc::gTemperature.store(celsius, std::memory_order_relaxed);
}

void setKairoTransactError(android::status_t status) {
    hostsvc::gTransactError.store(status, std::memory_order_relaxed);
}

}  // namespace hostctl
