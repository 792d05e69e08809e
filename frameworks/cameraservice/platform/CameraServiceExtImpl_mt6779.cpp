#include "platform/CameraServiceExtImpl_mt6779.h"

namespace android {

CameraServiceExtImpl_mt6779::CameraServiceExtImpl_mt6779() = default;

}  // namespace android
