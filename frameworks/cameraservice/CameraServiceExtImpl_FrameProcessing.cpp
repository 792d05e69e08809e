/*
 * The frame-processing engine around stream configuration: released before the streams change
 * and set up again once they are configured.
 */
#include "CameraServiceExtImpl.h"

namespace android {

void CameraServiceExtImpl::releaseAPSEngine() {}

void CameraServiceExtImpl::setUpAPSEngine() {}

}  // namespace android
