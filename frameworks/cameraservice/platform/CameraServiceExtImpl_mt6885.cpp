#include "platform/CameraServiceExtImpl_mt6885.h"

namespace android {

CameraServiceExtImpl_mt6885::CameraServiceExtImpl_mt6885() = default;

}  // namespace android
