#include "platform/CameraServiceExtImpl_sm6125.h"

namespace android {

CameraServiceExtImpl_sm6125::CameraServiceExtImpl_sm6125() = default;

}  // namespace android
