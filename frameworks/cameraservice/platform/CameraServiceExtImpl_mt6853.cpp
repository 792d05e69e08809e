#include "platform/CameraServiceExtImpl_mt6853.h"

namespace android {

CameraServiceExtImpl_mt6853::CameraServiceExtImpl_mt6853() = default;

}  // namespace android
