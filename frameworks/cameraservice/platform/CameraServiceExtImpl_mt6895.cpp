#include "platform/CameraServiceExtImpl_mt6895.h"

namespace android {

CameraServiceExtImpl_mt6895::CameraServiceExtImpl_mt6895() = default;

}  // namespace android
