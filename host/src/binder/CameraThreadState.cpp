#include <binder/IPCThreadState.h>
#include <utils/CameraThreadState.h>

namespace android {

// The host has no hardware binder calls, so every query goes to the binder thread state.

int64_t CameraThreadState::clearCallingIdentity() {
    return IPCThreadState::self()->clearCallingIdentity();
}

void CameraThreadState::restoreCallingIdentity(int64_t token) {
    IPCThreadState::self()->restoreCallingIdentity(token);
}

int CameraThreadState::getCallingUid() {
    return static_cast<int>(IPCThreadState::self()->getCallingUid());
}

int CameraThreadState::getCallingPid() {
    return static_cast<int>(IPCThreadState::self()->getCallingPid());
}

}  // namespace android
