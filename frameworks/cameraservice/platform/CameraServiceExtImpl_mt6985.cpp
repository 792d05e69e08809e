#include "platform/CameraServiceExtImpl_mt6985.h"

namespace android {

CameraServiceExtImpl_mt6985::CameraServiceExtImpl_mt6985() = default;

}  // namespace android
