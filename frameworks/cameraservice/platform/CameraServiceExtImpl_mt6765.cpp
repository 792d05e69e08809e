#include "platform/CameraServiceExtImpl_mt6765.h"

namespace android {

CameraServiceExtImpl_mt6765::CameraServiceExtImpl_mt6765() = default;

}  // namespace android
