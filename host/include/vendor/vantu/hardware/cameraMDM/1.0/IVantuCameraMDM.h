/*
 * <vendor/vantu/hardware/cameraMDM/1.0/IVantuCameraMDM.h>: the device-management camera policy
 * HAL, instance "default", in the shape hidl-gen gives it. The camera service tells it who is
 * about to use the camera: the package name of a connecting client, or "Torch" when the torch
 * is switched.
 *
 *     package vendor.vantu.hardware.cameraMDM@1.0;
 *     interface IVantuCameraMDM {
 *         notifyCameraPackage(string packageName) generates (int32_t result);
 *     };
 */
#ifndef HIDL_GENERATED_VENDOR_VANTU_HARDWARE_CAMERAMDM_V1_0_IVANTUCAMERAMDM_H
#define HIDL_GENERATED_VENDOR_VANTU_HARDWARE_CAMERAMDM_V1_0_IVANTUCAMERAMDM_H

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>
#include <stdint.h>

namespace vendor {
namespace vantu {
namespace hardware {
namespace cameraMDM {
namespace V1_0 {

struct IVantuCameraMDM : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(IVantuCameraMDM)

    // 0 when the policy service took note of it.
    virtual ::android::hardware::Return<int32_t> notifyCameraPackage(
        const ::android::hardware::hidl_string& packageName) = 0;
};

}  // namespace V1_0
}  // namespace cameraMDM
}  // namespace hardware
}  // namespace vantu
}  // namespace vendor

#endif  // HIDL_GENERATED_VENDOR_VANTU_HARDWARE_CAMERAMDM_V1_0_IVANTUCAMERAMDM_H
