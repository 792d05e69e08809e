/*
 * The client-identity vendor tags of the session parameters: who configures the streams (package,
 * activity, framework API level), the fold state, and the frame-processing answers for WeChat's
 * beauty and the avatar feature. They are written before the hardware configuration and erased
 * after it, so that they never outlive the configuration that needed them.
 */
#include <string.h>

#include <cinttypes>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {

namespace {

constexpr char kWeChat[] = "com.tencent.mm";
constexpr char kFwkBeautyTag[] = "com.vantu.fwkBeauty";
constexpr char kFwkZumioFeature[] = "com.vantu.fwkZumio";

}  // namespace

void CameraServiceExtImpl::addRemovePackageName(const CameraMetadata& sessionParams,
                                                unsigned long vendorId, bool add) {
    // The server hands the session parameters as const but sends this very packet to the HAL.
    CameraMetadata& params = const_cast<CameraMetadata&>(sessionParams);
    const auto write = [&params, vendorId, add](const char* name, uint8_t type, const void* data,
                                                size_t count) {
        vantu::writeVendorTag(params, "addRemovePackageName", name, type, data, count, vendorId,
                              add);
    };
    const String8 package = currentPackageName();
    const String8 activity = currentActivityName();

    write("com.vantu.packageName", TYPE_BYTE, package.string(), package.length() + 1);
    write("com.vantu.activityName", TYPE_BYTE, activity.string(), activity.length() + 1);
    const int32_t apiLevel = mApiLevel;
    write("com.vantu.fwkApiLevel", TYPE_INT32, &apiLevel, 1);

    if (getBool("feature_fold_enable", false, nullptr) && !isSystemCameraPkgName(package.string())) {
        const int64_t state = static_cast<int64_t>(static_cast<uint64_t>(mDeviceState));
        write("com.vantu.device.state", TYPE_INT64, &state, 1);
        if (EXT_LOG_ON())
            EXT_LOG(1, "%s: Config device state for 0x%" PRIx64, __func__,
                    static_cast<uint64_t>(state));
    }

    const bool apsBound = mApsInterface != nullptr && mApsInterface->isFullyBound();
    if (strcmp(package.string(), kWeChat) == 0) {
        if (apsBound) {
            mFwkBeauty = mApsInterface->isAPSFeatureSupport(kFwkBeautyTag) ? 1 : 0;
        } else {
            EXT_LOG(0, "%s: mApsInterface is not able", __func__);
        }
        const int32_t beauty = mFwkBeauty;
        write(kFwkBeautyTag, TYPE_INT32, &beauty, 1);
    }

    if (apsBound) {
        if (mApsInterface->isAPSFeatureSupport(kFwkZumioFeature) && mZumioManager != nullptr &&
            mZumioManager->isSupportZumio(package.string(), activity.string(), true)) {
            mFwkZumio = 1;
        }
    } else {
        EXT_LOG(0, "%s: mApsInterface is not able", __func__);
    }

    if (mZumioManager != nullptr &&
        mZumioManager->isSupportZumio(package.string(), activity.string(), true)) {
        if (!mZumioEnable) {
            EXT_LOG(0, "%s: mApsInterface is not able", __func__);
        } else {
            mSupportAps2Zumio = 1;
        }
    }
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "APS2Zumio after set zumio whitelist,mSupportAps2Zumio = %d",
                static_cast<int32_t>(mSupportAps2Zumio));
    }
}

}  // namespace android
