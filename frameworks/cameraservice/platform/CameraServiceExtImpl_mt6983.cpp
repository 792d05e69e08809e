#include "platform/CameraServiceExtImpl_mt6983.h"

namespace android {

CameraServiceExtImpl_mt6983::CameraServiceExtImpl_mt6983() = default;

void CameraServiceExtImpl_mt6983::limitThumbnailSizeListForCts(CameraMetadata*, const String16&) {}

}  // namespace android
