/*
 * Host stand-in of the camera client library's CameraParameters (Android 13): the API1
 * parameter set, a map of "key=value" pairs flattened as "k1=v1;k2=v2", with typed accessors
 * for the common keys, and the platform's key and value names.
 */
#ifndef ANDROID_HARDWARE_CAMERA_PARAMETERS_H
#define ANDROID_HARDWARE_CAMERA_PARAMETERS_H

#include <utils/Errors.h>
#include <utils/KeyedVector.h>
#include <utils/String16.h>
#include <utils/String8.h>
#include <utils/Vector.h>

namespace android {

struct Size {
    int width;
    int height;

    Size() : width(0), height(0) {}
    Size(int w, int h) : width(w), height(h) {}
};

class CameraParameters {
public:
    CameraParameters();
    CameraParameters(const String8& params) { unflatten(params); }
    ~CameraParameters();

    String8 flatten() const;
    // Replaces the whole set with the pairs of `params`.
    void unflatten(const String8& params);

    // A key or value holding '=' or ';' (or null) is refused and leaves the set unchanged.
    void set(const char* key, const char* value);
    void set(const char* key, int value);
    void setFloat(const char* key, float value);
    // The value of `key`, or NULL when it is missing or empty.
    const char* get(const char* key) const;
    // -1 when the key is missing.
    int getInt(const char* key) const;
    float getFloat(const char* key) const;
    void remove(const char* key);

    void setPreviewSize(int width, int height);
    // -1 x -1 when unset or malformed.
    void getPreviewSize(int* width, int* height) const;
    void getSupportedPreviewSizes(Vector<Size>& sizes) const;

    void setVideoSize(int width, int height);
    void getVideoSize(int* width, int* height) const;
    void getSupportedVideoSizes(Vector<Size>& sizes) const;
    void getPreferredPreviewSizeForVideo(int* width, int* height) const;

    void setPreviewFrameRate(int fps);
    int getPreviewFrameRate() const;
    // In frames per second times 1000; -1, -1 when unset.
    void getPreviewFpsRange(int* min_fps, int* max_fps) const;

    void setPreviewFormat(const char* format);
    const char* getPreviewFormat() const;

    void setPictureSize(int width, int height);
    void getPictureSize(int* width, int* height) const;
    void getSupportedPictureSizes(Vector<Size>& sizes) const;

    void setPictureFormat(const char* format);
    const char* getPictureFormat() const;

    void dump() const;
    status_t dump(int fd, const Vector<String16>& args) const;

    // Preview format name to its HAL_PIXEL_FORMAT_* value: NV21 for NULL, -1 when unknown.
    static int previewFormatToEnum(const char* format);

