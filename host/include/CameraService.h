/*
 * Host stand-in of the camera server's service class (Android 13) as the extension library sees
 * it: the service itself, reached through a strong reference, and BasicClient, the base of every
 * client connected to a camera.
 *
 * On a phone CameraService is also the binder service "media.camera" and a death recipient;
 * those roles belong to the server and are left out here. It is the provider manager's status
 * listener, as on a phone: the library reports torch availability through that interface.
 */
#ifndef ANDROID_SERVERS_CAMERA_CAMERASERVICE_H
#define ANDROID_SERVERS_CAMERA_CAMERASERVICE_H

#include <binder/IBinder.h>
#include <binder/Status.h>
#include <camera/CaptureResult.h>
#include <stdint.h>
#include <sys/types.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>
#include <utils/String8.h>
#include <utils/Vector.h>

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "common/CameraProviderManager.h"

namespace android {

class CameraService : public virtual RefBase, public virtual CameraProviderManager::StatusListener {
public:
    class BasicClient;

    // The API a client was opened with.
    enum apiLevel {
        API_1 = 1,
        API_2 = 2,
    };

    static char const* getServiceName() { return "media.camera"; }

    // The base of every camera client, whatever its API.
    class BasicClient : public virtual RefBase {
    public:
        virtual status_t initialize(sp<CameraProviderManager> manager,
                                    const String8& monitorTags) = 0;

        // Closes the client. Idempotent: only the first call has an effect.
        virtual binder::Status disconnect();

        // The client's own binder (clients cannot inherit IInterface virtually).
        virtual sp<IBinder> asBinderWrapper() = 0;

        // The remote callback binder of the app.
        sp<IBinder> getRemote() { return mRemoteBinder; }

        // Clients are not dumped over binder directly; always OK.
        virtual status_t dump(int fd, const Vector<String16>& args);
        // The dump the service asks for.
        virtual status_t dumpClient(int fd, const Vector<String16>& args) = 0;

        virtual status_t startWatchingTags(const String8& tags, int outFd);
        virtual status_t stopWatchingTags(int outFd);
        virtual status_t dumpWatchedEventsToVector(std::vector<std::string>& out);

        virtual String16 getPackageName() const;
        // CAMERA_FACING_BACK (0), FRONT (1) or EXTERNAL (2).
        virtual int getCameraFacing() const;
        // Sensor orientation in degrees.
        virtual int getCameraOrientation() const;

        // Tells the app of a fatal error (an ICameraDeviceCallbacks::ERROR_CAMERA_* code).
        virtual void notifyError(int32_t errorCode, const CaptureResultExtras& resultExtras) = 0;

        virtual uid_t getClientUid() const;
        // The app's pid; 0 once the client is disconnected.
        virtual int getClientPid() const;

        // Whether the client can be used as a client of `level` (API2 unless overridden).
        virtual bool canCastToApiClient(apiLevel level) const;

        // Stops the client: tells it ERROR_CAMERA_DISABLED and disconnects it.
        virtual void block();

        // AUDIO_RESTRICTION_NONE (0), _VIBRATION (1) or _VIBRATION_SOUND (3); BAD_VALUE else.
        virtual status_t setAudioRestriction(int32_t mode);
        virtual int32_t getServiceAudioRestriction() const;
        virtual int32_t getAudioRestriction() const;
        static bool isValidAudioRestriction(int32_t mode);

        virtual status_t setRotateAndCropOverride(uint8_t rotateAndCrop) = 0;
        virtual bool supportsCameraMute() = 0;
        virtual status_t setCameraMute(bool enabled) = 0;
        virtual status_t injectCamera(const String8& injectedCamId,
                                      sp<CameraProviderManager> manager) = 0;
        virtual status_t stopInjection() = 0;

    protected:
        BasicClient(const sp<IBinder>& remoteCallback, const String16& clientPackageName,
                    bool nativeClient, const std::optional<String16>& clientFeatureId,
                    const String8& cameraIdStr, int cameraFacing, int sensorOrientation,
                    int clientPid, uid_t clientUid, int servicePid);
        ~BasicClient() override;

        const String8 mCameraIdStr;
        const int mCameraFacing;
        const int mOrientation;
        String16 mClientPackageName;
        bool mSystemNativeClient;
        std::optional<String16> mClientFeatureId;
        std::atomic<pid_t> mClientPid;
        const uid_t mClientUid;
        const pid_t mServicePid;
        std::atomic<bool> mDisconnected;
        bool mUidIsTrusted;
        std::atomic<int32_t> mAudioRestriction;
        sp<IBinder> mRemoteBinder;
    };

protected:
    CameraService() {}
    ~CameraService() override {}
};

}  // namespace android

#endif
