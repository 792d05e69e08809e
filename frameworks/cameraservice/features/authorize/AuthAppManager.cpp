#include "features/authorize/AuthAppManager.h"

#include <android/log.h>
#include <inttypes.h>
#include <stdlib.h>

#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// Lines of the manager are verbose: they stay silent unless the log switch is raised above 1.
constexpr int kVerbose = 2;
constexpr int kError = 0;

// How long wait() gives an authorisation that is still on its way.
constexpr nsecs_t kWaitNs = 500 * 1000000LL;

bool isAlwaysAuthed(const String8& packageName) {
    return packageName == AuthAppManager::kAlwaysAuthedPackage;
}

}  // namespace

// The manager is created by the first call with the switch on (the extension object's
// constructor, which keeps the reference) and held by this static as well, so it lives for the
// process. No lock: the first call comes from the single-threaded construction of the extension.
sp<AuthAppManager> AuthAppManager::getInstance() {
    if (!getBool("feature_auth_enable", true, nullptr)) return nullptr;
    static const sp<AuthAppManager> instance = new AuthAppManager();
    return instance;
}

AuthAppManager::~AuthAppManager() {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    mAuthResultMap.clear();
    mAuthAppClientMap.clear();
    m_authedClients.clear();
}

bool AuthAppManager::isValid(const AuthResult& result, int64_t now) const {
    // Absolute difference: a wall clock set back by more than a day also invalidates a result.
    return llabs(now - result.period) <= kValiditySeconds;
}

int32_t AuthAppManager::addAuthResultInfo(int pid, int uid, int permBits, String8 packageName) {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    removeAuthResultInfo(uid, packageName);

    AuthResult result;
    result.pid = pid;
    result.uid = uid;
    result.permBits = permBits;
    // A copy of the text, not a share of the caller's buffer: the map's strings are then made
    // and freed only under mLock, where ThreadSanitizer can see it (libutils' buffer counts are
    // invisible to it).
    result.packageName = String8(packageName.c_str(), packageName.length());
    result.period = vantu::wallSeconds();
    mAuthResultMap.replaceValueFor(uid, result);

    {
        std::lock_guard<std::mutex> waitLock(mWaitLock);
        EXT_LOG(kVerbose, "%s, signal", __func__);
        mWaitCondition.signal();
    }
    EXT_LOG(kVerbose, "%s: is success, pid %d, uid %d, permBits %d, packageName: %s, time: %ld",
            __func__, pid, uid, permBits, packageName.c_str(), static_cast<long>(result.period));
    return 0;
}

void AuthAppManager::removeAuthResultInfo(int uid, String8 packageName) {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    const ssize_t index = mAuthResultMap.indexOfKey(uid);
    if (index < 0) return;
    const AuthResult& result = mAuthResultMap.valueAt(index);
    // Logged before the package is compared, so a result for another package shows up too.
    EXT_LOG(kVerbose, "%s remove uid: %d, packageName: %s, period:%ld", __func__, uid,
            result.packageName.c_str(), static_cast<long>(result.period));
    if (result.packageName == packageName) mAuthResultMap.removeItemsAt(index);
}

int32_t AuthAppManager::setDeathRecipient(sp<IBinder> binder, int pid, int uid) {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    EXT_LOG(kVerbose, "%s setDeathRecipient E : %d", __func__, pid);
    const sp<IBinder::DeathRecipient> self(this);
    if (binder != nullptr) binder->linkToDeath(self, nullptr, 0);

    AuthAppClient client;
    client.pid = pid;
    client.uid = uid;
    client.binder = binder;
    const ssize_t index = mAuthAppClientMap.indexOfKey(pid);
    if (index >= 0) {
        const sp<IBinder>& old = mAuthAppClientMap.valueAt(index).binder;
        if (old != nullptr) old->unlinkToDeath(self, nullptr, 0, nullptr);
        mAuthAppClientMap.replaceValueAt(index, client);
    } else {
        mAuthAppClientMap.add(pid, client);
    }
    EXT_LOG(kVerbose, "%s setDeathRecipient X uid: %d", __func__, uid);
    return 0;
}

