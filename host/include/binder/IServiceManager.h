/*
 * Host stand-in of libbinder's service manager: an in-process registry of named services, and
 * the permission checks that on a phone go to the "permission" service. The host answers
 * permissions from grants made through hostctl/Binder.h.
 */
#ifndef ANDROID_ISERVICE_MANAGER_H
#define ANDROID_ISERVICE_MANAGER_H

#include <binder/IInterface.h>
#include <sys/types.h>
#include <utils/String16.h>
#include <utils/Vector.h>

namespace android {

class IServiceManager : public IInterface {
public:
    DECLARE_META_INTERFACE(ServiceManager)

    enum {
        DUMP_FLAG_PRIORITY_CRITICAL = 1 << 0,
        DUMP_FLAG_PRIORITY_HIGH = 1 << 1,
        DUMP_FLAG_PRIORITY_NORMAL = 1 << 2,
        DUMP_FLAG_PRIORITY_DEFAULT = 1 << 3,
        DUMP_FLAG_PRIORITY_ALL = DUMP_FLAG_PRIORITY_CRITICAL | DUMP_FLAG_PRIORITY_HIGH |
                                 DUMP_FLAG_PRIORITY_NORMAL | DUMP_FLAG_PRIORITY_DEFAULT,
        DUMP_FLAG_PROTO = 1 << 4,
    };

    // The service, or null if none is registered under `name` (the host does not wait for one
    // to appear).
    virtual sp<IBinder> getService(const String16& name) const = 0;
    virtual sp<IBinder> checkService(const String16& name) const = 0;
    virtual status_t addService(const String16& name, const sp<IBinder>& service,
                                bool allowIsolated = false,
                                int dumpsysFlags = DUMP_FLAG_PRIORITY_DEFAULT) = 0;
    virtual Vector<String16> listServices(int dumpsysFlags = DUMP_FLAG_PRIORITY_ALL) = 0;
    virtual sp<IBinder> waitForService(const String16& name) = 0;
    virtual bool isDeclared(const String16& name) = 0;
};

sp<IServiceManager> defaultServiceManager();
void setDefaultServiceManager(const sp<IServiceManager>& sm);

template <typename INTERFACE>
sp<INTERFACE> waitForService(const String16& name) {
    const sp<IServiceManager> sm = defaultServiceManager();
    return interface_cast<INTERFACE>(sm->waitForService(name));
}

template <typename INTERFACE>
status_t getService(const String16& name, sp<INTERFACE>* outService) {
    const sp<IServiceManager> sm = defaultServiceManager();
    if (sm != nullptr && outService != nullptr) {
        *outService = interface_cast<INTERFACE>(sm->getService(name));
        if ((*outService) != nullptr) return NO_ERROR;
    }
    return NAME_NOT_FOUND;
}

// Whether the caller of the current incoming call holds `permission`.
bool checkCallingPermission(const String16& permission);
bool checkCallingPermission(const String16& permission, int32_t* outPid, int32_t* outUid);
// Whether (pid, uid) holds `permission`; a refusal is logged unless asked not to.
bool checkPermission(const String16& permission, pid_t pid, uid_t uid,
                     bool logPermissionFailure = true);

}  // namespace android

#endif  // ANDROID_ISERVICE_MANAGER_H
