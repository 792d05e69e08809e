// The device maker's HALs: performance (thread UX class), camera extension (pre-open notice)
// and camera device management (who uses the camera). Each records its calls and answers a
// settable result.
#include <vendor/vantu/hardware/cameraMDM/1.0/IVantuCameraMDM.h>
#include <vendor/vantu/hardware/cameraextension/1.0/ICameraExtensionService.h>
#include <vendor/vantu/hardware/performance/1.0/IPerformance.h>

#include <atomic>
#include <string>

#include "HidlFake.h"
#include "HidlServiceControl.h"

using android::sp;
using android::hardware::hidl_string;
using android::hardware::Return;
using vendor::vantu::hardware::cameraextension::V1_0::ICameraExtensionService;
using vendor::vantu::hardware::cameraMDM::V1_0::IVantuCameraMDM;
using vendor::vantu::hardware::performance::V1_0::IPerformance;

namespace vendor {
namespace vantu {
namespace hardware {
namespace cameraMDM {
namespace V1_0 {
const char* IVantuCameraMDM::descriptor = "vendor.vantu.hardware.cameraMDM@1.0::IVantuCameraMDM";
}  // namespace V1_0
}  // namespace cameraMDM
namespace performance {
namespace V1_0 {
const char* IPerformance::descriptor = "vendor.vantu.hardware.performance@1.0::IPerformance";
}  // namespace V1_0
}  // namespace performance
namespace cameraextension {
namespace V1_0 {
const char* ICameraExtensionService::descriptor =
    "vendor.vantu.hardware.cameraextension@1.0::ICameraExtensionService";
}  // namespace V1_0
}  // namespace cameraextension
}  // namespace hardware
}  // namespace vantu
}  // namespace vendor

namespace hostsvc {

namespace {

std::atomic<int32_t> gPerformanceAnswer{0};
std::atomic<int32_t> gCameraExtensionAnswer{0};
std::atomic<int32_t> gCameraMdmAnswer{0};

class FakePerformance : public HidlFake<IPerformance> {
public:
    FakePerformance() : HidlFake(hostctl::kPerformanceHal) {}

    Return<int32_t> setUxThread(const hidl_string& uxValue, const hidl_string& pid,
                                const hidl_string& tid) override {
        if (dead()) return deadStatus();
        record("setUxThread", {uxValue, pid, tid});
        return gPerformanceAnswer.load(std::memory_order_relaxed);
    }
};

class FakeCameraExtension : public HidlFake<ICameraExtensionService> {
public:
    FakeCameraExtension() : HidlFake(hostctl::kCameraExtensionHal) {}

    Return<int32_t> preOpenCamera(int32_t value) override {
        if (dead()) return deadStatus();
        record("preOpenCamera", {std::to_string(value)});
        return gCameraExtensionAnswer.load(std::memory_order_relaxed);
    }
};

class FakeCameraMdm : public HidlFake<IVantuCameraMDM> {
public:
    FakeCameraMdm() : HidlFake(hostctl::kCameraMdmHal) {}

    Return<int32_t> notifyCameraPackage(const hidl_string& packageName) override {
        if (dead()) return deadStatus();
        record("notifyCameraPackage", {packageName});
        return gCameraMdmAnswer.load(std::memory_order_relaxed);
    }
};

// Resets the answer along with the link answer.
template <typename FAKE>
class VendorHalControl : public HidlServiceControl<FAKE> {
public:
    VendorHalControl(const char* instance, std::atomic<int32_t>* answer)
        : HidlServiceControl<FAKE>(instance, [] { return sp<FAKE>(new FAKE()); }),
          mAnswer(answer) {}
    void reset() override {
        HidlServiceControl<FAKE>::reset();
        mAnswer->store(0, std::memory_order_relaxed);
    }

private:
    std::atomic<int32_t>* mAnswer;
};

}  // namespace

ServiceControl& performanceControl() {
    static auto* c = new VendorHalControl<FakePerformance>("default", &gPerformanceAnswer);
    return *c;
}

ServiceControl& cameraExtensionControl() {
    static auto* c = new VendorHalControl<FakeCameraExtension>("cameraextensionservice",
                                                               &gCameraExtensionAnswer);
    return *c;
}

ServiceControl& cameraMdmControl() {
    static auto* c = new VendorHalControl<FakeCameraMdm>("default", &gCameraMdmAnswer);
    return *c;
}

void setVendorHalAnswer(const std::string& name, int32_t result) {
    if (name == hostctl::kPerformanceHal) gPerformanceAnswer.store(result);
    if (name == hostctl::kCameraExtensionHal) gCameraExtensionAnswer.store(result);
    if (name == hostctl::kCameraMdmHal) gCameraMdmAnswer.store(result);
}

}  // namespace hostsvc
