/*
 * <vendor/vantu/hardware/cameraextension/1.0/ICameraExtensionService.h>: the device maker's
 * camera-extension HAL, instance "cameraextensionservice", in the shape hidl-gen gives it. The
 * camera service tells it that a camera is about to open, so it can get ready ahead of time.
 *
 *     package vendor.vantu.hardware.cameraextension@1.0;
 *     interface ICameraExtensionService {
 *         preOpenCamera(int32_t value) generates (int32_t result);
 *     };
 */
#ifndef HIDL_GENERATED_VENDOR_VANTU_HARDWARE_CAMERAEXTENSION_V1_0_ICAMERAEXTENSIONSERVICE_H
#define HIDL_GENERATED_VENDOR_VANTU_HARDWARE_CAMERAEXTENSION_V1_0_ICAMERAEXTENSIONSERVICE_H

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>
#include <stdint.h>

namespace vendor {
namespace vantu {
namespace hardware {
namespace cameraextension {
namespace V1_0 {

struct ICameraExtensionService : public ::android::hidl::base::V1_0::IBase {
    HIDL_HOST_INTERFACE_MEMBERS(ICameraExtensionService)

    // value: 1 for "a camera opens". 0 when taken note of.
    virtual ::android::hardware::Return<int32_t> preOpenCamera(int32_t value) = 0;
};

}  // namespace V1_0
}  // namespace cameraextension
}  // namespace hardware
}  // namespace vantu
}  // namespace vendor

#endif  // HIDL_GENERATED_VENDOR_VANTU_HARDWARE_CAMERAEXTENSION_V1_0_ICAMERAEXTENSIONSERVICE_H