    // Keys.
    static const char KEY_PREVIEW_SIZE[];
    static const char KEY_SUPPORTED_PREVIEW_SIZES[];
    static const char KEY_PREVIEW_FPS_RANGE[];
    static const char KEY_SUPPORTED_PREVIEW_FPS_RANGE[];
    static const char KEY_PREVIEW_FORMAT[];
    static const char KEY_SUPPORTED_PREVIEW_FORMATS[];
    static const char KEY_PREVIEW_FRAME_RATE[];
    static const char KEY_SUPPORTED_PREVIEW_FRAME_RATES[];
    static const char KEY_PICTURE_SIZE[];
    static const char KEY_SUPPORTED_PICTURE_SIZES[];
    static const char KEY_PICTURE_FORMAT[];
    static const char KEY_SUPPORTED_PICTURE_FORMATS[];
    static const char KEY_JPEG_THUMBNAIL_WIDTH[];
    static const char KEY_JPEG_THUMBNAIL_HEIGHT[];
    static const char KEY_SUPPORTED_JPEG_THUMBNAIL_SIZES[];
    static const char KEY_JPEG_THUMBNAIL_QUALITY[];
    static const char KEY_JPEG_QUALITY[];
    static const char KEY_ROTATION[];
    static const char KEY_WHITE_BALANCE[];
    static const char KEY_SUPPORTED_WHITE_BALANCE[];
    static const char KEY_EFFECT[];
    static const char KEY_SUPPORTED_EFFECTS[];
    static const char KEY_ANTIBANDING[];
    static const char KEY_SUPPORTED_ANTIBANDING[];
    static const char KEY_SCENE_MODE[];
    static const char KEY_SUPPORTED_SCENE_MODES[];
    static const char KEY_FLASH_MODE[];
    static const char KEY_SUPPORTED_FLASH_MODES[];
    static const char KEY_FOCUS_MODE[];
    static const char KEY_SUPPORTED_FOCUS_MODES[];
    static const char KEY_MAX_NUM_FOCUS_AREAS[];
    static const char KEY_FOCUS_AREAS[];
    static const char KEY_FOCAL_LENGTH[];
    static const char KEY_HORIZONTAL_VIEW_ANGLE[];
    static const char KEY_VERTICAL_VIEW_ANGLE[];
    static const char KEY_EXPOSURE_COMPENSATION[];
    static const char KEY_MAX_EXPOSURE_COMPENSATION[];
    static const char KEY_MIN_EXPOSURE_COMPENSATION[];
    static const char KEY_EXPOSURE_COMPENSATION_STEP[];
    static const char KEY_AUTO_EXPOSURE_LOCK[];
    static const char KEY_AUTO_EXPOSURE_LOCK_SUPPORTED[];
    static const char KEY_AUTO_WHITEBALANCE_LOCK[];
    static const char KEY_AUTO_WHITEBALANCE_LOCK_SUPPORTED[];
    static const char KEY_MAX_NUM_METERING_AREAS[];
    static const char KEY_METERING_AREAS[];
    static const char KEY_ZOOM[];
    static const char KEY_MAX_ZOOM[];
    static const char KEY_ZOOM_RATIOS[];
    static const char KEY_ZOOM_SUPPORTED[];
    static const char KEY_SMOOTH_ZOOM_SUPPORTED[];
    static const char KEY_FOCUS_DISTANCES[];
    static const char KEY_VIDEO_SIZE[];
    static const char KEY_SUPPORTED_VIDEO_SIZES[];
    static const char KEY_PREFERRED_PREVIEW_SIZE_FOR_VIDEO[];
    static const char KEY_VIDEO_FRAME_FORMAT[];
    static const char KEY_RECORDING_HINT[];
    static const char KEY_VIDEO_SNAPSHOT_SUPPORTED[];
    static const char KEY_VIDEO_STABILIZATION[];
    static const char KEY_VIDEO_STABILIZATION_SUPPORTED[];
    static const char KEY_MAX_NUM_DETECTED_FACES_HW[];
    static const char KEY_MAX_NUM_DETECTED_FACES_SW[];

    // Values.
    static const char TRUE[];
    static const char FALSE[];
    static const char FOCUS_DISTANCE_INFINITY[];

    static const char FLASH_MODE_OFF[];
    static const char FLASH_MODE_AUTO[];
    static const char FLASH_MODE_ON[];
    static const char FLASH_MODE_RED_EYE[];
    static const char FLASH_MODE_TORCH[];

    static const char FOCUS_MODE_AUTO[];
    static const char FOCUS_MODE_INFINITY[];
    static const char FOCUS_MODE_MACRO[];
    static const char FOCUS_MODE_FIXED[];
    static const char FOCUS_MODE_EDOF[];
    static const char FOCUS_MODE_CONTINUOUS_VIDEO[];
    static const char FOCUS_MODE_CONTINUOUS_PICTURE[];

    static const char PIXEL_FORMAT_YUV422SP[];
    static const char PIXEL_FORMAT_YUV420SP[];
    static const char PIXEL_FORMAT_YUV422I[];
    static const char PIXEL_FORMAT_YUV420P[];
    static const char PIXEL_FORMAT_RGB565[];
    static const char PIXEL_FORMAT_RGBA8888[];
    static const char PIXEL_FORMAT_JPEG[];
    static const char PIXEL_FORMAT_BAYER_RGGB[];
    static const char PIXEL_FORMAT_ANDROID_OPAQUE[];

    static const char WHITE_BALANCE_AUTO[];
    static const char EFFECT_NONE[];
    static const char ANTIBANDING_AUTO[];
    static const char ANTIBANDING_50HZ[];
    static const char ANTIBANDING_60HZ[];
    static const char ANTIBANDING_OFF[];
    static const char SCENE_MODE_AUTO[];
    static const char SCENE_MODE_HDR[];

private:
    DefaultKeyedVector<String8, String8> mMap;
};

}  // namespace android

#endif
