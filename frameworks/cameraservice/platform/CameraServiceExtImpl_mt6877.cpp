#include "platform/CameraServiceExtImpl_mt6877.h"

namespace android {

CameraServiceExtImpl_mt6877::CameraServiceExtImpl_mt6877() = default;

}  // namespace android
