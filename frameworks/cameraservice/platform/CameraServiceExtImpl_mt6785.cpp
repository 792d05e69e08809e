#include "platform/CameraServiceExtImpl_mt6785.h"

namespace android {

CameraServiceExtImpl_mt6785::CameraServiceExtImpl_mt6785() = default;

}  // namespace android
