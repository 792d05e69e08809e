/*
 * App classification: the maker's system camera, privileged apps of other makers, compatibility
 * test apps and everything else.
 */
#include <binder/IPCThreadState.h>
#include <string.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr char kCtsPackage[] = "android.camera.cts";
constexpr char kCtsVerifierPackage[] = "com.android.cts.verifier";

bool startsWith(const char* text, const char* prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

}  // namespace

bool isCompatibilityTestPackage(const char* packageName) {
    return packageName != nullptr &&
           (startsWith(packageName, kCtsPackage) || startsWith(packageName, kCtsVerifierPackage));
}

bool CameraServiceExtImpl::isSystemCameraPkgName(const char* packageName) {
    char systemCamera[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.system.camera.name", systemCamera, "");
    if (systemCamera[0] == '\0') {
        EXT_LOG(0, "system camera pkg name not set in system_ext/build.prop!");
    }
    return strcmp(packageName != nullptr ? packageName : "", systemCamera) == 0;
}

bool CameraServiceExtImpl::is3rdPartyAppPrivileged(String16 packageName) {
    const String8 package(packageName);
    // Every entry of the property ends with ';'; text after the last ';' is not an entry.
    char list[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.camera.privileged.3rdpartyApp", list, "");
    const char* entry = list;
    for (const char* end = strchr(entry, ';'); end != nullptr; end = strchr(entry, ';')) {
        const size_t length = static_cast<size_t>(end - entry);
        if (length == package.length() && strncmp(entry, package.string(), length) == 0) {
            return true;
        }
        entry = end + 1;
    }

    // The configuration list names package prefixes: "com.tencent" covers "com.tencent.mm".
    std::vector<std::string> prefixes;
    getStringArray("privileged_app_list", prefixes, nullptr);
    for (const std::string& prefix : prefixes) {
        // An empty entry would make every app privileged; it is a mistake in the file.
        if (prefix.empty()) continue;
        if (startsWith(package.string(), prefix.c_str())) {
            if (EXT_LOG_ON()) EXT_LOG(1, "%s is privileged app", package.string());
            return true;
        }
    }
    return false;
}

bool CameraServiceExtImpl::isSystemCameraUid(int uid) {
    bool result = false;
    {
        std::lock_guard<std::mutex> lock(mPrivilegedUidsLock);
        if (mPrivilegedUids.empty()) return false;
        result = mPrivilegedUids.count(uid) != 0;
    }
    if (EXT_LOG_ON()) EXT_LOG(1, "%s, uid: %d, result: %d", __func__, uid, result);
    return result;
}

bool CameraServiceExtImpl::isPrivilegedApp(int uid) {
    const int32_t apkUid = mAPKUid;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s E uid: %d, mAPKUid: %d", __func__, uid, apkUid);
    // Every term is evaluated, so each leaves its log line.
    const bool authorised =
        mAuthAppManager != nullptr &&
        mAuthAppManager->isAuthedClient(uid, String8(getAPKPackageName()), false, false);
    const bool systemCamera = isSystemCameraUid(uid);
    const bool announced = uid == apkUid;
    return authorised || systemCamera || announced;
}

// The announced app must be the test suite itself, by its exact package.
bool CameraServiceExtImpl::isCtsCamera() {
    if (!getBool("feature_cts_enable", true, nullptr)) return false;
    static const String16 kCtsPackage16(kCtsPackage);
    return getAPKPackageName() == kCtsPackage16;
}

// A client name counts when it begins with a test package, so the verifier app and packages
// derived from the test suite's name are covered too.
bool CameraServiceExtImpl::isCtsCamera(const char* packageName) {
    if (!getBool("feature_cts_enable", true, nullptr)) return false;
    return isCompatibilityTestPackage(packageName);
}

bool CameraServiceExtImpl::isEnableFwkTimer() {
    return getBool("feature_enable_fwk_timer", true, nullptr);
}

// The server calls this before admitting a test client: no other app may hold a camera during
// a compatibility test.
void CameraServiceExtImpl::clearNonCTSClient(const String16& clientPackageName) {
    if (getBool("feature_cts_enable", true, nullptr) &&
        isCompatibilityTestPackage(String8(clientPackageName).string())) {
        return;
    }
    // The live clients are taken under the client lock and disconnected after it is released,
    // as an eviction does: the server's disconnect of a client waits for that client's own
    // locks, which a close already under way on another thread holds.
    sp<CameraService::BasicClient> clients[kMaxCameraSlots];
    {
        std::lock_guard<std::recursive_mutex> lock(mClientLock);
        for (int id = 0; id < kMaxCameraSlots; ++id) clients[id] = promoteClient(id);
    }
    for (int id = 0; id < kMaxCameraSlots; ++id) {
        if (clients[id] == nullptr) continue;
        clients[id]->disconnect();
        // A client that connected meanwhile keeps its slot.
        std::lock_guard<std::mutex> lock(mClientSlotsLock);
        if (mClientSlots[id].unsafe_get() == clients[id].get()) mClientSlots[id].clear();
    }
}

bool CameraServiceExtImpl::isMultiWinCameraSupport() {
    return mIsMultiWinCameraSupport;
}

}  // namespace android
