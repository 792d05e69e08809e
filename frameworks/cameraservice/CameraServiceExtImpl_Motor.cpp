/*
 * The pop-up camera module's flash, driven from the settings of each request batch.
 */
#include "CameraServiceExtImpl.h"

namespace android {

void CameraServiceExtImpl::applyMotorRequestRules(const camera_metadata*, const String8&) {}

}  // namespace android
