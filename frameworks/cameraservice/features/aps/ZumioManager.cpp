#include "features/aps/ZumioManager.h"

#include <cutils/properties.h>
#include <string.h>

#include <regex>

#include "features/aps/JsonParserZumio.h"
#include "utils/JsonParser.h"
#include "utils/MetadataEntries.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {

namespace {

// The apps the avatar works with when no support file decides, with the key words that mark
// their own activities (an activity of another vendor's SDK inside the app does not qualify).
// Chosen from the apps the engine was tuned on: chat apps offer the avatar both in their own
// camera and in video calls; meeting and assistant apps only in calls; short-video apps only in
// their recorders.
struct BuiltInEntry {
    const char* package;
    const char* keyWords[3];  // null-terminated
    bool forCapture;
    bool forVideoCall;
};
constexpr BuiltInEntry kBuiltInList[] = {
    {"com.tencent.mm", {"tencent", nullptr}, true, true},
    {"com.tencent.mobileqq", {"tencent", nullptr}, true, true},
    {"com.alibaba.android.rimet", {"alibaba", nullptr}, false, true},
    {"com.tencent.wework", {"tencent", nullptr}, false, true},
    {"com.tencent.wemeet.app", {"tencent", nullptr}, false, true},
    {"us.zoom.videomeetings", {"zoom", nullptr}, false, true},
    {"com.dorvel.speechassist", {"dorvel", nullptr}, false, true},
    {"com.vantu.ai.assistant.extend", {"vantu", nullptr}, false, true},
    {"com.ss.android.ugc.aweme", {"bytedance", "aweme", nullptr}, true, false},
    {"com.smile.gifmaker", {"gifshow", "kuaishou", nullptr}, true, false},
};

constexpr char kCaptureExclusion[] =
    "feed|scan|phoenix|emojicapture|fusion|sameframe|followshoot|Identifer|face";
constexpr char kVideoCallExclusion[] = "capture|scan|record|camera|flash|face";

// True when the exclusion pattern occurs in `activity`; a pattern that cannot be built or run
// excludes, so the avatar stays off.
bool isExcluded(const char* activity, bool forCapture) {
    try {
        static const std::regex kCapture(kCaptureExclusion, std::regex::ECMAScript);
        static const std::regex kVideoCall(kVideoCallExclusion, std::regex::ECMAScript);
        return std::regex_search(activity, forCapture ? kCapture : kVideoCall);
    } catch (const std::exception& e) {
        EXT_LOG(0, "%s: regex failed: %s", __func__, e.what());
        return true;
    }
}

const char* orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace

sp<ZumioManager> ZumioManager::getInstance() {
    if (!getBool("feature_aps_enable", true, nullptr)) return nullptr;
    // First called from the extension object's constructor, before any other thread runs.
    static sp<ZumioManager> instance;
    if (instance == nullptr) {
        instance = new ZumioManager();
        if (EXT_LOG_ON()) EXT_LOG(1, "%s, ZumioManager getInstance", __func__);
    }
    return instance;
}

ZumioManager::ZumioManager() = default;
ZumioManager::~ZumioManager() = default;

void ZumioManager::setAvatarInfo(const String8& info) {
    std::lock_guard<std::mutex> lock(mInfoLock);
    // A copy of the text rather than a share of the caller's buffer (see AuthAppManager).
    mAvatarInfo = String8(info.c_str(), info.length());
}

void ZumioManager::getAvatarInfo(std::string& info) {
    std::lock_guard<std::mutex> lock(mInfoLock);
    info.assign(mAvatarInfo.c_str(), mAvatarInfo.length());
}

void ZumioManager::setZumioEnable(bool enable, bool avatarCancel) {
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s,Line:%d, enable:%d, avatarcancelenable:%d", __func__, __LINE__, enable,
                avatarCancel);
    }
    mZumioEnable = enable;
    mAvatarCancel = avatarCancel;
}

bool ZumioManager::getZumioEnable() {
    const bool enable = mZumioEnable;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s,Line:%d, mZumioEnable:%d", __func__, __LINE__, enable);
    return enable;
}

bool ZumioManager::getZumioUsed() {
    return mZumioEnable && !mAvatarCancel;
}

bool ZumioManager::getUpdateZumio() {
    return mUpdateZumio;
}

bool ZumioManager::isSupportByBuiltInList(const char* package, const char* activity,
                                          bool forCapture) {
    package = orEmpty(package);
    activity = orEmpty(activity);
    for (const BuiltInEntry& entry : kBuiltInList) {
        if ((forCapture ? !entry.forCapture : !entry.forVideoCall) ||
            strcmp(entry.package, package) != 0) {
            continue;
        }
        for (const char* const* word = entry.keyWords; *word != nullptr; ++word) {
            if (strstr(activity, *word) != nullptr) return !isExcluded(activity, forCapture);
        }
        return false;
    }
    return false;
}

