// The HIDL service registry of the host, and the defaults of IBase.
#include "HidlRegistry.h"

#include <hidl/ServiceManagement.h>

#include <map>
#include <mutex>
#include <utility>

using android::sp;
using android::hardware::hidl_death_recipient;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hidl::base::V1_0::IBase;

namespace {

struct Registry {
    std::mutex lock;
    std::map<std::pair<std::string, std::string>, sp<IBase>> services;
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

sp<IBase> getRawServiceInternal(const std::string& descriptor, const std::string& instance, bool,
                                bool) {
    std::lock_guard<std::mutex> g(registry().lock);
    auto it = registry().services.find({descriptor, instance});
    return it == registry().services.end() ? nullptr : it->second;
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

}  // namespace hostsvc
