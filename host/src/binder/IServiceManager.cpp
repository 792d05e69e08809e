/*
 * The in-process service manager and the permission checks, answered from the host's grants.
 */
#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <hostctl/Binder.h>
#include <utils/String8.h>

#include <map>
#include <mutex>
#include <set>
#include <tuple>

namespace android {

// IServiceManager's meta-interface by hand: there is no remote service manager to proxy to on
// the host, so asInterface only finds a local one.
const String16 IServiceManager::descriptor("android.os.IServiceManager");
const String16& IServiceManager::getInterfaceDescriptor() const {
    return IServiceManager::descriptor;
}
sp<IServiceManager> IServiceManager::asInterface(const sp<IBinder>& obj) {
    if (obj == nullptr) return nullptr;
    return static_cast<IServiceManager*>(obj->queryLocalInterface(descriptor).get());
}
sp<IServiceManager> IServiceManager::default_impl;
bool IServiceManager::setDefaultImpl(sp<IServiceManager> impl) {
    if (!default_impl && impl) {
        default_impl = impl;
        return true;
    }
    return false;
}
const sp<IServiceManager>& IServiceManager::getDefaultImpl() {
    return default_impl;
}
IServiceManager::IServiceManager() {}
IServiceManager::~IServiceManager() {}

namespace {

class HostServiceManager : public BnInterface<IServiceManager> {
public:
    sp<IBinder> getService(const String16& name) const override { return checkService(name); }

    sp<IBinder> checkService(const String16& name) const override {
        std::lock_guard<std::mutex> lock(mLock);
        auto it = mServices.find(String8(name).string());
        return it != mServices.end() ? it->second : nullptr;
    }

    status_t addService(const String16& name, const sp<IBinder>& service, bool /*allowIsolated*/,
                        int /*dumpsysFlags*/) override {
        if (service == nullptr || name.size() == 0) return BAD_VALUE;
        std::lock_guard<std::mutex> lock(mLock);
        mServices[String8(name).string()] = service;
        return OK;
    }

    Vector<String16> listServices(int /*dumpsysFlags*/) override {
        Vector<String16> names;
        std::lock_guard<std::mutex> lock(mLock);
        for (const auto& entry : mServices) names.add(String16(entry.first.c_str()));
        return names;
    }

    sp<IBinder> waitForService(const String16& name) override { return checkService(name); }

    bool isDeclared(const String16& name) override { return checkService(name) != nullptr; }

    void remove(const std::string& name) {
        sp<IBinder> old;
        std::lock_guard<std::mutex> lock(mLock);
        auto it = mServices.find(name);
        if (it == mServices.end()) return;
        old = it->second;
        mServices.erase(it);
    }

    void clear() {
        std::map<std::string, sp<IBinder>> old;
        std::lock_guard<std::mutex> lock(mLock);
        old.swap(mServices);
    }

private:
    mutable std::mutex mLock;
    std::map<std::string, sp<IBinder>> mServices;
};

// The process's service manager: created on first use, held here for the life of the process.
HostServiceManager* hostServiceManager() {
    static sp<HostServiceManager>* sm = new sp<HostServiceManager>(new HostServiceManager());
    return sm->get();
}

std::mutex gDefaultLock;

// A manager set by setDefaultServiceManager, which takes the place of the host's own.
sp<IServiceManager>& defaultOverride() {
    static sp<IServiceManager>* sm = new sp<IServiceManager>();
    return *sm;
}

struct Grants {
    std::mutex lock;
    // (uid, permission) granted for any pid, and (uid, pid, permission).
    std::set<std::pair<uid_t, std::string>> byUid;
    std::set<std::tuple<uid_t, pid_t, std::string>> byUidPid;
    std::vector<hostctl::PermissionCheck> checks;
};

Grants& grants() {
    static Grants* g = new Grants();
    return *g;
}

}  // namespace

sp<IServiceManager> defaultServiceManager() {
    {
        std::lock_guard<std::mutex> lock(gDefaultLock);
        if (defaultOverride() != nullptr) return defaultOverride();
    }
    return hostServiceManager();
}

// A null manager puts the host's own back.
void setDefaultServiceManager(const sp<IServiceManager>& sm) {
    sp<IServiceManager> old;
    std::lock_guard<std::mutex> lock(gDefaultLock);
    old = defaultOverride();
    defaultOverride() = sm;
}

bool checkCallingPermission(const String16& permission) {
    return checkCallingPermission(permission, nullptr, nullptr);
}

bool checkCallingPermission(const String16& permission, int32_t* outPid, int32_t* outUid) {
    IPCThreadState* ipcState = IPCThreadState::self();
    const pid_t pid = ipcState->getCallingPid();
    const uid_t uid = ipcState->getCallingUid();
    if (outPid != nullptr) *outPid = pid;
    if (outUid != nullptr) *outUid = static_cast<int32_t>(uid);
    return checkPermission(permission, pid, uid);
}

bool checkPermission(const String16& permission, pid_t pid, uid_t uid, bool logPermissionFailure) {
    const std::string name = String8(permission).string();
    Grants& g = grants();
    bool granted = false;
    {
        std::lock_guard<std::mutex> lock(g.lock);
        granted = g.byUid.count({uid, name}) > 0 || g.byUidPid.count({uid, pid, name}) > 0;
        g.checks.push_back(hostctl::PermissionCheck{name, pid, uid, granted});
    }
    if (!granted && logPermissionFailure) {
        __android_log_print(ANDROID_LOG_WARN, "ServiceManagerCppClient",
                            "Permission failure: %s from uid=%d pid=%d", name.c_str(),
                            static_cast<int>(uid), static_cast<int>(pid));
    }
    return granted;
}

}  // namespace android

namespace hostctl {

void grantPermission(uid_t uid, const std::string& permission) {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    g.byUid.insert({uid, permission});
}

void grantPermission(uid_t uid, pid_t pid, const std::string& permission) {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    g.byUidPid.insert({uid, pid, permission});
}

void revokePermission(uid_t uid, const std::string& permission) {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    g.byUid.erase({uid, permission});
}

void revokePermission(uid_t uid, pid_t pid, const std::string& permission) {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    g.byUidPid.erase({uid, pid, permission});
}

void clearPermissions() {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    g.byUid.clear();
    g.byUidPid.clear();
}

std::vector<PermissionCheck> permissionChecks() {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    return g.checks;
}

void clearPermissionChecks() {
    android::Grants& g = android::grants();
    std::lock_guard<std::mutex> lock(g.lock);
    g.checks.clear();
}

void removeService(const std::string& name) {
    android::hostServiceManager()->remove(name);
}

void clearServices() {
    android::hostServiceManager()->clear();
}

}  // namespace hostctl
