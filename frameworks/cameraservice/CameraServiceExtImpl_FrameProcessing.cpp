/*
 * The frame-processing engine across stream configurations: the instance of the previous
 * configuration is released before the next one is made, and the APS switch is evaluated for
 * the new session.
 */
#include "CameraServiceExtImpl.h"
#include "utils/VantuLog.h"

namespace android {

void CameraServiceExtImpl::releaseAPSEngine() {
    if (mApsInterface == nullptr || !mApsInterface->isFullyBound()) return;
    mApsInterface->destory();
}

void CameraServiceExtImpl::setUpAPSEngine() {
    if (mApsInterface == nullptr || !mApsInterface->isFullyBound()) return;
    const APSStreamConfig config{mLastCameraId, mFwkBeauty, mFwkZumio, mSupportAps2Zumio};
    const bool ready = mApsInterface->setUpEngine(config);
    mApsInterface->setNeedAPSProcess(false);
    // Without an engine instance no frame can be processed, so the switch stays off.
    if (ready) mApsInterface->updateAPSSwitch();
}

}  // namespace android
