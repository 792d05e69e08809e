/*
 * Names and types of Android 13's camera metadata tags, indexed by section and by position
 * within the section, and the names of the enumerated values.
 */
#include <system/camera_metadata.h>

#include "camera_metadata_internal.h"

extern "C" {

const char* camera_metadata_section_names[ANDROID_SECTION_COUNT] = {
    "android.colorCorrection",
    "android.control",
    "android.demosaic",
    "android.edge",
    "android.flash",
    "android.flash.info",
    "android.hotPixel",
    "android.jpeg",
    "android.lens",
    "android.lens.info",
    "android.noiseReduction",
    "android.quirks",
    "android.request",
    "android.scaler",
    "android.sensor",
    "android.sensor.info",
    "android.shading",
    "android.statistics",
    "android.statistics.info",
    "android.tonemap",
    "android.led",
    "android.info",
    "android.blackLevel",
    "android.sync",
    "android.reprocess",
    "android.depth",
    "android.logicalMultiCamera",
    "android.distortionCorrection",
    "android.heic",
    "android.heic.info",
    "android.automotive",
    "android.automotive.lens",
};

unsigned int camera_metadata_section_bounds[ANDROID_SECTION_COUNT][2] = {
    {ANDROID_COLOR_CORRECTION_START, ANDROID_COLOR_CORRECTION_END},
    {ANDROID_CONTROL_START, ANDROID_CONTROL_END},
    {ANDROID_DEMOSAIC_START, ANDROID_DEMOSAIC_END},
    {ANDROID_EDGE_START, ANDROID_EDGE_END},
    {ANDROID_FLASH_START, ANDROID_FLASH_END},
    {ANDROID_FLASH_INFO_START, ANDROID_FLASH_INFO_END},
    {ANDROID_HOT_PIXEL_START, ANDROID_HOT_PIXEL_END},
    {ANDROID_JPEG_START, ANDROID_JPEG_END},
    {ANDROID_LENS_START, ANDROID_LENS_END},
    {ANDROID_LENS_INFO_START, ANDROID_LENS_INFO_END},
    {ANDROID_NOISE_REDUCTION_START, ANDROID_NOISE_REDUCTION_END},
    {ANDROID_QUIRKS_START, ANDROID_QUIRKS_END},
    {ANDROID_REQUEST_START, ANDROID_REQUEST_END},
    {ANDROID_SCALER_START, ANDROID_SCALER_END},
    {ANDROID_SENSOR_START, ANDROID_SENSOR_END},
    {ANDROID_SENSOR_INFO_START, ANDROID_SENSOR_INFO_END},
    {ANDROID_SHADING_START, ANDROID_SHADING_END},
    {ANDROID_STATISTICS_START, ANDROID_STATISTICS_END},
    {ANDROID_STATISTICS_INFO_START, ANDROID_STATISTICS_INFO_END},
    {ANDROID_TONEMAP_START, ANDROID_TONEMAP_END},
    {ANDROID_LED_START, ANDROID_LED_END},
    {ANDROID_INFO_START, ANDROID_INFO_END},
    {ANDROID_BLACK_LEVEL_START, ANDROID_BLACK_LEVEL_END},
    {ANDROID_SYNC_START, ANDROID_SYNC_END},
    {ANDROID_REPROCESS_START, ANDROID_REPROCESS_END},
    {ANDROID_DEPTH_START, ANDROID_DEPTH_END},
    {ANDROID_LOGICAL_MULTI_CAMERA_START, ANDROID_LOGICAL_MULTI_CAMERA_END},
    {ANDROID_DISTORTION_CORRECTION_START, ANDROID_DISTORTION_CORRECTION_END},
    {ANDROID_HEIC_START, ANDROID_HEIC_END},
    {ANDROID_HEIC_INFO_START, ANDROID_HEIC_INFO_END},
    {ANDROID_AUTOMOTIVE_START, ANDROID_AUTOMOTIVE_END},
    {ANDROID_AUTOMOTIVE_LENS_START, ANDROID_AUTOMOTIVE_LENS_END},
};

}  // extern "C"

