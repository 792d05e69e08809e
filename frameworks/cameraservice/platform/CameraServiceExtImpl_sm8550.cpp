#include "platform/CameraServiceExtImpl_sm8550.h"

namespace android {

CameraServiceExtImpl_sm8550::CameraServiceExtImpl_sm8550() = default;

}  // namespace android
