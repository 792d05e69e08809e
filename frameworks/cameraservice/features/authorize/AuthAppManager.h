/*
 * Authorisation of apps that use the maker's camera SDK ("cameraUnit"). A system component of
 * the maker checks an app and reports, over the library's binder transactions, that a uid and
 * package are authorised; the manager keeps those results, watches the reporting component's
 * binder for death, remembers which connected clients passed the check, and answers the
 * questions of the connect, configure and classification hooks.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_AUTHORIZE_AUTHAPPMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_AUTHORIZE_AUTHAPPMANAGER_H

#include <binder/IBinder.h>
#include <stdint.h>
#include <utils/KeyedVector.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/StrongPointer.h>

#include <mutex>

#include "utils/Env.h"

namespace android {

// One authorisation result as the authorising component reported it.
struct AuthResult {
    int32_t pid = 0;
    int32_t uid = 0;
    int32_t permBits = 0;  // stored and logged, never interpreted
    String8 packageName;
    int64_t period = 0;  // wall-clock second the result was recorded
};

// An authorising component whose binder death is watched.
struct AuthAppClient {
    int32_t pid = 0;
    int32_t uid = 0;
    sp<IBinder> binder;
};

class AuthAppManager : public IBinder::DeathRecipient {
public:
    // A result is valid while |now - period| is at most this many seconds.
    static constexpr int64_t kValiditySeconds = 86400;
    // The package treated as authorised whenever no result is recorded for its uid.
    static constexpr const char kAlwaysAuthedPackage[] = "com.ss.android.ugc.aweme";

    // The process-wide manager, or null while "feature_auth_enable" is false. Created on the
    // first call (from the single-threaded construction of the extension object, which holds
    // the reference); it lives for the process.
    static sp<AuthAppManager> getInstance();

    // Records a result for `uid`, replacing any earlier one, and wakes a waiter. Always 0.
    int32_t addAuthResultInfo(int pid, int uid, int permBits, String8 packageName);
    // Removes the result of `uid` when it is for `packageName`.
    void removeAuthResultInfo(int uid, String8 packageName);
    // Watches `binder` of the authorising component (pid, uid) for death. Always 0.
    int32_t setDeathRecipient(sp<IBinder> binder, int pid, int uid);
    // An authorising component died: expired results and the authorised client of its pid go.
    void binderDied(const wp<IBinder>& who) override;
    // Removes every result outside its validity period.
    void clearInvalidAuthResult();
    bool isAuthedClient(int uid, String8 packageName, bool checkPeriod, bool checkPackageName);
    // Whether `client` (the server's handle of a connected client) passed the check.
    bool isAuthedClient(void* client);
    // Remembers `client` under `pid` when (uid, packageName) is authorised; the answer.
    bool checkAuthResult(int pid, int uid, String8 packageName, void* client);
    // Waits once, at most 500 ms, for any new result, then answers isAuthedClient().
    bool wait(int uid, String8 packageName, bool checkPeriod, bool checkPackageName);

    ~AuthAppManager() override;

private:
    // Unit tests build private managers through it, so that no state leaks between tests.
    friend class AuthAppManagerTestPeer;

    AuthAppManager() = default;

    bool isValid(const AuthResult& result, int64_t now) const;

    // Guards the three maps; recursive because checkAuthResult and binderDied call other
    // operations that take it too.
    std::recursive_mutex mLock;
    KeyedVector<int, AuthResult> mAuthResultMap;        // by uid
    KeyedVector<int, AuthAppClient> mAuthAppClientMap;  // by pid
    KeyedVector<int, void*> m_authedClients;            // by pid

    // Carry only the wake-up of wait() by addAuthResultInfo().
    std::mutex mWaitLock;
    vantu::EnvCondition mWaitCondition;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_AUTHORIZE_AUTHAPPMANAGER_H
