#include "platform/CameraServiceExtImpl_sm8350.h"

namespace android {

CameraServiceExtImpl_sm8350::CameraServiceExtImpl_sm8350() = default;

bool CameraServiceExtImpl_sm8350::isConnectIgnoreApp(const char*) {
    return false;
}

void CameraServiceExtImpl_sm8350::updatethermaltemp(CameraMetadata&) {}

}  // namespace android