void AuthAppManager::binderDied(const wp<IBinder>& who) {
    __android_log_print(ANDROID_LOG_WARN, nullptr, "%s: Java client's binder died.", "binderDied");
    std::lock_guard<std::recursive_mutex> lock(mLock);
    ssize_t index = -1;
    for (size_t i = 0; i < mAuthAppClientMap.size(); ++i) {
        if (who == mAuthAppClientMap.valueAt(i).binder) {
            index = static_cast<ssize_t>(i);
            break;
        }
    }
    if (index < 0) return;
    const AuthAppClient dead = mAuthAppClientMap.valueAt(index);

    // The dead caller's own result stays: it ages out by the validity period.
    clearInvalidAuthResult();
    m_authedClients.removeItem(dead.pid);
    mAuthAppClientMap.removeItem(dead.pid);
    __android_log_print(ANDROID_LOG_WARN, nullptr,
                        "%s: Java client's binder died, pid: %d, uid: %d, mAuthResultMap.size "
                        "%zu, m_authedClients.size :%zu,mAuthAppClientMap.size:%zu",
                        "binderDied", dead.pid, dead.uid, mAuthResultMap.size(),
                        m_authedClients.size(), mAuthAppClientMap.size());
}

void AuthAppManager::clearInvalidAuthResult() {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    const int64_t now = vantu::wallSeconds();
    EXT_LOG(kVerbose, "%s E, current time: %ld, size: %zu", __func__, static_cast<long>(now),
            mAuthResultMap.size());
    for (size_t i = mAuthResultMap.size(); i-- > 0;) {
        const AuthResult& result = mAuthResultMap.valueAt(i);
        if (isValid(result, now)) continue;
        EXT_LOG(kVerbose, "%s find invalid auth info, uid: %d, packageName: %s, period: %ld",
                __func__, result.uid, result.packageName.c_str(), static_cast<long>(result.period));
        mAuthResultMap.removeItemsAt(i);
    }
    EXT_LOG(kVerbose, "%s X", __func__);
}

bool AuthAppManager::isAuthedClient(int uid, String8 packageName, bool checkPeriod,
                                    bool checkPackageName) {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    EXT_LOG(kVerbose, "%s E uid: %d, packageName: %s, checkPeriod: %d, checkPackageName: %d",
            __func__, uid, packageName.c_str(), checkPeriod, checkPackageName);
    // The map holds at most one result per uid.
    const ssize_t index = mAuthResultMap.indexOfKey(uid);
    if (index >= 0) {
        const AuthResult& result = mAuthResultMap.valueAt(index);
        if (!checkPackageName) return true;
        if (result.packageName == packageName) {
            if (!checkPeriod) return true;
            const int64_t now = vantu::wallSeconds();
            if (isValid(result, now)) return true;
            EXT_LOG(kVerbose,
                    "%s E find uid: %d, packageName: %s, period: %ld, time: %ld, has invalid",
                    __func__, uid, packageName.c_str(), static_cast<long>(result.period),
                    static_cast<long>(now));
            return false;
        }
    }
    // This one package counts as authorised whenever no result for its uid says otherwise.
    return isAlwaysAuthed(packageName);
}

bool AuthAppManager::isAuthedClient(void* client) {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    for (size_t i = 0; i < m_authedClients.size(); ++i) {
        if (m_authedClients.valueAt(i) == client) return true;
    }
    return false;
}

bool AuthAppManager::checkAuthResult(int pid, int uid, String8 packageName, void* client) {
    std::lock_guard<std::recursive_mutex> lock(mLock);
    const bool authed = isAuthedClient(uid, packageName, false, true);
    if (authed && !isAuthedClient(client)) m_authedClients.replaceValueFor(pid, client);
    return authed;
}

bool AuthAppManager::wait(int uid, String8 packageName, bool checkPeriod, bool checkPackageName) {
    {
        std::unique_lock<std::mutex> waitLock(mWaitLock);
        // One wake-up only: any new result ends the wait, whichever uid it is for.
        if (mWaitCondition.waitRelative(waitLock, kWaitNs) != OK) {
            EXT_LOG(kError, "wait auth result failed");
        }
    }
    // Answered after the wait lock is released: addAuthResultInfo takes the wait lock while it
    // holds the map lock, so taking the map lock under the wait lock could deadlock.
    return isAuthedClient(uid, packageName, checkPeriod, checkPackageName);
}

}  // namespace android
