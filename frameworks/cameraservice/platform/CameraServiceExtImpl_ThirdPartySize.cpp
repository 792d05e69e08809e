/*
 * The third-party size rule shared by the MediaTek chips and SM6125: which stream sizes an
 * ordinary app is offered in a camera's characteristics.
 */
#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// Sizes an app on the motor's size-limit list may still use.
constexpr int kMotorLimitWidth = 4096;
constexpr int kMotorLimitHeight = 4096;

// The camera id as cameraIdToInt reads it; the usual one-digit ids are read without a copy.
int cameraIdOf(const String16& cameraId) {
    const char16_t* text = cameraId.string();
    if (cameraId.size() == 1 && text[0] >= u'0' && text[0] <= u'9') return text[0] - u'0';
    return cameraIdToInt(String8(cameraId));
}

}  // namespace

// Unlike the base rule this one leaves mApplyThirdPartySettings as the characteristics query set
// it, so that skip-listed apps and the system camera escape the motor's limits.
void CameraServiceExtImpl::limitThirdPartyAppSize(const String16& cameraId, CameraMetadata* info) {
    const int id = cameraIdOf(cameraId);
    if (mApplyThirdPartySettings && mMotorManager != nullptr) {
        mMotorManager->checkIfLimitSize(currentPackageName(), id);
        if (mMotorManager->hasSizeLimit()) {
            limitSize(kMotorLimitWidth, kMotorLimitHeight, info, false);
        }
    }

    const char* widthKey = "maxPreviewWidth";
    const char* heightKey = "maxPreviewHeight";
    if (id == 0) {
        widthKey = "thirdPartyAppWidthLimitForCam0";
        heightKey = "thirdPartyAppHeightLimitForCam0";
    } else if (id == 1) {
        widthKey = "thirdPartyAppWidthLimitForCam1";
        heightKey = "thirdPartyAppHeightLimitForCam1";
    }
    const int maxWidth = getInt(widthKey, 0, nullptr);
    const int maxHeight = getInt(heightKey, 0, nullptr);
    const bool limitPicture = getBool("thirdPartyAppLimitPicture", true, nullptr);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s, limit 3rd max size for %d*%d, limitPicture:%d", "limitSize", maxWidth,
                maxHeight, limitPicture);
    }
    // A limit of 0, the default, means the app is not limited.
    if (maxWidth >= 1 && maxHeight >= 1) limitSize(maxWidth, maxHeight, info, limitPicture);
}

}  // namespace android
