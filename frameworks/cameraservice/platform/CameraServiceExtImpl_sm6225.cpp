#include "platform/CameraServiceExtImpl_sm6225.h"

namespace android {

CameraServiceExtImpl_sm6225::CameraServiceExtImpl_sm6225() = default;

void CameraServiceExtImpl_sm6225::limitSize(const String16&, const char*, CameraMetadata*) {}

}  // namespace android
