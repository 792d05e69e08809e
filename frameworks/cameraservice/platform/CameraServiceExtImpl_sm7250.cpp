#include "platform/CameraServiceExtImpl_sm7250.h"

namespace android {

CameraServiceExtImpl_sm7250::CameraServiceExtImpl_sm7250() = default;

CameraServiceExtImpl_sm7250::~CameraServiceExtImpl_sm7250() {
    mPerformance.clear();
}

void CameraServiceExtImpl_sm7250::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