namespace {

const tag_info_t
    kAndroidColorCorrection[ANDROID_COLOR_CORRECTION_END - ANDROID_COLOR_CORRECTION_START] = {
        {"mode", TYPE_BYTE},
        {"transform", TYPE_RATIONAL},
        {"gains", TYPE_FLOAT},
        {"aberrationMode", TYPE_BYTE},
        {"availableAberrationModes", TYPE_BYTE},
};

const tag_info_t kAndroidControl[ANDROID_CONTROL_END - ANDROID_CONTROL_START] = {
    {"aeAntibandingMode", TYPE_BYTE},
    {"aeExposureCompensation", TYPE_INT32},
    {"aeLock", TYPE_BYTE},
    {"aeMode", TYPE_BYTE},
    {"aeRegions", TYPE_INT32},
    {"aeTargetFpsRange", TYPE_INT32},
    {"aePrecaptureTrigger", TYPE_BYTE},
    {"afMode", TYPE_BYTE},
    {"afRegions", TYPE_INT32},
    {"afTrigger", TYPE_BYTE},
    {"awbLock", TYPE_BYTE},
    {"awbMode", TYPE_BYTE},
    {"awbRegions", TYPE_INT32},
    {"captureIntent", TYPE_BYTE},
    {"effectMode", TYPE_BYTE},
    {"mode", TYPE_BYTE},
    {"sceneMode", TYPE_BYTE},
    {"videoStabilizationMode", TYPE_BYTE},
    {"aeAvailableAntibandingModes", TYPE_BYTE},
    {"aeAvailableModes", TYPE_BYTE},
    {"aeAvailableTargetFpsRanges", TYPE_INT32},
    {"aeCompensationRange", TYPE_INT32},
    {"aeCompensationStep", TYPE_RATIONAL},
    {"afAvailableModes", TYPE_BYTE},
    {"availableEffects", TYPE_BYTE},
    {"availableSceneModes", TYPE_BYTE},
    {"availableVideoStabilizationModes", TYPE_BYTE},
    {"awbAvailableModes", TYPE_BYTE},
    {"maxRegions", TYPE_INT32},
    {"sceneModeOverrides", TYPE_BYTE},
    {"aePrecaptureId", TYPE_INT32},
    {"aeState", TYPE_BYTE},
    {"afState", TYPE_BYTE},
    {"afTriggerId", TYPE_INT32},
    {"awbState", TYPE_BYTE},
    {"availableHighSpeedVideoConfigurations", TYPE_INT32},
    {"aeLockAvailable", TYPE_BYTE},
    {"awbLockAvailable", TYPE_BYTE},
    {"availableModes", TYPE_BYTE},
    {"postRawSensitivityBoostRange", TYPE_INT32},
    {"postRawSensitivityBoost", TYPE_INT32},
    {"enableZsl", TYPE_BYTE},
    {"afSceneChange", TYPE_BYTE},
    {"availableExtendedSceneModeMaxSizes", TYPE_INT32},
    {"availableExtendedSceneModeZoomRatioRanges", TYPE_FLOAT},
    {"extendedSceneMode", TYPE_BYTE},
    {"zoomRatioRange", TYPE_FLOAT},
    {"zoomRatio", TYPE_FLOAT},
    {"availableHighSpeedVideoConfigurationsMaximumResolution", TYPE_INT32},
    {"afRegionsSet", TYPE_BYTE},
    {"aeRegionsSet", TYPE_BYTE},
    {"awbRegionsSet", TYPE_BYTE},
};

const tag_info_t kAndroidDemosaic[ANDROID_DEMOSAIC_END - ANDROID_DEMOSAIC_START] = {
    {"mode", TYPE_BYTE},
};

const tag_info_t kAndroidEdge[ANDROID_EDGE_END - ANDROID_EDGE_START] = {
    {"mode", TYPE_BYTE},
    {"strength", TYPE_BYTE},
    {"availableEdgeModes", TYPE_BYTE},
};

const tag_info_t kAndroidFlash[ANDROID_FLASH_END - ANDROID_FLASH_START] = {
    {"firingPower", TYPE_BYTE},      {"firingTime", TYPE_INT64}, {"mode", TYPE_BYTE},
    {"colorTemperature", TYPE_BYTE}, {"maxEnergy", TYPE_BYTE},   {"state", TYPE_BYTE},
};

const tag_info_t kAndroidFlashInfo[ANDROID_FLASH_INFO_END - ANDROID_FLASH_INFO_START] = {
    {"available", TYPE_BYTE},
    {"chargeDuration", TYPE_INT64},
    {"strengthMaximumLevel", TYPE_INT32},
    {"strengthDefaultLevel", TYPE_INT32},
};

const tag_info_t kAndroidHotPixel[ANDROID_HOT_PIXEL_END - ANDROID_HOT_PIXEL_START] = {
    {"mode", TYPE_BYTE},
    {"availableHotPixelModes", TYPE_BYTE},
};

const tag_info_t kAndroidJpeg[ANDROID_JPEG_END - ANDROID_JPEG_START] = {
    {"gpsCoordinates", TYPE_DOUBLE}, {"gpsProcessingMethod", TYPE_BYTE},
    {"gpsTimestamp", TYPE_INT64},    {"orientation", TYPE_INT32},
    {"quality", TYPE_BYTE},          {"thumbnailQuality", TYPE_BYTE},
    {"thumbnailSize", TYPE_INT32},   {"availableThumbnailSizes", TYPE_INT32},
    {"maxSize", TYPE_INT32},         {"size", TYPE_INT32},
};

const tag_info_t kAndroidLens[ANDROID_LENS_END - ANDROID_LENS_START] = {
    {"aperture", TYPE_FLOAT},
    {"filterDensity", TYPE_FLOAT},
    {"focalLength", TYPE_FLOAT},
    {"focusDistance", TYPE_FLOAT},
    {"opticalStabilizationMode", TYPE_BYTE},
    {"facing", TYPE_BYTE},
    {"poseRotation", TYPE_FLOAT},
    {"poseTranslation", TYPE_FLOAT},
    {"focusRange", TYPE_FLOAT},
    {"state", TYPE_BYTE},
    {"intrinsicCalibration", TYPE_FLOAT},
    {"radialDistortion", TYPE_FLOAT},
    {"poseReference", TYPE_BYTE},
    {"distortion", TYPE_FLOAT},
    {"distortionMaximumResolution", TYPE_FLOAT},
    {"intrinsicCalibrationMaximumResolution", TYPE_FLOAT},
};

const tag_info_t kAndroidLensInfo[ANDROID_LENS_INFO_END - ANDROID_LENS_INFO_START] = {
    {"availableApertures", TYPE_FLOAT},    {"availableFilterDensities", TYPE_FLOAT},
    {"availableFocalLengths", TYPE_FLOAT}, {"availableOpticalStabilization", TYPE_BYTE},
    {"hyperfocalDistance", TYPE_FLOAT},    {"minimumFocusDistance", TYPE_FLOAT},
    {"shadingMapSize", TYPE_INT32},        {"focusDistanceCalibration", TYPE_BYTE},
};

const tag_info_t kAndroidNoiseReduction[ANDROID_NOISE_REDUCTION_END - ANDROID_NOISE_REDUCTION_START] = {
    {"mode", TYPE_BYTE},
    {"strength", TYPE_BYTE},
    {"availableNoiseReductionModes", TYPE_BYTE},
};

const tag_info_t kAndroidQuirks[ANDROID_QUIRKS_END - ANDROID_QUIRKS_START] = {
    {"meteringCropRegion", TYPE_BYTE}, {"triggerAfWithAuto", TYPE_BYTE},
    {"useZslFormat", TYPE_BYTE},       {"usePartialResult", TYPE_BYTE},
    {"partialResult", TYPE_BYTE},
};

const tag_info_t kAndroidRequest[ANDROID_REQUEST_END - ANDROID_REQUEST_START] = {
    {"frameCount", TYPE_INT32},
    {"id", TYPE_INT32},
    {"inputStreams", TYPE_INT32},
    {"metadataMode", TYPE_BYTE},
    {"outputStreams", TYPE_INT32},
    {"type", TYPE_BYTE},
    {"maxNumOutputStreams", TYPE_INT32},
    {"maxNumReprocessStreams", TYPE_INT32},
    {"maxNumInputStreams", TYPE_INT32},
    {"pipelineDepth", TYPE_BYTE},
    {"pipelineMaxDepth", TYPE_BYTE},
    {"partialResultCount", TYPE_INT32},
    {"availableCapabilities", TYPE_BYTE},
    {"availableRequestKeys", TYPE_INT32},
    {"availableResultKeys", TYPE_INT32},
    {"availableCharacteristicsKeys", TYPE_INT32},
    {"availableSessionKeys", TYPE_INT32},
    {"availablePhysicalCameraRequestKeys", TYPE_INT32},
    {"characteristicKeysNeedingPermission", TYPE_INT32},
    {"availableDynamicRangeProfilesMap", TYPE_INT64},
    {"recommendedTenBitDynamicRangeProfile", TYPE_INT64},
};

const tag_info_t kAndroidScaler[ANDROID_SCALER_END - ANDROID_SCALER_START] = {
    {"cropRegion", TYPE_INT32},
    {"availableFormats", TYPE_INT32},
    {"availableJpegMinDurations", TYPE_INT64},
    {"availableJpegSizes", TYPE_INT32},
    {"availableMaxDigitalZoom", TYPE_FLOAT},
    {"availableProcessedMinDurations", TYPE_INT64},
    {"availableProcessedSizes", TYPE_INT32},
    {"availableRawMinDurations", TYPE_INT64},
    {"availableRawSizes", TYPE_INT32},
    {"availableInputOutputFormatsMap", TYPE_INT32},
    {"availableStreamConfigurations", TYPE_INT32},
    {"availableMinFrameDurations", TYPE_INT64},
    {"availableStallDurations", TYPE_INT64},
    {"croppingType", TYPE_BYTE},
    {"availableRecommendedStreamConfigurations", TYPE_INT32},
    {"availableRecommendedInputOutputFormatsMap", TYPE_INT32},
    {"availableRotateAndCropModes", TYPE_BYTE},
    {"rotateAndCrop", TYPE_BYTE},
    {"defaultSecureImageSize", TYPE_INT32},
    {"physicalCameraMultiResolutionStreamConfigurations", TYPE_INT32},
    {"availableStreamConfigurationsMaximumResolution", TYPE_INT32},
    {"availableMinFrameDurationsMaximumResolution", TYPE_INT64},
    {"availableStallDurationsMaximumResolution", TYPE_INT64},
    {"availableInputOutputFormatsMapMaximumResolution", TYPE_INT32},
    {"multiResolutionStreamSupported", TYPE_BYTE},
    {"cropRegionSet", TYPE_BYTE},
    {"availableStreamUseCases", TYPE_INT64},
};

const tag_info_t kAndroidSensor[ANDROID_SENSOR_END - ANDROID_SENSOR_START] = {
    {"exposureTime", TYPE_INT64},
    {"frameDuration", TYPE_INT64},
    {"sensitivity", TYPE_INT32},
    {"referenceIlluminant1", TYPE_BYTE},
    {"referenceIlluminant2", TYPE_BYTE},
    {"calibrationTransform1", TYPE_RATIONAL},
    {"calibrationTransform2", TYPE_RATIONAL},
    {"colorTransform1", TYPE_RATIONAL},
    {"colorTransform2", TYPE_RATIONAL},
    {"forwardMatrix1", TYPE_RATIONAL},
    {"forwardMatrix2", TYPE_RATIONAL},
    {"baseGainFactor", TYPE_RATIONAL},
    {"blackLevelPattern", TYPE_INT32},
    {"maxAnalogSensitivity", TYPE_INT32},
    {"orientation", TYPE_INT32},
    {"profileHueSatMapDimensions", TYPE_INT32},
    {"timestamp", TYPE_INT64},
    {"temperature", TYPE_FLOAT},
    {"neutralColorPoint", TYPE_RATIONAL},
    {"noiseProfile", TYPE_DOUBLE},
    {"profileHueSatMap", TYPE_FLOAT},
    {"profileToneCurve", TYPE_FLOAT},
    {"greenSplit", TYPE_FLOAT},
    {"testPatternData", TYPE_INT32},
    {"testPatternMode", TYPE_INT32},
    {"availableTestPatternModes", TYPE_INT32},
    {"rollingShutterSkew", TYPE_INT64},
    {"opticalBlackRegions", TYPE_INT32},
    {"dynamicBlackLevel", TYPE_FLOAT},
    {"dynamicWhiteLevel", TYPE_INT32},
    {"opaqueRawSize", TYPE_INT32},
    {"opaqueRawSizeMaximumResolution", TYPE_INT32},
    {"pixelMode", TYPE_BYTE},
    {"rawBinningFactorUsed", TYPE_BYTE},
};

const tag_info_t kAndroidSensorInfo[ANDROID_SENSOR_INFO_END - ANDROID_SENSOR_INFO_START] = {
    {"activeArraySize", TYPE_INT32},
    {"sensitivityRange", TYPE_INT32},
    {"colorFilterArrangement", TYPE_BYTE},
    {"exposureTimeRange", TYPE_INT64},
    {"maxFrameDuration", TYPE_INT64},
    {"physicalSize", TYPE_FLOAT},
    {"pixelArraySize", TYPE_INT32},
    {"whiteLevel", TYPE_INT32},
    {"timestampSource", TYPE_BYTE},
    {"lensShadingApplied", TYPE_BYTE},
    {"preCorrectionActiveArraySize", TYPE_INT32},
    {"activeArraySizeMaximumResolution", TYPE_INT32},
    {"pixelArraySizeMaximumResolution", TYPE_INT32},
    {"preCorrectionActiveArraySizeMaximumResolution", TYPE_INT32},
    {"binningFactor", TYPE_INT32},
};

const tag_info_t kAndroidShading[ANDROID_SHADING_END - ANDROID_SHADING_START] = {
    {"mode", TYPE_BYTE},
    {"strength", TYPE_BYTE},
    {"availableModes", TYPE_BYTE},
};

const tag_info_t kAndroidStatistics[ANDROID_STATISTICS_END - ANDROID_STATISTICS_START] = {
    {"faceDetectMode", TYPE_BYTE},
    {"histogramMode", TYPE_BYTE},
    {"sharpnessMapMode", TYPE_BYTE},
    {"hotPixelMapMode", TYPE_BYTE},
    {"faceIds", TYPE_INT32},
    {"faceLandmarks", TYPE_INT32},
    {"faceRectangles", TYPE_INT32},
    {"faceScores", TYPE_BYTE},
    {"histogram", TYPE_INT32},
    {"sharpnessMap", TYPE_INT32},
    {"lensShadingCorrectionMap", TYPE_BYTE},
    {"lensShadingMap", TYPE_FLOAT},
    {"predictedColorGains", TYPE_FLOAT},
    {"predictedColorTransform", TYPE_RATIONAL},
    {"sceneFlicker", TYPE_BYTE},
    {"hotPixelMap", TYPE_INT32},
    {"lensShadingMapMode", TYPE_BYTE},
    {"oisDataMode", TYPE_BYTE},
    {"oisTimestamps", TYPE_INT64},
    {"oisXShifts", TYPE_FLOAT},
    {"oisYShifts", TYPE_FLOAT},
};

const tag_info_t kAndroidStatisticsInfo[ANDROID_STATISTICS_INFO_END - ANDROID_STATISTICS_INFO_START] = {
    {"availableFaceDetectModes", TYPE_BYTE},
    {"histogramBucketCount", TYPE_INT32},
    {"maxFaceCount", TYPE_INT32},
    {"maxHistogramCount", TYPE_INT32},
    {"maxSharpnessMapValue", TYPE_INT32},
    {"sharpnessMapSize", TYPE_INT32},
    {"availableHotPixelMapModes", TYPE_BYTE},
    {"availableLensShadingMapModes", TYPE_BYTE},
    {"availableOisDataModes", TYPE_BYTE},
};

const tag_info_t kAndroidTonemap[ANDROID_TONEMAP_END - ANDROID_TONEMAP_START] = {
    {"curveBlue", TYPE_FLOAT}, {"curveGreen", TYPE_FLOAT},     {"curveRed", TYPE_FLOAT},
    {"mode", TYPE_BYTE},       {"maxCurvePoints", TYPE_INT32}, {"availableToneMapModes", TYPE_BYTE},
    {"gamma", TYPE_FLOAT},     {"presetCurve", TYPE_BYTE},
};

const tag_info_t kAndroidLed[ANDROID_LED_END - ANDROID_LED_START] = {
    {"transmit", TYPE_BYTE},
    {"availableLeds", TYPE_BYTE},
};

const tag_info_t kAndroidInfo[ANDROID_INFO_END - ANDROID_INFO_START] = {
    {"supportedHardwareLevel", TYPE_BYTE},
    {"version", TYPE_BYTE},
    {"supportedBufferManagementVersion", TYPE_BYTE},
    {"deviceStateOrientations", TYPE_INT64},
};

const tag_info_t kAndroidBlackLevel[ANDROID_BLACK_LEVEL_END - ANDROID_BLACK_LEVEL_START] = {
    {"lock", TYPE_BYTE},
};

const tag_info_t kAndroidSync[ANDROID_SYNC_END - ANDROID_SYNC_START] = {
    {"frameNumber", TYPE_INT64},
    {"maxLatency", TYPE_INT32},
};

const tag_info_t kAndroidReprocess[ANDROID_REPROCESS_END - ANDROID_REPROCESS_START] = {
    {"effectiveExposureFactor", TYPE_FLOAT},
    {"maxCaptureStall", TYPE_INT32},
};

const tag_info_t kAndroidDepth[ANDROID_DEPTH_END - ANDROID_DEPTH_START] = {
    {"maxDepthSamples", TYPE_INT32},
    {"availableDepthStreamConfigurations", TYPE_INT32},
    {"availableDepthMinFrameDurations", TYPE_INT64},
    {"availableDepthStallDurations", TYPE_INT64},
    {"depthIsExclusive", TYPE_BYTE},
    {"availableRecommendedDepthStreamConfigurations", TYPE_INT32},
    {"availableDynamicDepthStreamConfigurations", TYPE_INT32},
    {"availableDynamicDepthMinFrameDurations", TYPE_INT64},
    {"availableDynamicDepthStallDurations", TYPE_INT64},
    {"availableDepthStreamConfigurationsMaximumResolution", TYPE_INT32},
    {"availableDepthMinFrameDurationsMaximumResolution", TYPE_INT64},
    {"availableDepthStallDurationsMaximumResolution", TYPE_INT64},
    {"availableDynamicDepthStreamConfigurationsMaximumResolution", TYPE_INT32},
    {"availableDynamicDepthMinFrameDurationsMaximumResolution", TYPE_INT64},
    {"availableDynamicDepthStallDurationsMaximumResolution", TYPE_INT64},
};

const tag_info_t kAndroidLogicalMultiCamera[ANDROID_LOGICAL_MULTI_CAMERA_END -
                                            ANDROID_LOGICAL_MULTI_CAMERA_START] = {
    {"physicalIds", TYPE_BYTE},
    {"sensorSyncType", TYPE_BYTE},
    {"activePhysicalId", TYPE_BYTE},
};

const tag_info_t kAndroidDistortionCorrection[ANDROID_DISTORTION_CORRECTION_END -
                                              ANDROID_DISTORTION_CORRECTION_START] = {
    {"mode", TYPE_BYTE},
    {"availableModes", TYPE_BYTE},
};

const tag_info_t kAndroidHeic[ANDROID_HEIC_END - ANDROID_HEIC_START] = {
    {"availableHeicStreamConfigurations", TYPE_INT32},
    {"availableHeicMinFrameDurations", TYPE_INT64},
    {"availableHeicStallDurations", TYPE_INT64},
    {"availableHeicStreamConfigurationsMaximumResolution", TYPE_INT32},
    {"availableHeicMinFrameDurationsMaximumResolution", TYPE_INT64},
    {"availableHeicStallDurationsMaximumResolution", TYPE_INT64},
};

const tag_info_t kAndroidHeicInfo[ANDROID_HEIC_INFO_END - ANDROID_HEIC_INFO_START] = {
    {"supported", TYPE_BYTE},
    {"maxJpegAppSegmentsCount", TYPE_BYTE},
};

const tag_info_t kAndroidAutomotive[ANDROID_AUTOMOTIVE_END - ANDROID_AUTOMOTIVE_START] = {
    {"location", TYPE_BYTE},
};

const tag_info_t kAndroidAutomotiveLens[ANDROID_AUTOMOTIVE_LENS_END - ANDROID_AUTOMOTIVE_LENS_START] = {
    {"facing", TYPE_BYTE},
};

}  // namespace

