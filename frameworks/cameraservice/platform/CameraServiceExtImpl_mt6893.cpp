#include "platform/CameraServiceExtImpl_mt6893.h"

namespace android {

CameraServiceExtImpl_mt6893::CameraServiceExtImpl_mt6893() = default;

}  // namespace android
