#include "platform/CameraServiceExtImpl_mtk.h"

#include "utils/JsonParser.h"

namespace android {

CameraServiceExtImpl_mtk::CameraServiceExtImpl_mtk() {
    mGetTemperatureEnable = getBool("feature_get_temperature_enable", false, nullptr);
}

bool CameraServiceExtImpl_mtk::IsNewRequestThermalTemp(bool force) {
    return force;
}

void CameraServiceExtImpl_mtk::updatethermaltemp(CameraMetadata&) {}

}  // namespace android
