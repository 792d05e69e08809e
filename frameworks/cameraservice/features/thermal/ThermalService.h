/*
 * Device temperatures for the camera hardware layer. The platform thermal HAL is probed (and
 * watched for death) as the guard that thermal reporting works on this device; the skin
 * temperature itself comes from the maker's "kairo" service.
 *
 * Lock order: mLock, then KairoServiceProxy's lock.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_THERMAL_THERMALSERVICE_H
#define VANTU_CAMERASERVICE_FEATURES_THERMAL_THERMALSERVICE_H

#include <android/hardware/thermal/1.0/IThermal.h>
#include <hidl/HidlSupport.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <vector>

namespace android {

class ThermalService : public Singleton<ThermalService> {
public:
    // Entries of the temperature list.
    enum { kCpu = 0, kGpu = 1, kBattery = 2, kSkin = 3, kCount = 4 };

    // True when the thermal HAL is held or was just found and linked to death. Caller holds
    // mLock.
    bool checkService();
    // The thermal HAL died: forget it so the next read probes again.
    void handleServiceDied();
    // Refreshes the skin temperature from "kairo"; 0, or -1 when the thermal HAL is unreachable.
    int getDeviceTemperature();
    // Each refreshes and returns its entry (degrees), or -1 on failure.
    int getCpuTemperature();
    int getGpuTemperature();
    int getBatteryTemperature();
    int getSkinTemperature();
    // Refreshes and copies the four entries (CPU, GPU, battery, skin) to `out`; 0, or -1.
    int getAllTemperature(std::vector<int>& out);
    bool isKairoThermalSupport();

private:
    friend class Singleton<ThermalService>;

    class ThermalServiceDeathRecipient : public hardware::hidl_death_recipient {
    public:
        explicit ThermalServiceDeathRecipient(ThermalService* service) : mService(service) {}
        void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) override;

    private:
        ThermalService* const mService;
    };

    ThermalService();
    int readEntry(int index, const char* failure);

    std::vector<int32_t> mTemperatures;
    Mutex mLock;
    sp<hardware::thermal::V1_0::IThermal> mThermal;
    sp<ThermalServiceDeathRecipient> mDeathRecipient;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_THERMAL_THERMALSERVICE_H
