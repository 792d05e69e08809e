/*
 * hostctl's calling-identity controls.
 */
#include <binder/IPCThreadState.h>
#include <hostctl/Binder.h>

#include "HostIdentity.h"

namespace hostctl {

using android::IPCThreadState;

void setCallingIdentity(uid_t uid, pid_t pid, uint32_t flags) {
    IPCThreadState::self()->setCallingIdentityForHost(uid, pid, flags);
}

void setHwbinderCallingIdentity(uid_t uid, pid_t pid) {
    android::hostbinder::setHwbinderCall(uid, pid);
}

void resetHwbinderCallingIdentity() {
    android::hostbinder::endHwbinderCall();
}

void resetCallingIdentity() {
    IPCThreadState::self()->resetCallingIdentityForHost();
}

void setProcessIdentity(uid_t uid, pid_t pid) {
    android::hostbinder::setProcessIdentity(uid, pid);
}

void resetProcessIdentity() {
    android::hostbinder::resetProcessIdentity();
}

ScopedCallingIdentity::ScopedCallingIdentity(uid_t uid, pid_t pid)
    : mHadIdentity(IPCThreadState::self()->hasCallingIdentityForHost()),
      mToken(IPCThreadState::self()->clearCallingIdentity()) {
    setCallingIdentity(uid, pid);
}

ScopedCallingIdentity::~ScopedCallingIdentity() {
    if (mHadIdentity) {
        IPCThreadState::self()->restoreCallingIdentity(mToken);
    } else {
        resetCallingIdentity();
    }
}

}  // namespace hostctl
