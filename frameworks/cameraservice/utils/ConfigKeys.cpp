#include "utils/ConfigKeys.h"

namespace android {
namespace vantu {

namespace {

constexpr const char kChipRules[] = "chip size rules, API1 parameters";

constexpr ConfigKey kKeys[] = {
    // Feature switches.
    {"feature_cts_enable", ConfigType::Bool, "true",
     "test-suite exemptions: app classes, torch, eviction, characteristics"},
    {"feature_government_enalbe", ConfigType::Bool, "true",
     "open-camera and torch policy properties"},
    {"feature_cameramdm", ConfigType::Bool, "false", "device-management camera policy at connect"},
    {"feature_fold_enable", ConfigType::Bool, "false",
     "fold state: connect, eviction, request tags"},
    {"feature_3a_enable", ConfigType::Bool, "true", "AE/AF debug flag at connect"},
    {"feature_flash_enable", ConfigType::Bool, "true",
     "flash: connect, meta stream, request tags, results"},
    {"feature_torchpkg", ConfigType::Bool, "false", "torch: tell device management the package"},
    {"motor_flash", ConfigType::Bool, nullptr, "torch and request flash through the pop-up motor"},
    {"feature_sound_enable", ConfigType::Bool, "true", "shutter sound suppression"},
    {"feature_enable_fwk_timer", ConfigType::Bool, "true", "framework timer"},
    {"feature_multiwin_camera_support", ConfigType::Bool, "false", "multi-window camera"},
    {"feature_zumio_enable", ConfigType::Bool, "false", "avatar video calls"},
    {"feature_aon_enable", ConfigType::Bool, "false", "always-on camera"},
    {"feature_aps_enable", ConfigType::Bool, "true", "frame processing and avatar"},
    {"feature_auth_enable", ConfigType::Bool, "true", "camera SDK authorisation"},
    {"feature_motor_enable", ConfigType::Bool, "true", "pop-up motor"},
    {"feature_rio_enable", ConfigType::Bool, "true", "magnetic accessory torch"},
    {"app_enable_rio", ConfigType::Bool, "false", "magnetic accessory torch: per-app switch"},
    {"feature_evication_enable", ConfigType::Bool, "true", "intelligent eviction"},
    {"feature_explorer_enable", ConfigType::Bool, "false", "eviction: explorer cost override"},
    {"feature_preempt_enable", ConfigType::Bool, "true", "eviction (sm4350, sm6225)"},
    {"isFreeDomEvictionPackge", ConfigType::Bool, "false",
     "eviction: packages that evict every client"},
    {"Limit_Intelligent_Eviction", ConfigType::Bool, "false",
     "eviction (sm4350, sm8350): skip the rules"},
    {"isForceEviction", ConfigType::Bool, "false", "eviction (sm6225): front/rear share a GPIO"},
    {"faceunlock_eviction_enable", ConfigType::Bool, "false",
     "eviction (sm8350): face unlock vs system camera"},
    {"isNeedAddDelayPackage", ConfigType::Bool, "false", "eviction (sm7125): wait for occupant"},
    {"feature_get_temperature_enable", ConfigType::Bool, "false",
     "thermal: temperatures in requests"},
    {"feature_resolution_enable", ConfigType::Bool, "true",
     "characteristics, chip size rules, API1: size limits"},
    {"feature_fps_enable", ConfigType::Bool, "true", "API1 parameters: frame rates"},
    {"feature_remosaic_enable", ConfigType::Bool, "false", "performance: JPEG buffer size"},
    {"disableDisplaySync", ConfigType::Bool, "true", "performance (sm4350, sm6225): display sync"},
    {"needFixFilterIssue", ConfigType::Bool, "false",
     "performance (sm7250, sm8250): video timestamp filter"},
    {"thirdPartyAppLimitPicture", ConfigType::Bool, "true",
     "characteristics: third-party limit covers JPEG"},
    // Integers with constant defaults.
    {"explorer_override_cost", ConfigType::Int, nullptr, "eviction: explorer resource cost"},
    {"supportExplorerCameraMask", ConfigType::Int, "0", "eviction: explorer cameras (bit per id)"},
    {"MinExposureTime", ConfigType::Int, "100000", "chip size rules: exposure range"},
    {"MaxExposureTime", ConfigType::Int, "200000", "chip size rules: exposure range"},
    {"maxFrontWidthForCts", ConfigType::Int, "99999", "chip size rules: CTS front sizes"},
    {"maxFrontHeightForCts", ConfigType::Int, "99999", "chip size rules: CTS front sizes"},
    {"limitWidthForSurface", ConfigType::Int, "1920", "characteristics: surface size limit"},
    {"limitWidthForSurfaceCam0", ConfigType::Int, "1920",
     "characteristics: surface size limit, camera 0"},
    {"limitHeightForSurface", ConfigType::Int, "1080", "characteristics: surface size limit"},
    {"limitHeightForSurfaceCam0", ConfigType::Int, "1080",
     "characteristics: surface size limit, camera 0"},
    {"defaultMaxPreviewWidth", ConfigType::Int, "2340", "API1 parameters: preview size"},
    {"defaultMaxPreviewHeight", ConfigType::Int, "2340", "API1 parameters: preview size"},
    {"thirdPartyAppWidthLimitForCam0", ConfigType::Int, "0",
     "characteristics: third-party size limit, camera 0"},
    {"thirdPartyAppHeightLimitForCam0", ConfigType::Int, "0",
     "characteristics: third-party size limit, camera 0"},
    {"thirdPartyAppWidthLimitForCam1", ConfigType::Int, "0",
     "characteristics: third-party size limit, camera 1"},
    {"thirdPartyAppHeightLimitForCam1", ConfigType::Int, "0",
     "characteristics: third-party size limit, camera 1"},
    {"maxPreviewWidth", ConfigType::Int, "0",
     "characteristics: third-party size limit, other cameras"},
    {"maxPreviewHeight", ConfigType::Int, "0",
     "characteristics: third-party size limit, other cameras"},
    // Package lists.
    {"privileged_app_list", ConfigType::StringArray, nullptr,
     "app classes: privileged apps (prefix match)"},
    {"skip_rus_check_list", ConfigType::StringArray, nullptr,
     "connect, characteristics: no per-app settings"},
    {"disable_camera_shutter_sound_app_list", ConfigType::StringArray, nullptr,
     "shutter sound suppression"},
    {"forbit_3rd_app_reconfigure", ConfigType::StringArray, nullptr,
     "result adjustment: stream reconfiguration"},
    {"reject_3rd_app_stop_preview", ConfigType::StringArray, nullptr,
     "result adjustment: torch switching"},
    {"app_disable_fb_activity", ConfigType::StringArray, nullptr,
     "frame processing: activities without beauty"},
    {"limit_3rd_app_size", ConfigType::StringArray, nullptr, "pop-up motor: size limits"},
    {"limit_3rd_app_size_byLevel", ConfigType::StringArray, nullptr,
     "pop-up motor: size limit level"},
    {"up_motor_in_configure", ConfigType::StringArray, nullptr,
     "pop-up motor: raise at stream configuration"},
    {"disconnect_wait_list", ConfigType::StringArray, nullptr,
     "eviction (mt6765): wait for these occupants"},
    {"enable_occupied_duration_list", ConfigType::StringArray, nullptr,
     "eviction (sm8250, sm8450): wait for the occupant"},
    {"is_need_delay_connect", ConfigType::StringArray, nullptr,
     "eviction (sm7125): delayed connect"},
    {"skip_connect_app_list", ConfigType::StringArray, nullptr, "chip connect rules"},
    {"request_time_out_10ms", ConfigType::StringArray, nullptr, "chip request rules"},
    {"limit_activity", ConfigType::StringArray, nullptr, "chip size rules"},
    {"skip_front_preview_limit_list", ConfigType::StringArray, nullptr, "chip size rules"},
    {"change_camera_picture_size_app_list", ConfigType::StringArray, nullptr, "chip size rules"},
    {"third_camera_temperature_list", ConfigType::StringArray, nullptr, "thermal: 3rd-party apps"},
    {"resolutionFilterForLimitITSSize", ConfigType::StringArray, nullptr, "chip size rules: ITS"},
    {"resolutionFilterForNotAddPreviewSizeAPI1", ConfigType::StringArray, nullptr,
     "API1 parameters: preview sizes"},
    {"resolutionFilterForNotAddSizeAPI1", ConfigType::StringArray, nullptr,
     "API1 parameters: sizes"},
    {"resolutionFilterForNotAddSizeAPI2", ConfigType::StringArray, nullptr,
     "chip size rules: API2 sizes"},
    // Flattened size and range lists.
    {"limitExposureTimeRangeForIts", ConfigType::IntArray, nullptr, "chip size rules: CTS sizes"},
    {"limitSizeListForCts", ConfigType::IntArray, nullptr, "chip size rules: CTS sizes"},
    {"limitSizeListForCtsVerifier", ConfigType::IntArray, nullptr, "chip size rules: CTS sizes"},
    {"limitThumbnailSizeListForCts", ConfigType::IntArray, nullptr, "chip size rules: CTS sizes"},
    {"skipSizeListForCtsAPI2", ConfigType::IntArray, nullptr, "chip size rules: CTS sizes"},
    {"skipSizeListForCtsVerifier", ConfigType::IntArray, nullptr, "chip size rules: CTS sizes"},
    // Size and frame-rate shaping of the chip classes and API1 parameters; the callers pass
    // their current value as the default.
    {"LimitSpecificPictureSizeForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"addAFTrigger", ConfigType::Bool, nullptr, kChipRules},
    {"adjustInvalidFpsForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"adjustPreviewFpsForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"adjust_exposure_time_parameter", ConfigType::Bool, nullptr, kChipRules},
    {"api2_limit_size", ConfigType::Bool, nullptr, kChipRules},
    {"checkToAddPreviewCallbackForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"feature_7450project_enable", ConfigType::Bool, nullptr, kChipRules},
    {"feature_fov_enable", ConfigType::Bool, nullptr, kChipRules},
    {"feature_general_enable", ConfigType::Bool, nullptr, kChipRules},
    {"feature_resolution_SM4350", ConfigType::Bool, nullptr, kChipRules},
    {"feature_xts_skiprawsize_enable", ConfigType::Bool, nullptr, kChipRules},
    {"forceLimitSurfaceRatio", ConfigType::Bool, nullptr, kChipRules},
    {"forceLimitSurfaceRatio16By9", ConfigType::Bool, nullptr, kChipRules},
    {"forceLimitSurfaceRatio4By3", ConfigType::Bool, nullptr, kChipRules},
    {"forceSetPreview", ConfigType::Bool, nullptr, kChipRules},
    {"isSkipLensMovementReporting", ConfigType::Bool, nullptr, kChipRules},
    {"isSkipfusion", ConfigType::Bool, nullptr, kChipRules},
    {"limitAPI2Picture", ConfigType::Bool, nullptr, kChipRules},
    {"limitFrontSize", ConfigType::Bool, nullptr, kChipRules},
    {"limitPicture", ConfigType::Bool, nullptr, kChipRules},
    {"limitSizeForSurfaceCam0", ConfigType::Bool, nullptr, kChipRules},
    {"limit_preview_size_ratio", ConfigType::Bool, nullptr, kChipRules},
    {"limitpictureratio_20_9", ConfigType::Bool, nullptr, kChipRules},
    {"limitpictureratio_API1_16_9", ConfigType::Bool, nullptr, kChipRules},
    {"mdm_v2", ConfigType::Bool, nullptr, kChipRules},
    {"needAllPreviewSizeForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"needLimitFpsForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"needLimitPictureSize", ConfigType::Bool, nullptr, kChipRules},
    {"needlimitSizeForSurface", ConfigType::Bool, nullptr, kChipRules},
    {"preview_size_limit", ConfigType::Bool, nullptr, kChipRules},
    {"updateFlashModeForAPI1", ConfigType::Bool, nullptr, kChipRules},
    {"use4By3AspectRatioOnly", ConfigType::Bool, nullptr, kChipRules},
    {"useCtsSize", ConfigType::Bool, nullptr, kChipRules},
    {"adjustPreviewFpsForAPI1Min", ConfigType::Int, nullptr, kChipRules},
    {"appPreviewHeightForAPI2", ConfigType::Int, nullptr, kChipRules},
    {"appPreviewWidthForAPI2", ConfigType::Int, nullptr, kChipRules},
    {"forcePreviewSizeForAPI1Height", ConfigType::Int, nullptr, kChipRules},
    {"forcePreviewSizeForAPI1Width", ConfigType::Int, nullptr, kChipRules},
    {"limitAPI2Height", ConfigType::Int, nullptr, kChipRules},
    {"limitAPI2Width", ConfigType::Int, nullptr, kChipRules},
    {"maxFps", ConfigType::Int, nullptr, kChipRules},
    {"maxHeightFilterForNotAddSizeAPI1", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewHeightForAPI1", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewHeightForAPI2", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewHeightForAPI2cameraId0", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewHeightForAPI2cameraId1", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewHeightForCam0", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewWidthForAPI1", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewWidthForAPI2", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewWidthForAPI2cameraId0", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewWidthForAPI2cameraId1", ConfigType::Int, nullptr, kChipRules},
    {"maxPreviewWidthForCam0", ConfigType::Int, nullptr, kChipRules},
    {"maxRatioFilterForNotAddSizeAPI1", ConfigType::Int, nullptr, kChipRules},
    {"maxThirdPartyAppPreviewHeightForMotor", ConfigType::Int, nullptr, kChipRules},
    {"maxThirdPartyAppPreviewWidthForMotor", ConfigType::Int, nullptr, kChipRules},
    {"maxVideoCallFps", ConfigType::Int, nullptr, kChipRules},
    {"maxVideoHeight", ConfigType::Int, nullptr, kChipRules},
    {"maxVideoWidth", ConfigType::Int, nullptr, kChipRules},
    {"maxWidthFilterForNotAddSizeAPI1", ConfigType::Int, nullptr, kChipRules},
    {"minFps", ConfigType::Int, nullptr, kChipRules},
    {"minPreviewHeightForAPI1", ConfigType::Int, nullptr, kChipRules},
    {"minPreviewWidthForAPI1", ConfigType::Int, nullptr, kChipRules},
    {"minRatioFilterForNotAddSizeAPI1", ConfigType::Int, nullptr, kChipRules},
    {"minVideoCallFps", ConfigType::Int, nullptr, kChipRules},
    {"previewHeightForAPI2", ConfigType::Int, nullptr, kChipRules},
    {"previewSizeForAPI1Height", ConfigType::Int, nullptr, kChipRules},
    {"previewSizeForAPI1MAXHeight", ConfigType::Int, nullptr, kChipRules},
    {"previewSizeForAPI1MAXWidth", ConfigType::Int, nullptr, kChipRules},
    {"previewSizeForAPI1Width", ConfigType::Int, nullptr, kChipRules},
    {"previewWidthForAPI2", ConfigType::Int, nullptr, kChipRules},
    {"reduceHeightLimit", ConfigType::Int, nullptr, kChipRules},
    {"reduceWidthLimit", ConfigType::Int, nullptr, kChipRules},
    {"thirdPartyAppHeightLimitForCam0API2", ConfigType::Int, nullptr, kChipRules},
    {"thirdPartyAppHeightLimitForCam1API2", ConfigType::Int, nullptr, kChipRules},
    {"thirdPartyAppWidthLimitForCam0API2", ConfigType::Int, nullptr, kChipRules},
    {"thirdPartyAppWidthLimitForCam1API2", ConfigType::Int, nullptr, kChipRules},
};

}  // namespace

ConfigKeyTable configKeys() {
    return {kKeys, sizeof(kKeys) / sizeof(kKeys[0])};
}

const ConfigKey* findConfigKey(std::string_view name) {
    for (const ConfigKey& key : kKeys) {
        if (name == key.name) return &key;
    }
    return nullptr;
}

const char* configTypeName(ConfigType type) {
    switch (type) {
        case ConfigType::Bool:
            return "bool";
        case ConfigType::Int:
            return "int";
        case ConfigType::Double:
            return "double";
        case ConfigType::String:
            return "string";
        case ConfigType::BoolArray:
            return "bool[]";
        case ConfigType::IntArray:
            return "int[]";
        case ConfigType::DoubleArray:
            return "double[]";
        case ConfigType::StringArray:
            return "string[]";
    }
    return "?";
}

const char* configGetterName(ConfigType type) {
    switch (type) {
        case ConfigType::Bool:
            return "getBool";
        case ConfigType::Int:
            return "getInt";
        case ConfigType::Double:
            return "getDouble";
        case ConfigType::String:
            return "getString";
        case ConfigType::BoolArray:
            return "getBoolArray";
        case ConfigType::IntArray:
            return "getIntArray";
        case ConfigType::DoubleArray:
            return "getDoubleArray";
        case ConfigType::StringArray:
            return "getStringArray";
    }
    return "?";
}

bool isArrayType(ConfigType type) {
    return type == ConfigType::BoolArray || type == ConfigType::IntArray ||
           type == ConfigType::DoubleArray || type == ConfigType::StringArray;
}

json_type configValueJsonType(ConfigType type) {
    return isArrayType(type) ? json_type_array : configElementJsonType(type);
}

json_type configElementJsonType(ConfigType type) {
    switch (type) {
        case ConfigType::Bool:
        case ConfigType::BoolArray:
            return json_type_boolean;
        case ConfigType::Int:
        case ConfigType::IntArray:
            return json_type_int;
        case ConfigType::Double:
        case ConfigType::DoubleArray:
            return json_type_double;
        case ConfigType::String:
        case ConfigType::StringArray:
            return json_type_string;
    }
    return json_type_null;
}

}  // namespace vantu
}  // namespace android
