/*
 * Host stand-in of the generated <android/hardware/thermal/1.0/IThermal.h>: the platform
 * thermal HAL, instance "default". Every method has two results and so takes a callback.
 */
#ifndef HIDL_GENERATED_ANDROID_HARDWARE_THERMAL_V1_0_ITHERMAL_H
#define HIDL_GENERATED_ANDROID_HARDWARE_THERMAL_V1_0_ITHERMAL_H

#include <android/hardware/thermal/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>

#include <functional>

namespace android {
namespace hardware {
namespace thermal {
namespace V1_0 {

struct IThermal : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(IThermal)

    using getTemperatures_cb =
        std::function<void(const ThermalStatus& status,
                           const ::android::hardware::hidl_vec<Temperature>& temperatures)>;
    virtual ::android::hardware::Return<void> getTemperatures(getTemperatures_cb _hidl_cb) = 0;

    using getCpuUsages_cb = std::function<void(
        const ThermalStatus& status, const ::android::hardware::hidl_vec<CpuUsage>& cpuUsages)>;
    virtual ::android::hardware::Return<void> getCpuUsages(getCpuUsages_cb _hidl_cb) = 0;

    using getCoolingDevices_cb = std::function<void(
        const ThermalStatus& status, const ::android::hardware::hidl_vec<CoolingDevice>& devices)>;
    virtual ::android::hardware::Return<void> getCoolingDevices(getCoolingDevices_cb _hidl_cb) = 0;
};

}  // namespace V1_0
}  // namespace thermal
}  // namespace hardware
}  // namespace android

#endif  // HIDL_GENERATED_ANDROID_HARDWARE_THERMAL_V1_0_ITHERMAL_H