bool ZumioManager::isSupportZumio(const char* package, const char* activity, bool forCapture) {
    package = orEmpty(package);
    activity = orEmpty(activity);
    char version[PROPERTY_VALUE_MAX];
    char voipSwitch[PROPERTY_VALUE_MAX];
    property_get("persist.sys.vantu.zumio.voip.version", version, "");
    property_get("persist.sys.vantu.zumio.voip.switch", voipSwitch, "");
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: property version: %s", __func__, version);
        EXT_LOG(1, "%s: property switch: %s", __func__, voipSwitch);
    }

    bool decided = false;
    bool ret = false;
    if (voipSwitch[0] == '1') {
        std::lock_guard<std::mutex> lock(mConfigLock);
        // The file is parsed again only when the version property names another version.
        const bool keep = (mJsonParserZumio != nullptr || version[0] != '\0') &&
                          !mConfigVersion.empty() &&
                          (version[0] == '\0' || mConfigVersion == version);
        if (!keep) {
            const char* path = JsonParserZumio::findSupportFile();
            mJsonParserZumio = path != nullptr ? JsonParserZumio::parse(path) : nullptr;
            if (mJsonParserZumio != nullptr) {
                if (EXT_LOG_ON())
                    EXT_LOG(1, "%s: json version old: %s", __func__, mConfigVersion.c_str());
                std::string fileVersion;
                mJsonParserZumio->getString("version", "str", fileVersion);
                mConfigVersion = fileVersion;
            }
        }
        if (mJsonParserZumio != nullptr) {
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: json version: %s, flag: %d", __func__, mConfigVersion.c_str(),
                        !keep);
            }
            std::string packageValue;
            std::string activityValue;
            mJsonParserZumio->getString("packages", package, packageValue);
            mJsonParserZumio->getString("activitys", activity, activityValue);
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: package config: %s %s", __func__, package, packageValue.c_str());
                EXT_LOG(1, "%s: activity config: %s %s", __func__, activity, activityValue.c_str());
            }
            if (packageValue == "1" && activityValue == "1") {
                decided = true;
                ret = true;
            } else if (activityValue == "0") {
                decided = true;
                ret = false;
            }
        }
    }
    if (!decided) ret = isSupportByBuiltInList(package, activity, forCapture);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "zumio support: packageName = %s, activityName = %s, ret=%d", package, activity,
                ret);
    }
    return ret;
}

bool ZumioManager::findTag(const char* name, unsigned long vendorId, const char* caller,
                           uint32_t* tag) {
    if (vantu::findVendorTag(name, vendorId, tag)) return true;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s: APS2Zumio Unknown tag %s, ignoring", caller, name);
    return false;
}

bool ZumioManager::writeTag(const CameraMetadata& sessionParams, uint32_t tag, const String8& text,
                            const char* caller) {
    // The server hands the session parameters as const; the HAL reads them after this hook.
    CameraMetadata& params = const_cast<CameraMetadata&>(sessionParams);
    vantu::eraseEntries(params, tag);
    const status_t res = params.update(tag, text);
    if (res != OK) {
        EXT_LOG(0, "%s: APS2Zumio metadata update failed! res = %d", caller, res);
        return false;
    }
    if (EXT_LOG_ON()) EXT_LOG(1, "APS2Zumio metadata update OK!");
    return true;
}

bool ZumioManager::sendInitTagToHAL(const CameraMetadata& sessionParams, unsigned long vendorId) {
    uint32_t tag = 0;
    if (!findTag("com.vantu.zumio.init", vendorId, __func__, &tag)) return false;
    return writeTag(sessionParams, tag, String8("init"), __func__);
}

bool ZumioManager::sendJsonTagToHAL(const CameraMetadata& sessionParams, unsigned long vendorId) {
    uint32_t tag = 0;
    if (!findTag("com.vantu.zumio.json.info", vendorId, __func__, &tag)) return false;
    String8 jsonInfo;
    {
        std::lock_guard<std::mutex> lock(mInfoLock);
        const std::string info(mAvatarInfo.c_str(), mAvatarInfo.length());
        if (info == mLastSentInfo) {
            mUpdateZumio = false;
            return true;
        }
        mUpdateZumio = true;
        mLastSentInfo = info;
        jsonInfo = String8(info.c_str(), info.size());
    }
    if (EXT_LOG_ON()) EXT_LOG(1, "APS2Zumio jsonInfo.string() is: %s", jsonInfo.c_str());
    return writeTag(sessionParams, tag, jsonInfo, __func__);
}

}  // namespace android
