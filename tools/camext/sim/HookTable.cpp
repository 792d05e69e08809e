#include "sim/HookTable.h"

#include "sim/ScenarioPaths.h"

namespace camext {
namespace sim {

namespace {

constexpr ArgKind S = ArgKind::String;
constexpr ArgKind C = ArgKind::CameraId;
constexpr ArgKind B = ArgKind::Bool;
constexpr ArgKind I = ArgKind::Int;
constexpr ArgKind L = ArgKind::Int64;
constexpr ArgKind F = ArgKind::Float;
constexpr ArgKind M = ArgKind::Metadata;

HookParam in(const char* name, ArgKind kind) {
    return {name, kind, false};
}
HookParam io(const char* name, ArgKind kind) {
    return {name, kind, true};
}

const char* kindText(ArgKind kind) {
    switch (kind) {
        case ArgKind::String:
            return "a string";
        case ArgKind::CameraId:
            return "a camera id (\"1\" or 1)";
        case ArgKind::Bool:
            return "true or false";
        case ArgKind::Int:
        case ArgKind::Int64:
            return "an integer";
        case ArgKind::Float:
            return "a number";
        case ArgKind::Metadata:
            return "an object of metadata entries";
        case ArgKind::Sizes:
            return "a list of [width, height]";
        case ArgKind::Binder:
            return "a binder name or null";
        case ArgKind::Parcel:
            return "a list of parcel items";
    }
    return "?";
}

bool kindAccepts(ArgKind kind, const Json& v) {
    switch (kind) {
        case ArgKind::String:
            return v.isString();
        case ArgKind::CameraId:
            return v.isInt() || v.isString();
        case ArgKind::Bool:
            return v.isBool();
        case ArgKind::Int:
            return v.isInt() && v.asInt() >= -2147483648LL && v.asInt() <= 4294967295LL;
        case ArgKind::Int64:
            return v.isInt();
        case ArgKind::Float:
            return v.isNumber();
        case ArgKind::Metadata:
            return v.isObject();
        case ArgKind::Sizes: {
            if (!v.isArray()) return false;
            for (const auto& s : v.items()) {
                if (!s.isArray() || s.size() != 2 || !s.items()[0].isInt() ||
                    !s.items()[1].isInt()) {
                    return false;
                }
            }
            return true;
        }
        case ArgKind::Binder:
            return v.isString();
        case ArgKind::Parcel:
            return v.isArray();
    }
    return false;
}

}  // namespace

const std::vector<HookSpec>& hookSpecs() {
    static const std::vector<HookSpec> kSpecs = {
        {"afterConnect",
         {in("cameraId", S), in("package", S), in("systemNativeClient", B), in("vendorId", L),
          in("apiLevel", I)}},
        {"afterEndConfigure", {in("metadata", M), in("vendorId", L), in("cameraId", S)}},
        {"onTransact", {in("code", L), in("parcel", ArgKind::Parcel), in("flags", L)}},
        {"isPrivilegedApp", {in("uid", I)}},
        {"isSystemCameraUid", {in("uid", I)}},
        {"isCtsCamera", {}},
        {"isEnableFwkTimer", {}},
        {"getCameraCharacteristics", {in("cameraId", S), in("metadata", M)}},
        {"beforeConnect", {in("cameraId", S), io("package", S), in("systemNativeClient", B)}},
        {"clearNonCTSClient", {in("package", S)}},
        {"setCurrentPackageName", {in("package", S)}},
        {"beforeSetTorchMode", {in("cameraId", S), in("enabled", B)}},
        {"checkNotPlaySound", {}},
        {"afterDisconnect", {in("cameraId", S), in("package", S)}},
        {"onClientChange", {in("cameraId", S), in("added", B)}},
        {"initCameraInfos", {}},
        {"addListener", {}},
        {"removeListener", {}},
        {"isSupportExplorer", {in("cameraId", S), in("package", S)}},
        {"OverrideCost", {in("cameraId", S), in("package", S), in("cost", I)}},
        {"modifyWaitDuration", {io("duration", L), in("defaultDuration", L)}},
        {"beforeMetadataSendToApp", {in("cameraId", S), in("frame", L), in("metadata", M)}},
        {"returnOutputBuffers",
         {in("cameraId", S), in("timestamp", L), in("timestampIncreasing", B)}},
        {"sendCaptureResult",
         {in("cameraId", S), in("frame", L), in("metadata", M), in("reprocess", B),
          in("zslStillCapture", B), in("rotateAndCropAuto", B), in("requestTimeNs", L)}},
        {"checkToRemoveInFlightReqest", {in("cameraId", S), in("index", L)}},
        {"parseResult", {in("metadata", M)}},
        {"beforeConfigureStreamsLocked",
         {in("metadata", M), in("vendorId", L), in("cameraId", S), in("operatingMode", I)}},
        {"forbid3rdPartyAppReconfigureStream", {io("forbid", B)}},
        {"afterConfigureStreamsLocked", {in("metadata", M), in("vendorId", L), in("cameraId", S)}},
        {"flush", {in("cameraId", S)}},
        {"IsNewRequest", {in("newRequest", B), in("settingsOverride", B)}},
        {"onPrepareHalRequestsUpdateMetadata", {in("metadata", M), in("frame", L)}},
        {"afterSendRequestsBatch", {in("metadata", M), in("cameraId", S)}},
        {"setTorchIntensity", {in("metadata", M), in("requestCount", L)}},
        {"checkNeedEnableMagneticSensor", {}},
        {"notifyDeviceStateChange", {in("state", L)}},
        {"isTorchIntensityChanged", {}},
        {"calculateJpegBufferSize", {in("calculatedSize", L), in("maxJpegBufferSize", L)}},
        {"updateUseMonoTimestamp", {io("useMonoTimestamp", B), in("consumerUsage", L)}},
        {"beforeDisconnect",
         {in("fromEviction", B), in("alreadyDisconnected", B), in("cameraId", S)}},
        {"setDoingDisconnect", {in("doing", B)}},
        {"checkToTriggerAFOnceForAPI1", {in("focusMode", I), in("afInMotion", B)}},
        {"checkToAddPreviewCallbackForAPI1", {}},
        {"IsRejectStopPreview", {}},
        {"checkToSetParametersIgnoreErrorForAPI1", {in("paramString", S)}},
        {"checkToForceTriggerFaceAEForAPI1", {}},
        {"adjustPreviewSizeForAPI1", {io("width", I), io("height", I)}},
        {"updatePreviewAndVideoSizeForAPI1",
         {in("cameraId", C), io("previewSizes", ArgKind::Sizes), io("previewWidth", I),
          io("previewHeight", I), io("videoSizes", ArgKind::Sizes), io("videoWidth", I),
          io("videoHeight", I)}},
        {"updateFlashModeForAPI1", {io("flashMode", I)}},
        {"getPictureSizeForAPI1",
         {io("sizes", ArgKind::Sizes), in("minFrameDuration", L), in("cameraId", C)}},
        {"enumerateProviders", {}},
        {"binderDied", {in("name", ArgKind::Binder)}},
        {"setPreviewFpsRangeForAPI1",
         {io("minFps", I), io("maxFps", I), io("previewFps", I), io("cameraId", C)}},
        {"adjustInvalidFpsForAPI1", {io("minFps", I), io("maxFps", I)}},
        {"adjustPreviewFpsForAPI1", {io("minFps", I), io("maxFps", I)}},
        {"checkUseZeroShutterLagForAPI1", {}},
        {"checkIfAddSizeForAPI1",
         {in("width", I), in("height", I), in("format", I), in("cameraId", C)}},
        {"adjustFOVForAPI1",
         {in("cameraId", C), io("horizontalFov", F), io("verticalFov", F), in("focalLength", F),
          in("sensorWidth", F), in("sensorHeight", F), in("arrayWidth", F), in("arrayHeight", F)}},
        {"filterSurfaceConfig", {io("width", I), io("height", I)}},
        {"isVirtualCameraProvider", {in("name", S)}},
        {"SetStaticUxthread", {in("value", I)}},
        {"SetUxthread", {in("enable", I)}},
        {"allowDisplaySync", {}},
        {"isWeChatRequestTimeOut", {}},
        {"isMultiWinCameraSupport", {}},
        {"setTransformForThirdApp", {in("metadata", M)}},
        {"getTransformForThirdApp", {io("transform", I), in("streamId", I)}},
        {"preOpenCamera", {}},
        {"overrideZumioFPS", {in("metadata", M)}},
        {"checkFilterVideoTimestamp", {in("enable", B)}},
        {"sendZumioInitTagToHAL", {in("metadata", M)}},
        {"sendZumioJsonTagToHAL", {in("metadata", M)}},
        {"getZumioEnable", {}},
        {"getUpdateZumio", {}},
        {"customIntelligentEviction", {in("cameraId", C), in("package", S)}},
        {"limitExposureTimeRangeForIts", {in("cameraId", S), in("metadata", M)}},
        {"limitSizeListForCtsVerifier", {in("cameraId", S), in("metadata", M)}},
        {"limitSize", {in("cameraId", S), in("metadata", M)}},
        {"isValidOutputStream", {in("width", I), in("height", I), in("format", I)}},
        {"UpdateParamForSpecial3rdIssue", {in("metadata", M), in("frame", L)}},
        {"limitSizeListForCts", {in("cameraId", S), in("metadata", M)}},
        {"openAON", {in("name", ArgKind::Binder)}},
        {"closeAON", {}},
    };
    return kSpecs;
}

const HookSpec* findHook(const std::string& name) {
    for (const auto& hookSpec : hookSpecs()) {
        if (name == hookSpec.name) return &hookSpec;
    }
    return nullptr;
}

const Json& hookArg(const HookSpec& hookSpec, const Json& args, size_t index) {
    static const Json kNull;
    if (index >= hookSpec.params.size()) return kNull;
    if (args.isArray()) return index < args.size() ? args.items()[index] : kNull;
    return args[hookSpec.params[index].name];
}

bool checkHookArgs(const HookSpec& hookSpec, const Json& args, std::string* subPath,
                   std::string* why) {
    if (args.isNull()) return true;
    if (args.isArray() && args.size() > hookSpec.params.size()) {
        *subPath = indexPath("", hookSpec.params.size());
        *why = std::string(hookSpec.name) + " takes " + std::to_string(hookSpec.params.size()) +
               " argument" + (hookSpec.params.size() == 1 ? "" : "s") + " from a scenario";
        return false;
    }
    if (args.isObject()) {
        for (const auto& m : args.members()) {
            bool known = false;
            for (const auto& p : hookSpec.params) known = known || m.first == p.name;
            if (!known) {
                std::string names;
                for (const auto& p : hookSpec.params)
                    names += (names.empty() ? "" : ", ") + std::string(p.name);
                *subPath = memberPath("", m.first);
                *why = "not a parameter of " + std::string(hookSpec.name) +
                       (names.empty() ? " (it takes none)" : " (" + names + ")");
                return false;
            }
        }
    }
    for (size_t i = 0; i < hookSpec.params.size(); ++i) {
        const Json& v = hookArg(hookSpec, args, i);
        // Omitted arguments (and null binders) take neutral values.
        if (v.isNull()) continue;
        if (!kindAccepts(hookSpec.params[i].kind, v)) {
            *subPath = args.isArray() ? indexPath("", i) : memberPath("", hookSpec.params[i].name);
            *why = std::string(hookSpec.params[i].name) + " must be " +
                   kindText(hookSpec.params[i].kind);
            return false;
        }
    }
    return true;
}

}  // namespace sim
}  // namespace camext
