#include <binder/IPCThreadState.h>
#include <utils/CameraThreadState.h>

#include "HostIdentity.h"

namespace android {

namespace {

// The hwbinder side of the thread, as hardware::IPCThreadState keeps it: whether the thread
// serves a hwbinder call and who made it. A cleared identity reads as the process's own.
struct HwbinderCall {
    bool serving = false;
    bool hasIdentity = false;
    uid_t uid = 0;
    pid_t pid = 0;
};

HwbinderCall& hwbinderCall() {
    thread_local HwbinderCall call;
    return call;
}

}  // namespace

namespace hostbinder {

void setHwbinderCall(uid_t uid, pid_t pid) {
    hwbinderCall() = HwbinderCall{true, true, uid, pid};
}

void endHwbinderCall() {
    hwbinderCall() = HwbinderCall{};
}

}  // namespace hostbinder

// As in the camera server, each query goes to hwbinder's thread state while the thread serves a
// hwbinder call and to binder's otherwise.

int64_t CameraThreadState::clearCallingIdentity() {
    HwbinderCall& call = hwbinderCall();
    if (!call.serving) return IPCThreadState::self()->clearCallingIdentity();
    const int64_t token = (static_cast<int64_t>(getCallingUid()) << 32) |
                          static_cast<int64_t>(static_cast<uint32_t>(getCallingPid()));
    call.hasIdentity = false;
    return token;
}

void CameraThreadState::restoreCallingIdentity(int64_t token) {
    HwbinderCall& call = hwbinderCall();
    if (!call.serving) {
        IPCThreadState::self()->restoreCallingIdentity(token);
        return;
    }
    call.hasIdentity = true;
    call.uid = static_cast<uid_t>(static_cast<uint64_t>(token) >> 32);
    call.pid = static_cast<pid_t>(static_cast<int32_t>(token));
}

int CameraThreadState::getCallingUid() {
    const HwbinderCall& call = hwbinderCall();
    if (!call.serving) return static_cast<int>(IPCThreadState::self()->getCallingUid());
    return static_cast<int>(call.hasIdentity ? call.uid : hostbinder::processIdentity().uid);
}

int CameraThreadState::getCallingPid() {
    const HwbinderCall& call = hwbinderCall();
    if (!call.serving) return static_cast<int>(IPCThreadState::self()->getCallingPid());
    return static_cast<int>(call.hasIdentity ? call.pid : hostbinder::processIdentity().pid);
}

}  // namespace android
