/*
 * <vendor/vantu/hardware/performance/1.0/IPerformance.h>: the device maker's performance HAL,
 * instance "default", in the shape hidl-gen gives it. It sets the scheduler's UX class of one
 * thread; all three arguments are decimal texts.
 *
 *     package vendor.vantu.hardware.performance@1.0;
 *     interface IPerformance {
 *         setUxThread(string uxValue, string pid, string tid) generates (int32_t result);
 *     };
 */
#ifndef HIDL_GENERATED_VENDOR_VANTU_HARDWARE_PERFORMANCE_V1_0_IPERFORMANCE_H
#define HIDL_GENERATED_VENDOR_VANTU_HARDWARE_PERFORMANCE_V1_0_IPERFORMANCE_H

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>
#include <stdint.h>

namespace vendor {
namespace vantu {
namespace hardware {
namespace performance {
namespace V1_0 {

struct IPerformance : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(IPerformance)

    // uxValue: the class ("136", "129" boost, "8" normal); pid and tid: the thread. 0 when set.
    virtual ::android::hardware::Return<int32_t> setUxThread(
        const ::android::hardware::hidl_string& uxValue, const ::android::hardware::hidl_string& pid,
        const ::android::hardware::hidl_string& tid) = 0;
};

}  // namespace V1_0
}  // namespace performance
}  // namespace hardware
}  // namespace vantu
}  // namespace vendor

#endif  // HIDL_GENERATED_VENDOR_VANTU_HARDWARE_PERFORMANCE_V1_0_IPERFORMANCE_H
