#include "platform/CameraServiceExtImpl_mt6789.h"

namespace android {

CameraServiceExtImpl_mt6789::CameraServiceExtImpl_mt6789() = default;

}  // namespace android
