#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

CameraServiceExtImpl_qcom::CameraServiceExtImpl_qcom() = default;

}  // namespace android
