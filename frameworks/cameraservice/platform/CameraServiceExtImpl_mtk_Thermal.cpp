/*
 * Temperatures in the requests of the MediaTek chips: the request counter follows the frame
 * numbers, every sixtieth request samples the device temperatures, and the request whose sample
 * changed the battery or skin value carries them to the hardware layer.
 */
#include "platform/CameraServiceExtImpl_mtk.h"

namespace android {

bool CameraServiceExtImpl_mtk::IsNewRequest(bool newRequest, bool settingsOverride) {
    const bool resend = CameraServiceExtImpl::IsNewRequest(newRequest, settingsOverride);
    // The sampling step runs for every request so the counter keeps its pace.
    const bool thermal = IsNewRequestThermalTemp(newRequest);
    return resend || thermal;
}

bool CameraServiceExtImpl_mtk::IsNewRequestThermalTemp(bool force) {
    return vantu::sampleThermal(
        mThermalSampling, mThermalRequestCounter, static_cast<uint32_t>(mThermalPeriod),
        static_cast<uint32_t>(mThermalCounterLimit), mGetTemperatureEnable, force);
}

void CameraServiceExtImpl_mtk::updatethermaltemp(CameraMetadata& request) {
    vantu::writeThermalTag(mThermalSampling, mVendorId, request);
}

}  // namespace android
