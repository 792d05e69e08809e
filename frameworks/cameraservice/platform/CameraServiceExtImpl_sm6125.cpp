#include "platform/CameraServiceExtImpl_sm6125.h"

namespace android {

CameraServiceExtImpl_sm6125::CameraServiceExtImpl_sm6125() = default;

void CameraServiceExtImpl_sm6125::limitSize(const String16& cameraId, CameraMetadata* info) {
    limitThirdPartyAppSize(cameraId, info);
}

}  // namespace android