const tag_info_t* const camera_metadata_tag_info[ANDROID_SECTION_COUNT] = {
    kAndroidColorCorrection,
    kAndroidControl,
    kAndroidDemosaic,
    kAndroidEdge,
    kAndroidFlash,
    kAndroidFlashInfo,
    kAndroidHotPixel,
    kAndroidJpeg,
    kAndroidLens,
    kAndroidLensInfo,
    kAndroidNoiseReduction,
    kAndroidQuirks,
    kAndroidRequest,
    kAndroidScaler,
    kAndroidSensor,
    kAndroidSensorInfo,
    kAndroidShading,
    kAndroidStatistics,
    kAndroidStatisticsInfo,
    kAndroidTonemap,
    kAndroidLed,
    kAndroidInfo,
    kAndroidBlackLevel,
    kAndroidSync,
    kAndroidReprocess,
    kAndroidDepth,
    kAndroidLogicalMultiCamera,
    kAndroidDistortionCorrection,
    kAndroidHeic,
    kAndroidHeicInfo,
    kAndroidAutomotive,
    kAndroidAutomotiveLens,
};

const int32_t camera_metadata_permission_needed[] = {
    ANDROID_LENS_POSE_ROTATION,
    ANDROID_LENS_POSE_TRANSLATION,
    ANDROID_LENS_INTRINSIC_CALIBRATION,
    ANDROID_LENS_RADIAL_DISTORTION,
    ANDROID_LENS_POSE_REFERENCE,
    ANDROID_LENS_DISTORTION,
    ANDROID_LENS_DISTORTION_MAXIMUM_RESOLUTION,
    ANDROID_LENS_INTRINSIC_CALIBRATION_MAXIMUM_RESOLUTION,
    ANDROID_LENS_INFO_HYPERFOCAL_DISTANCE,
    ANDROID_LENS_INFO_MINIMUM_FOCUS_DISTANCE,
    ANDROID_SENSOR_REFERENCE_ILLUMINANT1,
    ANDROID_SENSOR_REFERENCE_ILLUMINANT2,
    ANDROID_SENSOR_CALIBRATION_TRANSFORM1,
    ANDROID_SENSOR_CALIBRATION_TRANSFORM2,
    ANDROID_SENSOR_COLOR_TRANSFORM1,
    ANDROID_SENSOR_COLOR_TRANSFORM2,
    ANDROID_SENSOR_FORWARD_MATRIX1,
    ANDROID_SENSOR_FORWARD_MATRIX2,
};

const uint32_t camera_metadata_permission_needed_count =
    sizeof(camera_metadata_permission_needed) / sizeof(camera_metadata_permission_needed[0]);
