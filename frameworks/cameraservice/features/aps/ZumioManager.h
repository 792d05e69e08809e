/*
 * The avatar (Zumio) feature: which apps and activities may use it, and the avatar description
 * that reaches the camera HAL in session tags.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_APS_ZUMIOMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_APS_ZUMIOMANAGER_H

#include <camera/CameraMetadata.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include <memory>
#include <mutex>
#include <string>

#include "utils/Relaxed.h"

namespace android {

class JsonParserZumio;

class ZumioManager : public RefBase {
public:
    // The process-wide manager, or null when "feature_aps_enable" is false. The extension object
    // takes it once at construction and holds it for the life of the process.
    static sp<ZumioManager> getInstance();

    // Tests build their own managers; the extension uses getInstance.
    ZumioManager();
    ~ZumioManager() override;

    // The avatar description a system app sent ("NULL" when none).
    void setAvatarInfo(const String8& info);
    void getAvatarInfo(std::string& info);
    void setZumioEnable(bool enable, bool avatarCancel);
    // The avatar feature is switched on for the current call.
    bool getZumioEnable();
    // Switched on and not cancelled: the engine renders the avatar.
    bool getZumioUsed();
    // The avatar description changed since it was last sent.
    bool getUpdateZumio();

    // Whether `activity` of `package` may use the avatar, for capture or for a video call.
    bool isSupportZumio(const char* package, const char* activity, bool forCapture);
    // Whether the built-in lists let `activity` of `package` use the avatar.
    static bool isSupportByBuiltInList(const char* package, const char* activity, bool forCapture);

    // Write "init" / the avatar description into the session's avatar tags; false when the tag
    // is unknown or the write fails.
    bool sendInitTagToHAL(const CameraMetadata& sessionParams, unsigned long vendorId);
    bool sendJsonTagToHAL(const CameraMetadata& sessionParams, unsigned long vendorId);

private:
    // Resolves a "com.vantu.*" tag; an unknown one is logged for `caller`.
    static bool findTag(const char* name, unsigned long vendorId, const char* caller, uint32_t* tag);
    // Writes `text` into the session's `tag`.
    static bool writeTag(const CameraMetadata& sessionParams, uint32_t tag, const String8& text,
                         const char* caller);

    // The avatar description, written by binder threads and read at configuration.
    std::mutex mInfoLock;
    String8 mAvatarInfo{"NULL"};
    // Read on the request thread (frame-rate override) while binder threads write them.
    vantu::Relaxed<bool> mZumioEnable{false};
    vantu::Relaxed<bool> mAvatarCancel{false};
    // The support file's version last parsed and its document (null when no file was found);
    // only under mConfigLock. The manager is one per process, and so is the document.
    std::mutex mConfigLock;
    std::string mConfigVersion;
    std::unique_ptr<JsonParserZumio> mJsonParserZumio;
    vantu::Relaxed<bool> mUpdateZumio{false};
    // The description last written; only under mInfoLock.
    std::string mLastSentInfo;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_APS_ZUMIOMANAGER_H
