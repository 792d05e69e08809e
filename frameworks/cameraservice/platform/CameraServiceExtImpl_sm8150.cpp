#include "platform/CameraServiceExtImpl_sm8150.h"

namespace android {

CameraServiceExtImpl_sm8150::CameraServiceExtImpl_sm8150() = default;

}  // namespace android
