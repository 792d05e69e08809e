/*
 * Host stand-in of the media framework's battery statistics notifier (Android 13): a process-wide
 * singleton through which media and camera services report what they use, per app uid, to the
 * battery statistics service.
 *
 * The singleton's storage is defined once, in the host platform library, so every module of the
 * process shares the one instance, as on a phone.
 */
#ifndef MEDIA_BATTERY_NOTIFIER_H
#define MEDIA_BATTERY_NOTIFIER_H

#include <sys/types.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>
#include <utils/String8.h>

#include <map>
#include <utility>

namespace android {

class BatteryNotifier : public Singleton<BatteryNotifier> {
    friend class Singleton<BatteryNotifier>;
    BatteryNotifier();

public:
    ~BatteryNotifier();

    void noteResetVideo();
    void noteStartVideo(uid_t uid);
    void noteStopVideo(uid_t uid);
    void noteResetAudio();
    void noteStartAudio(uid_t uid);
    void noteStopAudio(uid_t uid);
    void noteFlashlightOn(const String8& id, uid_t uid);
    void noteFlashlightOff(const String8& id, uid_t uid);
    void noteResetFlashlight();
    void noteStartCamera(const String8& id, uid_t uid);
    void noteStopCamera(const String8& id, uid_t uid);
    void noteResetCamera();

private:
    Mutex mLock;
    std::map<uid_t, int> mVideoRefCounts;
    std::map<uid_t, int> mAudioRefCounts;
    std::map<std::pair<String8, uid_t>, bool> mFlashlightState;
    std::map<std::pair<String8, uid_t>, bool> mCameraState;
};

}  // namespace android

#endif
