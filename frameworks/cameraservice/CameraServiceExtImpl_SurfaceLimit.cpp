/*
 * The surface size limit: the size of a surface a third-party app asks the camera to fill.
 */
#include <stdint.h>
#include <utils/CameraThreadState.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

void CameraServiceExtImpl::filterSurfaceConfig(int& width, int& height) {
    const String8 package = currentPackageName();
    if (mAuthAppManager != nullptr &&
        mAuthAppManager->isAuthedClient(CameraThreadState::getCallingUid(), package, false, true)) {
        return;
    }
    // The rule is ours to choose: an app that is neither the system camera nor a test package
    // gets a surface larger than the limit of its camera ("limitWidthForSurfaceCam0" and
    // "limitHeightForSurfaceCam0" for camera 0, "limitWidthForSurface" and
    // "limitHeightForSurface" otherwise; 1920 x 1080 by default, 0 or less meaning no limit)
    // scaled down, aspect ratio kept, to the largest even size that fits inside the limit.
    if (isSystemCameraPkgName(package.string()) || isCtsCamera(package.string())) return;
    const bool mainCamera = mLastCameraId == 0;
    const int limitWidth =
        getInt(mainCamera ? "limitWidthForSurfaceCam0" : "limitWidthForSurface", 1920, nullptr);
    const int limitHeight =
        getInt(mainCamera ? "limitHeightForSurfaceCam0" : "limitHeightForSurface", 1080, nullptr);
    if (limitWidth <= 0 || limitHeight <= 0 || width <= 0 || height <= 0) return;
    if (width <= limitWidth && height <= limitHeight) return;

    // The dimension that overshoots more takes the limit; 64-bit products cannot overflow.
    int64_t newWidth, newHeight;
    if (int64_t{width} * limitHeight >= int64_t{height} * limitWidth) {
        newWidth = limitWidth;
        newHeight = int64_t{height} * limitWidth / width;
    } else {
        newHeight = limitHeight;
        newWidth = int64_t{width} * limitHeight / height;
    }
    newWidth = newWidth >= 2 ? newWidth & ~int64_t{1} : 1;
    newHeight = newHeight >= 2 ? newHeight & ~int64_t{1} : 1;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s, %s surface %d*%d limited to %d*%d", __func__, package.string(), width,
                height, static_cast<int>(newWidth), static_cast<int>(newHeight));
    }
    width = static_cast<int>(newWidth);
    height = static_cast<int>(newHeight);
}

}  // namespace android
