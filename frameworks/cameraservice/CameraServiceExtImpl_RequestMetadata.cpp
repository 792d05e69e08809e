/*
 * Vendor tags written into session parameters and capture requests: the client's identity, the
 * fold state, per-app flash and autofocus fixes, and the check of camera-SDK apps.
 */
#include <utils/CameraThreadState.h>

#include "CameraServiceExtImpl.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {

namespace {

// Present in the session parameters of an app that drives the maker's camera SDK.
constexpr char kSdkPackageTag[] = "com.vantu.is.sdk.camera.package";

// The answer of afterEndConfigure to an SDK app that is not authorised; `line` is where the
// refusal was decided.
binder::Status refuseUnauthorisedSdkApp(const String8& package, int line) {
    const String8 message =
        String8::format("The %s uses cameraUnit but authentication fails.", package.c_str());
    EXT_LOG(0, "%s: %s", "afterEndConfigure", message.c_str());
    return binder::Status::fromServiceSpecificError(
        1, String8::format("%s:%d: %s", "afterEndConfigure", line, message.c_str()));
}

}  // namespace

void CameraServiceExtImpl::addRemovePackageName(const CameraMetadata&, unsigned long, bool) {}

binder::Status CameraServiceExtImpl::afterEndConfigure(const CameraMetadata& sessionParams,
                                                       void* client, unsigned long vendorId,
                                                       String8 cameraId) {
    // The meta stream serves again from the new configuration; its first results are not ready.
    const ssize_t metaIndex = mMetaStreamInfos.indexOfKey(cameraIdToInt(cameraId));
    if (metaIndex >= 0) {
        MetaStreamInfo& info = mMetaStreamInfos.editValueAt(metaIndex);
        std::unique_lock<std::mutex> metaLock;
        if (info.mLock != nullptr) metaLock = std::unique_lock<std::mutex>(*info.mLock);
        info.mDisabled = false;
        info.mCountdown = 2;
    }

    const String8 package = currentPackageName();
    // Without the manager every configuration is refused, also of apps that do not use the SDK.
    if (mAuthAppManager == nullptr) {
        EXT_LOG(0, "%s: mAuthAppManager is NULL", __func__);
        return refuseUnauthorisedSdkApp(package, __LINE__);
    }
    uint32_t tag = 0;
    if (!vantu::findVendorTag(kSdkPackageTag, vendorId, &tag)) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "%s: Unknown tag com.vantu.is.sdk.camera.package, ignoring ", __func__);
        }
        return binder::Status::ok();
    }
    if (!sessionParams.exists(tag)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: %s not using cameraunit.", __func__, package.c_str());
        return binder::Status::ok();
    }

    const int uid = CameraThreadState::getCallingUid();
    const int pid = CameraThreadState::getCallingPid();
    bool authed = mAuthAppManager->isAuthedClient(uid, package, false, false);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s isAuthedApp: %d, uid: %d, pid: %d, client: %p", __func__, authed, uid, pid,
                client);
    }
    // The authorising component may still be on its way: give it one short wait.
    if (!authed) authed = mAuthAppManager->wait(uid, package, false, false);
    if (!authed) return refuseUnauthorisedSdkApp(package, __LINE__);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: %s uses cameraUnit and passes authentication.", __func__, package.c_str());
    }
    return binder::Status::ok();
}

bool CameraServiceExtImpl::IsNewRequest(bool newRequest, bool) {
    checkNeedEnableMagneticSensor();
    return newRequest || isTorchIntensityChanged();
}

void CameraServiceExtImpl::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                              uint32_t frameNumber) {
    setTorchIntensity(request, frameNumber);
}

void CameraServiceExtImpl::afterSendRequestsBatch(const camera_metadata* settings,
                                                  String8 cameraId) {
    applyMotorRequestRules(settings, cameraId);
}

}  // namespace android
