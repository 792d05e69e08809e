/*
 * The process's own binder identity on the host, shared by IPCThreadState and hostctl.
 */
#ifndef HOST_BINDER_HOST_IDENTITY_H
#define HOST_BINDER_HOST_IDENTITY_H

#include <sys/types.h>

namespace android {
namespace hostbinder {

struct Identity {
    uid_t uid;
    pid_t pid;
};

// The identity the process acts as outside an incoming call: getuid()/getpid() unless the host
// set another one.
Identity processIdentity();
void setProcessIdentity(uid_t uid, pid_t pid);
void resetProcessIdentity();

// The hwbinder call the current thread serves, which CameraThreadState reports.
void setHwbinderCall(uid_t uid, pid_t pid);
void endHwbinderCall();

}  // namespace hostbinder
}  // namespace android

#endif  // HOST_BINDER_HOST_IDENTITY_H
