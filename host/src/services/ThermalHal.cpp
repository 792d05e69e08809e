// The platform thermal HAL (android.hardware.thermal@1.0, instance "default"), answering the
// temperatures set through hostctl.
#include <android/hardware/thermal/1.0/IThermal.h>
#include <math.h>

#include <mutex>
#include <vector>

#include "HidlFake.h"
#include "HidlServiceControl.h"

using android::sp;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hardware::thermal::V1_0::CoolingDevice;
using android::hardware::thermal::V1_0::CpuUsage;
using android::hardware::thermal::V1_0::IThermal;
using android::hardware::thermal::V1_0::Temperature;
using android::hardware::thermal::V1_0::TemperatureType;
using android::hardware::thermal::V1_0::ThermalStatus;
using android::hardware::thermal::V1_0::ThermalStatusCode;

namespace android {
namespace hardware {
namespace thermal {
namespace V1_0 {
const char* IThermal::descriptor = "android.hardware.thermal@1.0::IThermal";
}  // namespace V1_0
}  // namespace thermal
}  // namespace hardware
}  // namespace android

namespace hostsvc {

namespace {

std::vector<hostctl::ThermalReading> defaultReadings() {
    return {{0, "cpu0", 40.0f}, {1, "gpu0", 38.0f}, {2, "battery", 31.0f}, {3, "skin", 35.0f}};
}

struct Readings {
    std::mutex lock;
    std::vector<hostctl::ThermalReading> values = defaultReadings();
};

Readings& readings() {
    static Readings* r = new Readings();  // lives for the process
    return *r;
}

class FakeThermal : public HidlFake<IThermal> {
public:
    FakeThermal() : HidlFake(hostctl::kThermalHal) {}

    Return<void> getTemperatures(getTemperatures_cb _hidl_cb) override {
        if (dead()) return deadStatus();
        record("getTemperatures");
        std::vector<Temperature> out;
        {
            std::lock_guard<std::mutex> g(readings().lock);
            for (const auto& r : readings().values) {
                Temperature t;
                t.type = static_cast<TemperatureType>(r.type);
                t.name = r.name;
                t.currentValue = r.celsius;
                t.throttlingThreshold = NAN;
                t.shutdownThreshold = NAN;
                t.vrThrottlingThreshold = NAN;
                out.push_back(t);
            }
        }
        if (_hidl_cb) _hidl_cb(ThermalStatus{ThermalStatusCode::SUCCESS, ""}, out);
        return android::hardware::Void();
    }

    Return<void> getCpuUsages(getCpuUsages_cb _hidl_cb) override {
        if (dead()) return deadStatus();
        record("getCpuUsages");
        if (_hidl_cb) _hidl_cb(ThermalStatus{ThermalStatusCode::SUCCESS, ""}, hidl_vec<CpuUsage>());
        return android::hardware::Void();
    }

    Return<void> getCoolingDevices(getCoolingDevices_cb _hidl_cb) override {
        if (dead()) return deadStatus();
        record("getCoolingDevices");
        if (_hidl_cb) {
            _hidl_cb(ThermalStatus{ThermalStatusCode::SUCCESS, ""}, hidl_vec<CoolingDevice>());
        }
        return android::hardware::Void();
    }
};

class ThermalControl : public HidlServiceControl<FakeThermal> {
public:
    ThermalControl()
        : HidlServiceControl<FakeThermal>("default",
                                          [] { return sp<FakeThermal>(new FakeThermal()); }) {}
    void reset() override {
        HidlServiceControl<FakeThermal>::reset();
        std::lock_guard<std::mutex> g(readings().lock);
        readings().values = defaultReadings();
    }
};

}  // namespace

ServiceControl& thermalControl() {
    static auto* c = new ThermalControl();
    return *c;
}

}  // namespace hostsvc

namespace hostctl {

void setThermalTemperatures(const std::vector<ThermalReading>& values) {
    std::lock_guard<std::mutex> g(hostsvc::readings().lock);
    hostsvc::readings().values = values;
}

}  // namespace hostctl
