#include "platform/CameraServiceExtImpl_sm8250.h"

namespace android {

CameraServiceExtImpl_sm8250::CameraServiceExtImpl_sm8250() = default;

CameraServiceExtImpl_sm8250::~CameraServiceExtImpl_sm8250() {
    mPerformance.clear();
}

void CameraServiceExtImpl_sm8250::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
