#include "platform/CameraServiceExtImpl_sm4350.h"

namespace android {

CameraServiceExtImpl_sm4350::CameraServiceExtImpl_sm4350() = default;

void CameraServiceExtImpl_sm4350::limitAPI2Size(const String16&, const char*, CameraMetadata*) {}

void CameraServiceExtImpl_sm4350::limit3rdAPPSizeListFor6375(CameraMetadata*, const char*,
                                                             const String16&) {}

void CameraServiceExtImpl_sm4350::skipItsTest(CameraMetadata*) {}

}  // namespace android
