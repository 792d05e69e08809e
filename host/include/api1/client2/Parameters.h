/*
 * Host stand-in of the camera server's API1 parameter state (Android 13): the state of a legacy
 * camera client, that is the contents of its CameraParameters2 in a more efficient form plus
 * other state. Enum values follow the camera2 enums where they map cleanly.
 *
 * The host keeps the state and the string/enum conversions; filling it from a device's static
 * information and validating a new parameter string belong to the server's API1 client, which
 * the host does not model.
 */
#ifndef ANDROID_SERVERS_CAMERA_CAMERA2PARAMETERS_H
#define ANDROID_SERVERS_CAMERA_CAMERA2PARAMETERS_H

#include <camera/CameraMetadata.h>
#include <camera/CameraParameters.h>
#include <camera/CameraParameters2.h>
#include <stdint.h>
#include <system/camera_metadata.h>
#include <system/graphics.h>
#include <utils/Errors.h>
#include <utils/KeyedVector.h>
#include <utils/String8.h>
#include <utils/Vector.h>

namespace android {

namespace camera2 {

struct Parameters {
    int cameraId;
    int cameraFacing;

    int previewWidth, previewHeight;
    int32_t previewFpsRange[2];
    int previewFormat;

    int previewTransform;  // set by CAMERA_CMD_SET_DISPLAY_ORIENTATION

    int pictureWidth, pictureHeight;
    // The picture size before a video snapshot overrode it.
    int pictureWidthLastSet, pictureHeightLastSet;
    bool pictureSizeOverriden;

    int32_t jpegThumbSize[2];
    uint8_t jpegQuality, jpegThumbQuality;
    int32_t jpegRotation;

    bool gpsEnabled;
    double gpsCoordinates[3];
    int64_t gpsTimestamp;
    String8 gpsProcessingMethod;

    uint8_t wbMode;
    uint8_t effectMode;
    uint8_t antibandingMode;
    uint8_t sceneMode;

    enum flashMode_t {
        FLASH_MODE_OFF = 0,
        FLASH_MODE_AUTO,
        FLASH_MODE_ON,
        FLASH_MODE_TORCH,
        FLASH_MODE_RED_EYE = ANDROID_CONTROL_AE_MODE_ON_AUTO_FLASH_REDEYE,
        FLASH_MODE_INVALID = -1
    } flashMode;

    enum focusMode_t {
        FOCUS_MODE_AUTO = ANDROID_CONTROL_AF_MODE_AUTO,
        FOCUS_MODE_MACRO = ANDROID_CONTROL_AF_MODE_MACRO,
        FOCUS_MODE_CONTINUOUS_VIDEO = ANDROID_CONTROL_AF_MODE_CONTINUOUS_VIDEO,
        FOCUS_MODE_CONTINUOUS_PICTURE = ANDROID_CONTROL_AF_MODE_CONTINUOUS_PICTURE,
        FOCUS_MODE_EDOF = ANDROID_CONTROL_AF_MODE_EDOF,
        FOCUS_MODE_INFINITY,
        FOCUS_MODE_FIXED,
        FOCUS_MODE_INVALID = -1
    } focusMode;

    uint8_t focusState;  // latest focus state from the HAL

    // Focus mode the HAL really runs when AF is triggered through AUTO.
    focusMode_t shadowFocusMode;

    struct Area {
        int left, top, right, bottom;
        int weight;
        Area() : left(0), top(0), right(0), bottom(0), weight(0) {}
        Area(int left, int top, int right, int bottom, int weight)
            : left(left), top(top), right(right), bottom(bottom), weight(weight) {}
        bool isEmpty() const { return (left == 0) && (top == 0) && (right == 0) && (bottom == 0); }
    };
    Vector<Area> focusingAreas;

    struct Size {
        int32_t width;
        int32_t height;
    };

    struct FpsRange {
        int32_t low;
        int32_t high;
    };

    uint8_t aeState;  // latest AE state from the HAL
    int32_t exposureCompensation;
    bool autoExposureLock;
    bool autoExposureLockAvailable;
    bool autoWhiteBalanceLock;
    bool autoWhiteBalanceLockAvailable;

