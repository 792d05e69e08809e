// The camera client base: identity, audio restriction and the idempotent disconnect.
#define LOG_TAG "CameraService"

#include "CameraService.h"

#include <android/hardware/camera2/ICameraDeviceCallbacks.h>
#include <log/log.h>
#include <utils/CameraThreadState.h>

namespace android {

namespace {

// ICameraDeviceUser's audio restriction modes.
constexpr int32_t AUDIO_RESTRICTION_NONE = 0;
constexpr int32_t AUDIO_RESTRICTION_VIBRATION = 1;
constexpr int32_t AUDIO_RESTRICTION_VIBRATION_SOUND = 3;

}  // namespace

CameraService::BasicClient::BasicClient(const sp<IBinder>& remoteCallback,
                                        const String16& clientPackageName, bool nativeClient,
                                        const std::optional<String16>& clientFeatureId,
                                        const String8& cameraIdStr, int cameraFacing,
                                        int sensorOrientation, int clientPid, uid_t clientUid,
                                        int servicePid)
    : mCameraIdStr(cameraIdStr),
      mCameraFacing(cameraFacing),
      mOrientation(sensorOrientation),
      mClientPackageName(clientPackageName),
      mSystemNativeClient(nativeClient),
      mClientFeatureId(clientFeatureId),
      mClientPid(clientPid),
      mClientUid(clientUid),
      mServicePid(servicePid),
      mDisconnected(false),
      mUidIsTrusted(false),
      mAudioRestriction(AUDIO_RESTRICTION_NONE),
      mRemoteBinder(remoteCallback) {}

CameraService::BasicClient::~BasicClient() {}

binder::Status CameraService::BasicClient::disconnect() {
    if (mDisconnected.exchange(true)) {
        return binder::Status::ok();
    }
    ALOGI("%s: Disconnected client for camera %s for PID %d", __FUNCTION__, mCameraIdStr.string(),
          mClientPid.load());
    // The client cannot call into the service any more.
    mClientPid = 0;
    return binder::Status::ok();
}

status_t CameraService::BasicClient::dump(int, const Vector<String16>&) {
    // Clients are dumped through the service, never over their own binder.
    return OK;
}

status_t CameraService::BasicClient::startWatchingTags(const String8&, int) {
    return OK;
}

status_t CameraService::BasicClient::stopWatchingTags(int) {
    return OK;
}

status_t CameraService::BasicClient::dumpWatchedEventsToVector(std::vector<std::string>&) {
    return OK;
}

String16 CameraService::BasicClient::getPackageName() const {
    return mClientPackageName;
}

int CameraService::BasicClient::getCameraFacing() const {
    return mCameraFacing;
}

int CameraService::BasicClient::getCameraOrientation() const {
    return mOrientation;
}

uid_t CameraService::BasicClient::getClientUid() const {
    return mClientUid;
}

int CameraService::BasicClient::getClientPid() const {
    return mClientPid;
}

bool CameraService::BasicClient::canCastToApiClient(apiLevel level) const {
    return level == API_2;
}

void CameraService::BasicClient::block() {
    // Taking the caller's pid allows the server to disconnect the client and stops its calls.
    mClientPid = CameraThreadState::getCallingPid();
    CaptureResultExtras resultExtras;  // an invalid result: the error is not about a request
    notifyError(hardware::camera2::ICameraDeviceCallbacks::ERROR_CAMERA_DISABLED, resultExtras);
    disconnect();
}

status_t CameraService::BasicClient::setAudioRestriction(int32_t mode) {
    if (!isValidAudioRestriction(mode)) {
        ALOGE("%s: Invalid audio restriction mode %d", __FUNCTION__, mode);
        return BAD_VALUE;
    }
    mAudioRestriction = mode;
    return OK;
}

int32_t CameraService::BasicClient::getServiceAudioRestriction() const {
    // The host service has this one client's restriction to combine.
    return mAudioRestriction;
}

int32_t CameraService::BasicClient::getAudioRestriction() const {
    return mAudioRestriction;
}

bool CameraService::BasicClient::isValidAudioRestriction(int32_t mode) {
    switch (mode) {
        case AUDIO_RESTRICTION_NONE:
        case AUDIO_RESTRICTION_VIBRATION:
        case AUDIO_RESTRICTION_VIBRATION_SOUND:
            return true;
        default:
            return false;
    }
}

}  // namespace android
