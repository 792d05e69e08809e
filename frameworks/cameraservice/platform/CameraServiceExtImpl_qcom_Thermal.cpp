/*
 * Temperatures in the requests of Snapdragon 8350 and 8450, with the MediaTek rule: the request
 * counter follows the frame numbers, every sixtieth request samples the device temperatures,
 * and the request whose sample changed the battery or skin value carries them.
 */
#include "features/thermal/ThermalSampling.h"
#include "platform/CameraServiceExtImpl_sm8350.h"
#include "platform/CameraServiceExtImpl_sm8450.h"

namespace android {

namespace {
constexpr uint32_t kThermalPeriod = 60;
constexpr uint32_t kThermalCounterLimit = 0xFFFFFFF0;
}  // namespace

bool CameraServiceExtImpl_sm8350::IsNewRequest(bool newRequest, bool settingsOverride) {
    const bool resend = CameraServiceExtImpl_qcom::IsNewRequest(newRequest, settingsOverride);
    const bool thermal =
        vantu::sampleThermal(mThermalSampling, mThermalRequestCounter, kThermalPeriod,
                             kThermalCounterLimit, mGetTemperatureEnable, newRequest);
    return resend || thermal;
}

void CameraServiceExtImpl_sm8350::updatethermaltemp(CameraMetadata& request) {
    vantu::writeThermalTag(mThermalSampling, mVendorId, request);
}

bool CameraServiceExtImpl_sm8450::IsNewRequest(bool newRequest, bool settingsOverride) {
    const bool resend = CameraServiceExtImpl_qcom::IsNewRequest(newRequest, settingsOverride);
    const bool thermal =
        vantu::sampleThermal(mThermalSampling, mThermalRequestCounter, kThermalPeriod,
                             kThermalCounterLimit, mGetTemperatureEnable, newRequest);
    return resend || thermal;
}

void CameraServiceExtImpl_sm8450::updatethermaltemp(CameraMetadata& request) {
    vantu::writeThermalTag(mThermalSampling, mVendorId, request);
}

}  // namespace android
