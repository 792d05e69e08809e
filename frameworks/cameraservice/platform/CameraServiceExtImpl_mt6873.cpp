#include "platform/CameraServiceExtImpl_mt6873.h"

namespace android {

CameraServiceExtImpl_mt6873::CameraServiceExtImpl_mt6873() = default;

}  // namespace android
