/*
 * Host stand-in of the generated <android/hidl/base/1.0/IBase.h>: the root of every HIDL
 * interface. Only the operations a client of a service uses are here.
 *
 * The defaults are those of an object living in the caller's process: linkToDeath accepts any
 * recipient and never calls it back. Host services that stand for another process override it
 * so that a test or the simulator can make them die.
 */
#ifndef HIDL_GENERATED_ANDROID_HIDL_BASE_V1_0_IBASE_H
#define HIDL_GENERATED_ANDROID_HIDL_BASE_V1_0_IBASE_H

#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include <functional>

namespace android {
namespace hidl {
namespace base {
namespace V1_0 {

struct IBase : virtual public ::android::RefBase {
    // "android.hidl.base@1.0::IBase"
    static const char* descriptor;

    virtual bool isRemote() const { return false; }

    // The descriptors of this interface and of every interface it extends, most derived first.
    using interfaceChain_cb = std::function<void(
        const ::android::hardware::hidl_vec<::android::hardware::hidl_string>& descriptors)>;
    virtual ::android::hardware::Return<void> interfaceChain(interfaceChain_cb _hidl_cb);

    using interfaceDescriptor_cb =
        std::function<void(const ::android::hardware::hidl_string& descriptor)>;
    virtual ::android::hardware::Return<void> interfaceDescriptor(interfaceDescriptor_cb _hidl_cb);

    virtual ::android::hardware::Return<void> ping();

    virtual ::android::hardware::Return<bool> linkToDeath(
        const ::android::sp<::android::hardware::hidl_death_recipient>& recipient, uint64_t cookie);
    virtual ::android::hardware::Return<bool> unlinkToDeath(
        const ::android::sp<::android::hardware::hidl_death_recipient>& recipient);

    static ::android::hardware::Return<::android::sp<IBase>> castFrom(
        const ::android::sp<IBase>& parent, bool emitError = false);
};

}  // namespace V1_0
}  // namespace base
}  // namespace hidl
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_HIDL_BASE_V1_0_IBASE_H