    // 3A region types, for use with ANDROID_CONTROL_MAX_REGIONS.
    enum region_t {
        REGION_AE = 0,
        REGION_AWB,
        REGION_AF,
        NUM_REGION  // number of region types
    } region;

    Vector<Area> meteringAreas;

    int zoom;
    bool zoomAvailable;

    int videoWidth, videoHeight, videoFormat;
    android_dataspace videoDataSpace;

    bool recordingHint;
    bool videoStabilization;

    CameraParameters2 params;
    String8 paramsFlattened;

    // State visible to the app that is not part of Camera.Parameters.
    int32_t videoBufferMode;  // one of ICamera::VIDEO_BUFFER_MODE_*
    bool playShutterSound;
    bool enableFaceDetect;

    bool enableFocusMoveMessages;
    int afTriggerCounter;
    int afStateCounter;
    int currentAfTriggerId;
    bool afInMotion;

    int precaptureTriggerCounter;

    int takePictureCounter;

    uint32_t previewCallbackFlags;
    bool previewCallbackOneShot;
    bool previewCallbackSurface;

    bool allowZslMode;
    // The JPEG stream is slower than 30 fps and could slow preview; ZSL is then off.
    bool slowJpegMode;
    bool isZslReprocessPresent;
    bool isDeviceZslSupported;
    bool isDistortionCorrectionSupported;

    // Overall camera state.
    enum State {
        DISCONNECTED,
        STOPPED,
        WAITING_FOR_PREVIEW_WINDOW,
        PREVIEW,
        RECORD,
        STILL_CAPTURE,
        VIDEO_SNAPSHOT
    } state;

    // Number of zoom steps to simulate.
    static const unsigned int NUM_ZOOM_STEPS = 100;
    // Largest preview size (a square bound, so any aspect ratio with a long side of 1920 fits).
    static const unsigned int MAX_PREVIEW_WIDTH = 1920;
    static const unsigned int MAX_PREVIEW_HEIGHT = 1920;
    // Initial bound of the preview and recording sizes.
    static const int MAX_INITIAL_PREVIEW_WIDTH = 1920;
    static const int MAX_INITIAL_PREVIEW_HEIGHT = 1080;
    static constexpr float ASPECT_RATIO_TOLERANCE = 0.001f;
    static const int64_t kSlowJpegModeThreshold = 33400000LL;  // 33.4 ms
    static const int32_t FPS_MARGIN = 1;
    static const int32_t MAX_DEFAULT_FPS = 30;
    // Slightly under 30 fps, for some tolerance when listing preview and video sizes.
    static constexpr double MIN_PREVIEW_RECORD_FPS = 29.97;
    static constexpr int64_t MAX_PREVIEW_RECORD_DURATION_NS = 1e9 / MIN_PREVIEW_RECORD_FPS;

    // Full static camera information, owned by the device.
    const CameraMetadata* info;

    // Short-lived flags that work around incomplete HAL implementations.
    struct Quirks {
        bool triggerAfWithAuto;
        bool useZslFormat;
        bool meteringCropRegion;
        bool partialResults;
    } quirks;

    // A parameter state with the server's starting values, before the device's information is
    // applied: no preview, sizes 0, flash off, focus auto, state DISCONNECTED.
    Parameters(int cameraId, int cameraFacing);
    ~Parameters();

    // The current settings, flattened.
    String8 get() const;

    static const char* getStateName(State state);

    // Pixel format names (CameraParameters::PIXEL_FORMAT_*) to HAL_PIXEL_FORMAT_* and back;
    // -1 / NULL when unknown.
    static int formatStringToEnum(const char* format);
    static const char* formatEnumToString(int format);

    static flashMode_t flashModeStringToEnum(const char* flashMode);
    static const char* flashModeEnumToString(flashMode_t flashMode);
    static focusMode_t focusModeStringToEnum(const char* focusMode);
    static const char* focusModeEnumToString(focusMode_t focusMode);

    // "true" is true; anything else, NULL included, is false.
    static bool boolFromString(const char* boolStr);

    // API FPS ranges are fixed point with LSB = 0.001.
    static const int kFpsToApiScale = 1000;
};

}  // namespace camera2

}  // namespace android

#endif
