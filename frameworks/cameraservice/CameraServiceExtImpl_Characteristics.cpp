/*
 * Static characteristics shaping: what test suites and third-party apps see of a camera's size
 * lists and ranges. The stream-size cutter lives in CameraServiceExtImpl_SizeCutter.cpp, the
 * surface limit in CameraServiceExtImpl_SurfaceLimit.cpp.
 */
#include <string.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/MetadataEntries.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr char kVerifierPackage[] = "com.android.cts.verifier";
constexpr size_t kVerifierPrefixLength = 24;

// The exposure range the image tests accept: at least 100 us, at most two seconds.
constexpr int64_t kItsMinExposureNs = 100000;
constexpr int64_t kItsMaxExposureNs = 2000000000;

// Values of ANDROID_CONTROL_AVAILABLE_HIGH_SPEED_VIDEO_CONFIGURATIONS: width, height, minimum
// fps, maximum fps, maximum batch size.
constexpr size_t kHfrEntrySize = 5;
constexpr size_t kHfrMaxFpsIndex = 3;
constexpr size_t kHfrBatchIndex = 4;
// The working copy holds this many values; a longer table is left as it is.
constexpr size_t kHfrMaxValues = 512;
constexpr int32_t kHfrFpsPerBatch = 60;

bool boardPlatformIs(const char* expected) {
    char platform[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.board.platform", platform, "qcom");
    return strcmp(platform, expected) == 0;
}

}  // namespace

status_t CameraServiceExtImpl::getCameraCharacteristics(const String16& cameraId,
                                                        CameraMetadata* info) {
    // Debug properties take effect from the next query on, without a restart.
    setExtLogSwitch(readLogSwitchProperties());
    const String8 package(getAPKPackageName());
    if (info == nullptr) {
        EXT_LOG(0, "%s, no characteristics for %s", __func__, package.string());
        return OK;
    }
    // Only its presence matters below: the exposure fix replaces the entry.
    const bool hasExposureRange = info->exists(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE);

    if (isCompatibilityTestPackage(package.string()) && hasExposureRange &&
        getBool("feature_cts_enable", true, nullptr)) {
        limitExposureTimeRangeForIts(info);
    }
    // Asked once: the answer cannot change within the query.
    const bool ctsCamera = isCtsCamera();
    // The batch-size fix is only needed by this one platform's main camera.
    if (boardPlatformIs("lahaina") && ctsCamera && cameraIdToInt(String8(cameraId)) == 0) {
        updateHFRBatchSizeForCts(info);
    }
    if (ctsCamera && hasExposureRange) limitSizeListForCts(info, cameraId);

    // The verifier is recognised whatever "feature_cts_enable" says.
    if (strncmp(package.string(), kVerifierPackage, kVerifierPrefixLength) == 0) {
        EXT_LOG(0, "%s, verifier case", "getCameraCharacteristics");
        // Every copy, should a faulty packet hold the tag more than once.
        vantu::eraseEntries(*info, ANDROID_STATISTICS_INFO_AVAILABLE_FACE_DETECT_MODES);
        limitSizeListForCtsVerifier(info, cameraId);
    }
    if (EXT_LOG_ON()) EXT_LOG(1, "%s, packageName = %s", __func__, package.string());

    if (stringArrayHas("skip_rus_check_list", package.string(), nullptr) ||
        isSystemCameraPkgName(package.string())) {
        mApplyThirdPartySettings = false;
    }
    if (mMotorManager != nullptr) mMotorManager->checkToReadRusFile();
    // Later per-package look-ups (the size rules below among them) answer for the querying app.
    setJsonPackageName(package.string());
    limitSize(cameraId, info);
    return OK;
}

void CameraServiceExtImpl::limitExposureTimeRangeForIts(CameraMetadata* info) {
    if (info == nullptr) return;
    if (isCtsCamera() && boardPlatformIs("holi")) return;

    const camera_metadata_entry entry = info->find(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE);
    if (entry.count == 0) return;
    if (entry.type != TYPE_INT64 || entry.count < 2) {
        EXT_LOG(0, "%s, exposure time range malformed (type %u, count %zu), left as it is",
                __func__, static_cast<unsigned>(entry.type), entry.count);
        return;
    }
    const int64_t currentMax = entry.data.i64[1];
    const int64_t range[2] = {kItsMinExposureNs,
                              currentMax < kItsMaxExposureNs ? currentMax : kItsMaxExposureNs};
    info->update(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, range, 2);
}

void CameraServiceExtImpl::updateHFRBatchSizeForCts(CameraMetadata* info) {
    if (info == nullptr) return;
    const camera_metadata_entry entry =
        info->find(ANDROID_CONTROL_AVAILABLE_HIGH_SPEED_VIDEO_CONFIGURATIONS);
    if (entry.count == 0) return;
    if (entry.type != TYPE_INT32 || entry.count > kHfrMaxValues) {
        EXT_LOG(0, "%s, high speed configurations malformed (type %u, count %zu), left as they are",
                __func__, static_cast<unsigned>(entry.type), entry.count);
        return;
    }
    int32_t values[kHfrMaxValues];
    memcpy(values, entry.data.i32, entry.count * sizeof(int32_t));
    // Values after the last whole entry are written back untouched.
    for (size_t i = 0; i + kHfrEntrySize <= entry.count; i += kHfrEntrySize) {
        if (values[i + kHfrBatchIndex] == 1) {
            values[i + kHfrBatchIndex] = values[i + kHfrMaxFpsIndex] / kHfrFpsPerBatch;
        }
    }
    info->update(ANDROID_CONTROL_AVAILABLE_HIGH_SPEED_VIDEO_CONFIGURATIONS, values, entry.count);
}

// Platform classes edit the size lists for the test suites; the base leaves them as they are.
void CameraServiceExtImpl::limitSizeListForCtsVerifier(CameraMetadata*, const String16&) {}

void CameraServiceExtImpl::limitSizeListForCts(CameraMetadata*, const String16&) {}

// Platform classes cut the size table per app; in the base every app takes the per-app settings.
void CameraServiceExtImpl::limitSize(const String16&, CameraMetadata*) {
    mApplyThirdPartySettings = true;
}

}  // namespace android
