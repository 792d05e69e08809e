/*
 * Host stand-in of libhidl's <hidl/ServiceManagement.h>: the HIDL service registry behind the
 * generated getService, tryGetService and registerAsService.
 *
 * The host registry is an in-process table keyed by interface descriptor and instance name.
 * tryGetService never waits. getService waits for a missing instance that the device manifest
 * declares (hostctl::declareService), as on a phone, where that wait has no end; the host gives
 * up after one second and answers null. An undeclared instance answers null at once.
 */
#ifndef ANDROID_HIDL_SERVICE_MANAGEMENT_H
#define ANDROID_HIDL_SERVICE_MANAGEMENT_H

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <string.h>
#include <utils/Errors.h>
#include <utils/StrongPointer.h>

#include <string>

namespace android {
namespace hardware {
namespace details {

// The service registered under `descriptor` and `instance`, or null.
sp<::android::hidl::base::V1_0::IBase> getRawServiceInternal(const std::string& descriptor,
                                                             const std::string& instance,
                                                             bool retry, bool getStub);

// Registers `service` under its own descriptor and `name`, replacing an earlier one.
status_t registerAsServiceInternal(const sp<::android::hidl::base::V1_0::IBase>& service,
                                   const std::string& name);

// True when `descriptor` is in the interface chain of `object`.
bool canCastInterface(::android::hidl::base::V1_0::IBase* object, const char* descriptor);

template <typename INTERFACE>
sp<INTERFACE> castInterface(const sp<::android::hidl::base::V1_0::IBase>& object) {
    if (object == nullptr || !canCastInterface(object.get(), INTERFACE::descriptor)) return nullptr;
    return sp<INTERFACE>(static_cast<INTERFACE*>(object.get()));
}

template <typename INTERFACE>
sp<INTERFACE> getServiceAs(const std::string& instance, bool retry, bool getStub) {
    return castInterface<INTERFACE>(
        getRawServiceInternal(INTERFACE::descriptor, instance, retry, getStub));
}

}  // namespace details
}  // namespace hardware
}  // namespace android

// The members hidl-gen writes into every interface: descriptor, interface chain, casts and the
// service accessors, with the generated signatures.
#define HIDL_HOST_INTERFACE_MEMBERS(INTERFACE)                                                      \
    static const char* descriptor;                                                                  \
    bool isRemote() const override {                                                                \
        return false;                                                                               \
    }                                                                                               \
    ::android::hardware::Return<void> interfaceChain(interfaceChain_cb _hidl_cb) override {         \
        _hidl_cb({descriptor, ::android::hidl::base::V1_0::IBase::descriptor});                     \
        return ::android::hardware::Void();                                                         \
    }                                                                                               \
    ::android::hardware::Return<void> interfaceDescriptor(interfaceDescriptor_cb _hidl_cb)          \
        override {                                                                                  \
        _hidl_cb(descriptor);                                                                       \
        return ::android::hardware::Void();                                                         \
    }                                                                                               \
    static ::android::hardware::Return<::android::sp<INTERFACE>> castFrom(                          \
        const ::android::sp<INTERFACE>& parent, bool = false) {                                     \
        return parent;                                                                              \
    }                                                                                               \
    static ::android::hardware::Return<::android::sp<INTERFACE>> castFrom(                          \
        const ::android::sp<::android::hidl::base::V1_0::IBase>& parent, bool = false) {            \
        return ::android::hardware::details::castInterface<INTERFACE>(parent);                      \
    }                                                                                               \
    static ::android::sp<INTERFACE> tryGetService(const std::string& serviceName = "default",       \
                                                  bool getStub = false) {                           \
        return ::android::hardware::details::getServiceAs<INTERFACE>(serviceName, false, getStub);  \
    }                                                                                               \
    static ::android::sp<INTERFACE> tryGetService(const char serviceName[], bool getStub = false) { \
        return tryGetService(std::string(serviceName ? serviceName : ""), getStub);                 \
    }                                                                                               \
    static ::android::sp<INTERFACE> tryGetService(                                                  \
        const ::android::hardware::hidl_string& serviceName, bool getStub = false) {                \
        return tryGetService(std::string(serviceName), getStub);                                    \
    }                                                                                               \
    static ::android::sp<INTERFACE> tryGetService(bool getStub) {                                   \
        return tryGetService(std::string("default"), getStub);                                      \
    }                                                                                               \
    static ::android::sp<INTERFACE> getService(const std::string& serviceName = "default",          \
                                               bool getStub = false) {                              \
        return ::android::hardware::details::getServiceAs<INTERFACE>(serviceName, true, getStub);   \
    }                                                                                               \
    static ::android::sp<INTERFACE> getService(const char serviceName[], bool getStub = false) {    \
        return getService(std::string(serviceName ? serviceName : ""), getStub);                    \
    }                                                                                               \
    static ::android::sp<INTERFACE> getService(                                                     \
        const ::android::hardware::hidl_string& serviceName, bool getStub = false) {                \
        return getService(std::string(serviceName), getStub);                                       \
    }                                                                                               \
    static ::android::sp<INTERFACE> getService(bool getStub) {                                      \
        return getService(std::string("default"), getStub);                                         \
    }                                                                                               \
    ::android::status_t registerAsService(const std::string& serviceName = "default") {             \
        return ::android::hardware::details::registerAsServiceInternal(this, serviceName);          \
    }

#endif  // ANDROID_HIDL_SERVICE_MANAGEMENT_H
