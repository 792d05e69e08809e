#include "sim/ScenarioPaths.h"

#include <ctype.h>
#include <unistd.h>

#include <algorithm>

namespace camext {
namespace sim {

std::string memberPath(const std::string& base, const std::string& key) {
    bool plain = !key.empty() && (isalpha(static_cast<unsigned char>(key[0])) || key[0] == '_');
    for (char c : key) plain = plain && (isalnum(static_cast<unsigned char>(c)) || c == '_');
    if (!plain) {
        std::string q = "[\"";
        for (char c : key) q += (c == '"' || c == '\\') ? std::string("\\") + c : std::string(1, c);
        return base + q + "\"]";
    }
    return base.empty() ? key : base + "." + key;
}

std::string indexPath(const std::string& base, size_t index) {
    return base + "[" + std::to_string(index) + "]";
}

std::string parentDir(const std::string& file) {
    size_t slash = file.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : file.substr(0, slash);
}

std::string baseName(const std::string& file) {
    size_t slash = file.rfind('/');
    return slash == std::string::npos ? file : file.substr(slash + 1);
}

std::string resolvePath(const std::string& dir, const std::string& path) {
    if (!path.empty() && path[0] == '/') return path;
    return dir + "/" + path;
}

bool fileReadable(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

const std::vector<std::string>& hookNames() {
    // Slot order of the hook interface.
    static const std::vector<std::string> kNames = {
        "afterConnect",
        "afterEndConfigure",
        "onTransact",
        "isPrivilegedApp",
        "isSystemCameraUid",
        "isCtsCamera",
        "isEnableFwkTimer",
        "getCameraCharacteristics",
        "beforeConnect",
        "clearNonCTSClient",
        "setCurrentPackageName",
        "beforeSetTorchMode",
        "checkNotPlaySound",
        "afterDisconnect",
        "onClientChange",
        "initCameraInfos",
        "addListener",
        "removeListener",
        "isSupportExplorer",
        "OverrideCost",
        "modifyWaitDuration",
        "beforeMetadataSendToApp",
        "returnOutputBuffers",
        "sendCaptureResult",
        "checkToRemoveInFlightReqest",
        "parseResult",
        "beforeConfigureStreamsLocked",
        "forbid3rdPartyAppReconfigureStream",
        "afterConfigureStreamsLocked",
        "flush",
        "IsNewRequest",
        "onPrepareHalRequestsUpdateMetadata",
        "afterSendRequestsBatch",
        "setTorchIntensity",
        "checkNeedEnableMagneticSensor",
        "notifyDeviceStateChange",
        "isTorchIntensityChanged",
        "calculateJpegBufferSize",
        "updateUseMonoTimestamp",
        "beforeDisconnect",
        "setDoingDisconnect",
        "checkToTriggerAFOnceForAPI1",
        "checkToAddPreviewCallbackForAPI1",
        "IsRejectStopPreview",
        "checkToSetParametersIgnoreErrorForAPI1",
        "checkToForceTriggerFaceAEForAPI1",
        "adjustPreviewSizeForAPI1",
        "updatePreviewAndVideoSizeForAPI1",
        "updateFlashModeForAPI1",
        "getPictureSizeForAPI1",
        "enumerateProviders",
        "binderDied",
        "setPreviewFpsRangeForAPI1",
        "adjustInvalidFpsForAPI1",
        "adjustPreviewFpsForAPI1",
        "checkUseZeroShutterLagForAPI1",
        "checkIfAddSizeForAPI1",
        "adjustFOVForAPI1",
        "filterSurfaceConfig",
        "isVirtualCameraProvider",
        "SetStaticUxthread",
        "SetUxthread",
        "allowDisplaySync",
        "isWeChatRequestTimeOut",
        "isMultiWinCameraSupport",
        "setTransformForThirdApp",
        "getTransformForThirdApp",
        "preOpenCamera",
        "overrideZumioFPS",
        "checkFilterVideoTimestamp",
        "sendZumioInitTagToHAL",
        "sendZumioJsonTagToHAL",
        "getZumioEnable",
        "getUpdateZumio",
        "customIntelligentEviction",
        "limitExposureTimeRangeForIts",
        "limitSizeListForCtsVerifier",
        "limitSize",
        "isValidOutputStream",
        "UpdateParamForSpecial3rdIssue",
        "limitSizeListForCts",
        "openAON",
        "closeAON",
    };
    return kNames;
}

bool hookKnown(const std::string& name) {
    const auto& names = hookNames();
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace sim
}  // namespace camext
