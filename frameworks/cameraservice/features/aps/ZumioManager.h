/*
 * The avatar (Zumio) feature: which apps and activities may use it, and the avatar description
 * that reaches the camera HAL in session tags.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_APS_ZUMIOMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_APS_ZUMIOMANAGER_H

#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

namespace android {

class ZumioManager : public RefBase {
public:
    // The process-wide manager, or null while the avatar feature is not available. The extension
    // object takes it once at construction and holds it for the life of the process. The avatar
    // feature brings the manager itself; until then there is none.
    static sp<ZumioManager> getInstance();

    // The avatar description a system app sent ("NULL" when none).
    void setAvatarInfo(const String8& info);
    void setZumioEnable(bool enable, bool avatarCancel);
    // True when the avatar feature applies to the app's activity (for a capture session when
    // `forCapture`).
    bool isSupportZumio(const char* package, const char* activity, bool forCapture);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_APS_ZUMIOMANAGER_H
