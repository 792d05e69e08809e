// The API1 parameter state: starting values and the string/enum conversions.
#define LOG_TAG "Camera2-Parameters"

#include "api1/client2/Parameters.h"

#include <log/log.h>
#include <string.h>

namespace android {

namespace camera2 {

Parameters::Parameters(int cameraId, int cameraFacing)
    : cameraId(cameraId),
      cameraFacing(cameraFacing),
      previewWidth(0),
      previewHeight(0),
      previewFpsRange{0, 0},
      previewFormat(HAL_PIXEL_FORMAT_YCrCb_420_SP),
      previewTransform(0),
      pictureWidth(0),
      pictureHeight(0),
      pictureWidthLastSet(0),
      pictureHeightLastSet(0),
      pictureSizeOverriden(false),
      jpegThumbSize{0, 0},
      jpegQuality(0),
      jpegThumbQuality(0),
      jpegRotation(0),
      gpsEnabled(false),
      gpsCoordinates{0, 0, 0},
      gpsTimestamp(0),
      wbMode(ANDROID_CONTROL_AWB_MODE_AUTO),
      effectMode(ANDROID_CONTROL_EFFECT_MODE_OFF),
      antibandingMode(ANDROID_CONTROL_AE_ANTIBANDING_MODE_AUTO),
      sceneMode(0),  // ANDROID_CONTROL_SCENE_MODE_DISABLED
      flashMode(FLASH_MODE_OFF),
      focusMode(FOCUS_MODE_AUTO),
      focusState(ANDROID_CONTROL_AF_STATE_INACTIVE),
      shadowFocusMode(FOCUS_MODE_INVALID),
      aeState(ANDROID_CONTROL_AE_STATE_INACTIVE),
      exposureCompensation(0),
      autoExposureLock(false),
      autoExposureLockAvailable(false),
      autoWhiteBalanceLock(false),
      autoWhiteBalanceLockAvailable(false),
      region(REGION_AE),
      zoom(0),
      zoomAvailable(false),
      videoWidth(0),
      videoHeight(0),
      videoFormat(HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED),
      videoDataSpace(HAL_DATASPACE_V0_BT709),
      recordingHint(false),
      videoStabilization(false),
      videoBufferMode(0),
      playShutterSound(true),
      enableFaceDetect(false),
      enableFocusMoveMessages(false),
      afTriggerCounter(1),
      afStateCounter(0),
      currentAfTriggerId(-1),
      afInMotion(false),
      precaptureTriggerCounter(1),
      takePictureCounter(0),
      previewCallbackFlags(0),
      previewCallbackOneShot(false),
      previewCallbackSurface(false),
      allowZslMode(false),
      slowJpegMode(false),
      isZslReprocessPresent(false),
      isDeviceZslSupported(false),
      isDistortionCorrectionSupported(false),
      state(DISCONNECTED),
      info(nullptr),
      quirks{false, false, false, false} {}

Parameters::~Parameters() {}

String8 Parameters::get() const {
    return paramsFlattened;
}

const char* Parameters::getStateName(State state) {
    switch (state) {
        case DISCONNECTED:
            return "DISCONNECTED";
        case STOPPED:
            return "STOPPED";
        case WAITING_FOR_PREVIEW_WINDOW:
            return "WAITING_FOR_PREVIEW_WINDOW";
        case PREVIEW:
            return "PREVIEW";
        case RECORD:
            return "RECORD";
        case STILL_CAPTURE:
            return "STILL_CAPTURE";
        case VIDEO_SNAPSHOT:
            return "VIDEO_SNAPSHOT";
    }
    return "Unknown state!";
}

int Parameters::formatStringToEnum(const char* format) {
    return CameraParameters::previewFormatToEnum(format);
}

const char* Parameters::formatEnumToString(int format) {
    switch (format) {
        case HAL_PIXEL_FORMAT_YCbCr_422_SP:  // NV16
            return CameraParameters::PIXEL_FORMAT_YUV422SP;
        case HAL_PIXEL_FORMAT_YCrCb_420_SP:  // NV21
            return CameraParameters::PIXEL_FORMAT_YUV420SP;
        case HAL_PIXEL_FORMAT_YCbCr_422_I:  // YUY2
            return CameraParameters::PIXEL_FORMAT_YUV422I;
        case HAL_PIXEL_FORMAT_YV12:
            return CameraParameters::PIXEL_FORMAT_YUV420P;
        case HAL_PIXEL_FORMAT_RGB_565:
            return CameraParameters::PIXEL_FORMAT_RGB565;
        case HAL_PIXEL_FORMAT_RGBA_8888:
            return CameraParameters::PIXEL_FORMAT_RGBA8888;
        case HAL_PIXEL_FORMAT_RAW16:
            ALOGW("Raw sensor preview format requested.");
            return CameraParameters::PIXEL_FORMAT_BAYER_RGGB;
        default:
            ALOGE("%s: Unknown preview format: %x", __FUNCTION__, format);
            return nullptr;
    }
}

Parameters::flashMode_t Parameters::flashModeStringToEnum(const char* flashMode) {
    if (flashMode == nullptr) return FLASH_MODE_OFF;
    if (!strcmp(flashMode, CameraParameters::FLASH_MODE_OFF)) return FLASH_MODE_OFF;
    if (!strcmp(flashMode, CameraParameters::FLASH_MODE_AUTO)) return FLASH_MODE_AUTO;
    if (!strcmp(flashMode, CameraParameters::FLASH_MODE_ON)) return FLASH_MODE_ON;
    if (!strcmp(flashMode, CameraParameters::FLASH_MODE_RED_EYE)) return FLASH_MODE_RED_EYE;
    if (!strcmp(flashMode, CameraParameters::FLASH_MODE_TORCH)) return FLASH_MODE_TORCH;
    return FLASH_MODE_INVALID;
}

const char* Parameters::flashModeEnumToString(flashMode_t flashMode) {
    switch (flashMode) {
        case FLASH_MODE_OFF:
            return CameraParameters::FLASH_MODE_OFF;
        case FLASH_MODE_AUTO:
            return CameraParameters::FLASH_MODE_AUTO;
        case FLASH_MODE_ON:
            return CameraParameters::FLASH_MODE_ON;
        case FLASH_MODE_RED_EYE:
            return CameraParameters::FLASH_MODE_RED_EYE;
        case FLASH_MODE_TORCH:
            return CameraParameters::FLASH_MODE_TORCH;
        default:
            ALOGE("%s: Unknown flash mode enum %d", __FUNCTION__, flashMode);
            return "unknown";
    }
}

Parameters::focusMode_t Parameters::focusModeStringToEnum(const char* focusMode) {
    if (focusMode == nullptr) return FOCUS_MODE_INVALID;
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_AUTO)) return FOCUS_MODE_AUTO;
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_INFINITY)) return FOCUS_MODE_INFINITY;
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_MACRO)) return FOCUS_MODE_MACRO;
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_FIXED)) return FOCUS_MODE_FIXED;
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_EDOF)) return FOCUS_MODE_EDOF;
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_CONTINUOUS_VIDEO)) {
        return FOCUS_MODE_CONTINUOUS_VIDEO;
    }
    if (!strcmp(focusMode, CameraParameters::FOCUS_MODE_CONTINUOUS_PICTURE)) {
        return FOCUS_MODE_CONTINUOUS_PICTURE;
    }
    return FOCUS_MODE_INVALID;
}

