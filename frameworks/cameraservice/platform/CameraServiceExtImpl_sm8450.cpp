#include "platform/CameraServiceExtImpl_sm8450.h"

namespace android {

CameraServiceExtImpl_sm8450::CameraServiceExtImpl_sm8450() = default;

CameraServiceExtImpl_sm8450::~CameraServiceExtImpl_sm8450() {
    mPerformance.clear();
}

void CameraServiceExtImpl_sm8450::limit3rdAPPSizeListFor8450(CameraMetadata*) {}

void CameraServiceExtImpl_sm8450::updatethermaltemp(CameraMetadata&) {}

}  // namespace android
