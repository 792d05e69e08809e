// The API1 parameter set, kept sorted by key.
#define LOG_TAG "CameraParams"

#include "camera/CameraParameters.h"

#include <log/log.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <system/graphics.h>

#include "ParameterText.h"

namespace android {

using parameter_text::isPlain;
using parameter_text::parseSizesList;
using parameter_text::readPair;

const char CameraParameters::KEY_PREVIEW_SIZE[] = "preview-size";
const char CameraParameters::KEY_SUPPORTED_PREVIEW_SIZES[] = "preview-size-values";
const char CameraParameters::KEY_PREVIEW_FPS_RANGE[] = "preview-fps-range";
const char CameraParameters::KEY_SUPPORTED_PREVIEW_FPS_RANGE[] = "preview-fps-range-values";
const char CameraParameters::KEY_PREVIEW_FORMAT[] = "preview-format";
const char CameraParameters::KEY_SUPPORTED_PREVIEW_FORMATS[] = "preview-format-values";
const char CameraParameters::KEY_PREVIEW_FRAME_RATE[] = "preview-frame-rate";
const char CameraParameters::KEY_SUPPORTED_PREVIEW_FRAME_RATES[] = "preview-frame-rate-values";
const char CameraParameters::KEY_PICTURE_SIZE[] = "picture-size";
const char CameraParameters::KEY_SUPPORTED_PICTURE_SIZES[] = "picture-size-values";
const char CameraParameters::KEY_PICTURE_FORMAT[] = "picture-format";
const char CameraParameters::KEY_SUPPORTED_PICTURE_FORMATS[] = "picture-format-values";
const char CameraParameters::KEY_JPEG_THUMBNAIL_WIDTH[] = "jpeg-thumbnail-width";
const char CameraParameters::KEY_JPEG_THUMBNAIL_HEIGHT[] = "jpeg-thumbnail-height";
const char CameraParameters::KEY_SUPPORTED_JPEG_THUMBNAIL_SIZES[] = "jpeg-thumbnail-size-values";
const char CameraParameters::KEY_JPEG_THUMBNAIL_QUALITY[] = "jpeg-thumbnail-quality";
const char CameraParameters::KEY_JPEG_QUALITY[] = "jpeg-quality";
const char CameraParameters::KEY_ROTATION[] = "rotation";
const char CameraParameters::KEY_WHITE_BALANCE[] = "whitebalance";
const char CameraParameters::KEY_SUPPORTED_WHITE_BALANCE[] = "whitebalance-values";
const char CameraParameters::KEY_EFFECT[] = "effect";
const char CameraParameters::KEY_SUPPORTED_EFFECTS[] = "effect-values";
const char CameraParameters::KEY_ANTIBANDING[] = "antibanding";
const char CameraParameters::KEY_SUPPORTED_ANTIBANDING[] = "antibanding-values";
const char CameraParameters::KEY_SCENE_MODE[] = "scene-mode";
const char CameraParameters::KEY_SUPPORTED_SCENE_MODES[] = "scene-mode-values";
const char CameraParameters::KEY_FLASH_MODE[] = "flash-mode";
const char CameraParameters::KEY_SUPPORTED_FLASH_MODES[] = "flash-mode-values";
const char CameraParameters::KEY_FOCUS_MODE[] = "focus-mode";
const char CameraParameters::KEY_SUPPORTED_FOCUS_MODES[] = "focus-mode-values";
const char CameraParameters::KEY_MAX_NUM_FOCUS_AREAS[] = "max-num-focus-areas";
const char CameraParameters::KEY_FOCUS_AREAS[] = "focus-areas";
const char CameraParameters::KEY_FOCAL_LENGTH[] = "focal-length";
const char CameraParameters::KEY_HORIZONTAL_VIEW_ANGLE[] = "horizontal-view-angle";
const char CameraParameters::KEY_VERTICAL_VIEW_ANGLE[] = "vertical-view-angle";
const char CameraParameters::KEY_EXPOSURE_COMPENSATION[] = "exposure-compensation";
const char CameraParameters::KEY_MAX_EXPOSURE_COMPENSATION[] = "max-exposure-compensation";
const char CameraParameters::KEY_MIN_EXPOSURE_COMPENSATION[] = "min-exposure-compensation";
const char CameraParameters::KEY_EXPOSURE_COMPENSATION_STEP[] = "exposure-compensation-step";
const char CameraParameters::KEY_AUTO_EXPOSURE_LOCK[] = "auto-exposure-lock";
const char CameraParameters::KEY_AUTO_EXPOSURE_LOCK_SUPPORTED[] = "auto-exposure-lock-supported";
const char CameraParameters::KEY_AUTO_WHITEBALANCE_LOCK[] = "auto-whitebalance-lock";
const char CameraParameters::KEY_AUTO_WHITEBALANCE_LOCK_SUPPORTED[] =
    "auto-whitebalance-lock-supported";
const char CameraParameters::KEY_MAX_NUM_METERING_AREAS[] = "max-num-metering-areas";
const char CameraParameters::KEY_METERING_AREAS[] = "metering-areas";
const char CameraParameters::KEY_ZOOM[] = "zoom";
const char CameraParameters::KEY_MAX_ZOOM[] = "max-zoom";
const char CameraParameters::KEY_ZOOM_RATIOS[] = "zoom-ratios";
const char CameraParameters::KEY_ZOOM_SUPPORTED[] = "zoom-supported";
const char CameraParameters::KEY_SMOOTH_ZOOM_SUPPORTED[] = "smooth-zoom-supported";
const char CameraParameters::KEY_FOCUS_DISTANCES[] = "focus-distances";
const char CameraParameters::KEY_VIDEO_SIZE[] = "video-size";
const char CameraParameters::KEY_SUPPORTED_VIDEO_SIZES[] = "video-size-values";
const char CameraParameters::KEY_PREFERRED_PREVIEW_SIZE_FOR_VIDEO[] =
    "preferred-preview-size-for-video";
const char CameraParameters::KEY_VIDEO_FRAME_FORMAT[] = "video-frame-format";
const char CameraParameters::KEY_RECORDING_HINT[] = "recording-hint";
const char CameraParameters::KEY_VIDEO_SNAPSHOT_SUPPORTED[] = "video-snapshot-supported";
const char CameraParameters::KEY_VIDEO_STABILIZATION[] = "video-stabilization";
const char CameraParameters::KEY_VIDEO_STABILIZATION_SUPPORTED[] = "video-stabilization-supported";
const char CameraParameters::KEY_MAX_NUM_DETECTED_FACES_HW[] = "max-num-detected-faces-hw";
const char CameraParameters::KEY_MAX_NUM_DETECTED_FACES_SW[] = "max-num-detected-faces-sw";

const char CameraParameters::TRUE[] = "true";
const char CameraParameters::FALSE[] = "false";
const char CameraParameters::FOCUS_DISTANCE_INFINITY[] = "Infinity";

const char CameraParameters::FLASH_MODE_OFF[] = "off";
const char CameraParameters::FLASH_MODE_AUTO[] = "auto";
const char CameraParameters::FLASH_MODE_ON[] = "on";
const char CameraParameters::FLASH_MODE_RED_EYE[] = "red-eye";
const char CameraParameters::FLASH_MODE_TORCH[] = "torch";

const char CameraParameters::FOCUS_MODE_AUTO[] = "auto";
const char CameraParameters::FOCUS_MODE_INFINITY[] = "infinity";
const char CameraParameters::FOCUS_MODE_MACRO[] = "macro";
const char CameraParameters::FOCUS_MODE_FIXED[] = "fixed";
const char CameraParameters::FOCUS_MODE_EDOF[] = "edof";
const char CameraParameters::FOCUS_MODE_CONTINUOUS_VIDEO[] = "continuous-video";
const char CameraParameters::FOCUS_MODE_CONTINUOUS_PICTURE[] = "continuous-picture";

const char CameraParameters::PIXEL_FORMAT_YUV422SP[] = "yuv422sp";
const char CameraParameters::PIXEL_FORMAT_YUV420SP[] = "yuv420sp";
const char CameraParameters::PIXEL_FORMAT_YUV422I[] = "yuv422i-yuyv";
const char CameraParameters::PIXEL_FORMAT_YUV420P[] = "yuv420p";
const char CameraParameters::PIXEL_FORMAT_RGB565[] = "rgb565";
const char CameraParameters::PIXEL_FORMAT_RGBA8888[] = "rgba8888";
const char CameraParameters::PIXEL_FORMAT_JPEG[] = "jpeg";
const char CameraParameters::PIXEL_FORMAT_BAYER_RGGB[] = "bayer-rggb";
const char CameraParameters::PIXEL_FORMAT_ANDROID_OPAQUE[] = "android-opaque";

const char CameraParameters::WHITE_BALANCE_AUTO[] = "auto";
const char CameraParameters::EFFECT_NONE[] = "none";
const char CameraParameters::ANTIBANDING_AUTO[] = "auto";
const char CameraParameters::ANTIBANDING_50HZ[] = "50hz";
const char CameraParameters::ANTIBANDING_60HZ[] = "60hz";
const char CameraParameters::ANTIBANDING_OFF[] = "off";
const char CameraParameters::SCENE_MODE_AUTO[] = "auto";
const char CameraParameters::SCENE_MODE_HDR[] = "hdr";

CameraParameters::CameraParameters() : mMap() {}

CameraParameters::~CameraParameters() {}

String8 CameraParameters::flatten() const {
    String8 flattened("");
    size_t size = mMap.size();
    for (size_t i = 0; i < size; i++) {
        flattened += mMap.keyAt(i);
        flattened += "=";
        flattened += mMap.valueAt(i);
        if (i != size - 1) flattened += ";";
    }
    return flattened;
}

void CameraParameters::unflatten(const String8& params) {
    const char* a = params.string();
    mMap.clear();
    for (;;) {
        const char* b = strchr(a, '=');
        if (b == nullptr) break;
        String8 k(a, static_cast<size_t>(b - a));
        a = b + 1;
        b = strchr(a, ';');
        if (b == nullptr) {
            // The last pair has no terminating ';'.
            mMap.add(k, String8(a));
            break;
        }
        mMap.add(k, String8(a, static_cast<size_t>(b - a)));
        a = b + 1;
    }
}

void CameraParameters::set(const char* key, const char* value) {
    if (!isPlain(key)) {
        ALOGE("Key \"%s\" contains invalid character (= or ;)", key ? key : "(null)");
        return;
    }
    if (!isPlain(value)) {
        ALOGE("Value \"%s\" contains invalid character (= or ;)", value ? value : "(null)");
        return;
    }
    mMap.replaceValueFor(String8(key), String8(value));
}

void CameraParameters::set(const char* key, int value) {
    char str[16];
    snprintf(str, sizeof(str), "%d", value);
    set(key, str);
}

void CameraParameters::setFloat(const char* key, float value) {
    char str[32];
    snprintf(str, sizeof(str), "%g", value);
    set(key, str);
}

const char* CameraParameters::get(const char* key) const {
    if (key == nullptr) return nullptr;
    ssize_t index = mMap.indexOfKey(String8(key));
    if (index < 0 || mMap.valueAt(index).length() == 0) return nullptr;
    return mMap.valueAt(index).string();
}

int CameraParameters::getInt(const char* key) const {
    const char* v = get(key);
    if (v == nullptr) return -1;
    return static_cast<int>(strtol(v, nullptr, 0));
}

float CameraParameters::getFloat(const char* key) const {
    const char* v = get(key);
    if (v == nullptr) return -1;
    return strtof(v, nullptr);
}

void CameraParameters::remove(const char* key) {
    if (key == nullptr) return;
    mMap.removeItem(String8(key));
}

void CameraParameters::setPreviewSize(int width, int height) {
    char str[32];
    snprintf(str, sizeof(str), "%dx%d", width, height);
    set(KEY_PREVIEW_SIZE, str);
}

void CameraParameters::getPreviewSize(int* width, int* height) const {
    readPair(get(KEY_PREVIEW_SIZE), width, height, 'x');
}

void CameraParameters::getSupportedPreviewSizes(Vector<Size>& sizes) const {
    parseSizesList(get(KEY_SUPPORTED_PREVIEW_SIZES), sizes);
}

void CameraParameters::setVideoSize(int width, int height) {
    char str[32];
    snprintf(str, sizeof(str), "%dx%d", width, height);
    set(KEY_VIDEO_SIZE, str);
}

void CameraParameters::getVideoSize(int* width, int* height) const {
    readPair(get(KEY_VIDEO_SIZE), width, height, 'x');
}

void CameraParameters::getSupportedVideoSizes(Vector<Size>& sizes) const {
    parseSizesList(get(KEY_SUPPORTED_VIDEO_SIZES), sizes);
}

void CameraParameters::getPreferredPreviewSizeForVideo(int* width, int* height) const {
    readPair(get(KEY_PREFERRED_PREVIEW_SIZE_FOR_VIDEO), width, height, 'x');
}

void CameraParameters::setPreviewFrameRate(int fps) {
    set(KEY_PREVIEW_FRAME_RATE, fps);
}

int CameraParameters::getPreviewFrameRate() const {
    return getInt(KEY_PREVIEW_FRAME_RATE);
}

void CameraParameters::getPreviewFpsRange(int* min_fps, int* max_fps) const {
    readPair(get(KEY_PREVIEW_FPS_RANGE), min_fps, max_fps, ',');
}

void CameraParameters::setPreviewFormat(const char* format) {
    set(KEY_PREVIEW_FORMAT, format);
}

const char* CameraParameters::getPreviewFormat() const {
    return get(KEY_PREVIEW_FORMAT);
}

void CameraParameters::setPictureSize(int width, int height) {
    char str[32];
    snprintf(str, sizeof(str), "%dx%d", width, height);
    set(KEY_PICTURE_SIZE, str);
}

void CameraParameters::getPictureSize(int* width, int* height) const {
    readPair(get(KEY_PICTURE_SIZE), width, height, 'x');
}

void CameraParameters::getSupportedPictureSizes(Vector<Size>& sizes) const {
    parseSizesList(get(KEY_SUPPORTED_PICTURE_SIZES), sizes);
}

void CameraParameters::setPictureFormat(const char* format) {
    set(KEY_PICTURE_FORMAT, format);
}

const char* CameraParameters::getPictureFormat() const {
    return get(KEY_PICTURE_FORMAT);
}

void CameraParameters::dump() const {
    ALOGD("dump: mMap.size = %zu", mMap.size());
    for (size_t i = 0; i < mMap.size(); i++) {
        ALOGD("%s: %s\n", mMap.keyAt(i).string(), mMap.valueAt(i).string());
    }
}

status_t CameraParameters::dump(int fd, const Vector<String16>& /*args*/) const {
    dprintf(fd, "CameraParameters::dump: mMap.size = %zu\n", mMap.size());
    for (size_t i = 0; i < mMap.size(); i++) {
        dprintf(fd, "\t%s: %s\n", mMap.keyAt(i).string(), mMap.valueAt(i).string());
    }
    return NO_ERROR;
}

int CameraParameters::previewFormatToEnum(const char* format) {
    if (format == nullptr) return HAL_PIXEL_FORMAT_YCrCb_420_SP;
    if (!strcmp(format, PIXEL_FORMAT_YUV422SP)) return HAL_PIXEL_FORMAT_YCbCr_422_SP;  // NV16
    if (!strcmp(format, PIXEL_FORMAT_YUV420SP)) return HAL_PIXEL_FORMAT_YCrCb_420_SP;  // NV21
    if (!strcmp(format, PIXEL_FORMAT_YUV422I)) return HAL_PIXEL_FORMAT_YCbCr_422_I;    // YUY2
    if (!strcmp(format, PIXEL_FORMAT_YUV420P)) return HAL_PIXEL_FORMAT_YV12;
    if (!strcmp(format, PIXEL_FORMAT_RGB565)) return HAL_PIXEL_FORMAT_RGB_565;
    if (!strcmp(format, PIXEL_FORMAT_RGBA8888)) return HAL_PIXEL_FORMAT_RGBA_8888;
    if (!strcmp(format, PIXEL_FORMAT_BAYER_RGGB)) return HAL_PIXEL_FORMAT_RAW16;
    return -1;
}

}  // namespace android