const char* Parameters::focusModeEnumToString(focusMode_t focusMode) {
    switch (focusMode) {
        case FOCUS_MODE_AUTO:
            return CameraParameters::FOCUS_MODE_AUTO;
        case FOCUS_MODE_MACRO:
            return CameraParameters::FOCUS_MODE_MACRO;
        case FOCUS_MODE_CONTINUOUS_VIDEO:
            return CameraParameters::FOCUS_MODE_CONTINUOUS_VIDEO;
        case FOCUS_MODE_CONTINUOUS_PICTURE:
            return CameraParameters::FOCUS_MODE_CONTINUOUS_PICTURE;
        case FOCUS_MODE_EDOF:
            return CameraParameters::FOCUS_MODE_EDOF;
        case FOCUS_MODE_INFINITY:
            return CameraParameters::FOCUS_MODE_INFINITY;
        case FOCUS_MODE_FIXED:
            return CameraParameters::FOCUS_MODE_FIXED;
        default:
            ALOGE("%s: Unknown focus mode enum: %d", __FUNCTION__, focusMode);
            return "unknown";
    }
}

bool Parameters::boolFromString(const char* boolStr) {
    return boolStr != nullptr && !strcmp(boolStr, CameraParameters::TRUE);
}

}  // namespace camera2

}  // namespace android
