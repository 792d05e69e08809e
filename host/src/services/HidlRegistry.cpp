// The HIDL service registry of the host, and the defaults of IBase.
#include "HidlRegistry.h"

#include <android/log.h>
#include <hidl/ServiceManagement.h>

#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

using android::sp;
using android::hardware::hidl_death_recipient;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hidl::base::V1_0::IBase;

namespace {

// On a phone getService waits without end for a declared instance; the host gives up after this
// long, so that a caller that would hang on a phone fails a test instead of hanging it.
constexpr auto kDeclaredServiceWait = std::chrono::milliseconds(1000);
constexpr auto kWaitPoll = std::chrono::milliseconds(20);

struct Registry {
    std::mutex lock;
    std::map<std::pair<std::string, std::string>, sp<IBase>> services;
    std::set<std::pair<std::string, std::string>> declared;
    size_t waits = 0;
};

Registry& registry() {
    static Registry* r = new Registry();  // lives for the process
    return *r;
}

std::string descriptorOf(IBase* object) {
    std::string descriptor;
    object->interfaceDescriptor([&](const hidl_string& d) { descriptor = d; }).isOk();
    return descriptor;
}

}  // namespace

namespace android {
namespace hidl {
namespace base {
namespace V1_0 {

const char* IBase::descriptor = "android.hidl.base@1.0::IBase";

Return<void> IBase::interfaceChain(interfaceChain_cb _hidl_cb) {
    _hidl_cb(hidl_vec<hidl_string>{descriptor});
    return hardware::Void();
}

Return<void> IBase::interfaceDescriptor(interfaceDescriptor_cb _hidl_cb) {
    _hidl_cb(descriptor);
    return hardware::Void();
}

Return<void> IBase::ping() {
    return hardware::Void();
}

Return<bool> IBase::linkToDeath(const sp<hidl_death_recipient>& recipient, uint64_t) {
    return recipient != nullptr;
}

Return<bool> IBase::unlinkToDeath(const sp<hidl_death_recipient>& recipient) {
    return recipient != nullptr;
}

Return<sp<IBase>> IBase::castFrom(const sp<IBase>& parent, bool) {
    return parent;
}

}  // namespace V1_0
}  // namespace base
}  // namespace hidl

namespace hardware {
namespace details {

sp<IBase> getRawServiceInternal(const std::string& descriptor, const std::string& instance,
                                bool retry, bool) {
    const auto key = std::make_pair(descriptor, instance);
    {
        std::lock_guard<std::mutex> g(registry().lock);
        auto it = registry().services.find(key);
        if (it != registry().services.end()) return it->second;
        // tryGetService, or an instance the manifest does not name: no wait, as on a phone.
        if (!retry || registry().declared.count(key) == 0) return nullptr;
        ++registry().waits;
    }
    __android_log_print(ANDROID_LOG_WARN, "HidlServiceManagement",
                        "getService: Trying again for %s/%s...", descriptor.c_str(),
                        instance.c_str());
    const auto end = std::chrono::steady_clock::now() + kDeclaredServiceWait;
    while (std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kWaitPoll);
        std::lock_guard<std::mutex> g(registry().lock);
        auto it = registry().services.find(key);
        if (it != registry().services.end()) return it->second;
    }
    __android_log_print(ANDROID_LOG_WARN, "HidlServiceManagement", "Waited one second for %s/%s",
                        descriptor.c_str(), instance.c_str());
    return nullptr;
}

status_t registerAsServiceInternal(const sp<IBase>& service, const std::string& name) {
    if (service == nullptr) return BAD_VALUE;
    const std::string descriptor = descriptorOf(service.get());
    if (descriptor.empty()) return BAD_VALUE;
    std::lock_guard<std::mutex> g(registry().lock);
    registry().services[{descriptor, name}] = service;
    return OK;
}

bool canCastInterface(IBase* object, const char* descriptor) {
    if (object == nullptr || descriptor == nullptr) return false;
    bool found = false;
    object
        ->interfaceChain([&](const hidl_vec<hidl_string>& chain) {
            for (const auto& d : chain) found = found || d == descriptor;
        })
        .isOk();
    return found;
}

}  // namespace details
}  // namespace hardware
}  // namespace android

namespace hostsvc {

void unregisterHidlService(const std::string& descriptor, const std::string& instance) {
    sp<IBase> gone;  // released after the lock, in case its destructor calls back in
    std::lock_guard<std::mutex> g(registry().lock);
    auto it = registry().services.find({descriptor, instance});
    if (it == registry().services.end()) return;
    gone = it->second;
    registry().services.erase(it);
}

void declareHidlService(const std::string& descriptor, const std::string& instance, bool declared) {
    std::lock_guard<std::mutex> g(registry().lock);
    if (declared) {
        registry().declared.insert({descriptor, instance});
    } else {
        registry().declared.erase({descriptor, instance});
    }
}

size_t hidlServiceWaits() {
    std::lock_guard<std::mutex> g(registry().lock);
    return registry().waits;
}

void clearHidlServiceWaits() {
    std::lock_guard<std::mutex> g(registry().lock);
    registry().waits = 0;
}

}  // namespace hostsvc
