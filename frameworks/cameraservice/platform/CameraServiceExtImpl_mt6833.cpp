#include "platform/CameraServiceExtImpl_mt6833.h"

namespace android {

CameraServiceExtImpl_mt6833::CameraServiceExtImpl_mt6833() = default;

}  // namespace android
