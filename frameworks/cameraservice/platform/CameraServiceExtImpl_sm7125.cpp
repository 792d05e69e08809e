#include "platform/CameraServiceExtImpl_sm7125.h"

namespace android {

CameraServiceExtImpl_sm7125::CameraServiceExtImpl_sm7125() = default;

void CameraServiceExtImpl_sm7125::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
