/*
 * Host stand-in of libbinder's IPCThreadState: the per-thread binder state, here the identity of
 * the incoming call the thread serves. Tests and the simulator set that identity through
 * hostctl/Binder.h; a thread that never had one set sees the process's own identity, as an
 * Android thread does outside a transaction.
 */
#ifndef ANDROID_IPC_THREAD_STATE_H
#define ANDROID_IPC_THREAD_STATE_H

#include <stdint.h>
#include <sys/types.h>
#include <utils/Errors.h>

namespace android {

class IPCThreadState {
public:
    // The state of the calling thread, created on first use and freed when the thread ends.
    static IPCThreadState* self();
    // Same as self(): the host state never fails to exist.
    static IPCThreadState* selfOrNull();

    [[nodiscard]] pid_t getCallingPid() const;
    // No SELinux context on the host.
    [[nodiscard]] const char* getCallingSid() const;
    [[nodiscard]] uid_t getCallingUid() const;

    void setStrictModePolicy(int32_t policy);
    int32_t getStrictModePolicy() const;

    int64_t setCallingWorkSourceUid(uid_t uid);
    int64_t setCallingWorkSourceUidWithoutPropagation(uid_t uid);
    uid_t getCallingWorkSourceUid() const;
    int64_t clearCallingWorkSource();
    void restoreCallingWorkSource(int64_t token);
    void clearPropagateWorkSource();
    bool shouldPropagateWorkSource() const;

    void setLastTransactionBinderFlags(int32_t flags);
    int32_t getLastTransactionBinderFlags() const;

    // Returns a token ((uid << 32) | pid) of the current calling identity and makes the thread
    // act as the process itself until restoreCallingIdentity.
    int64_t clearCallingIdentity();
    void restoreCallingIdentity(int64_t token);

    void flushCommands();

    static const int32_t kUnsetWorkSource = -1;

    // Host control (used by hostctl/Binder.h): the identity and binder flags of this thread's
    // incoming call, or back to the process's own identity. A one-way call has no calling pid
    // (0), as the binder driver delivers it.
    void setCallingIdentityForHost(uid_t uid, pid_t pid, uint32_t flags = 0);
    void resetCallingIdentityForHost();
    bool hasCallingIdentityForHost() const { return mHasCallingIdentity; }

private:
    IPCThreadState();
    ~IPCThreadState();
    IPCThreadState(const IPCThreadState&) = delete;
    IPCThreadState& operator=(const IPCThreadState&) = delete;

    bool mHasCallingIdentity;
    pid_t mCallingPid;
    uid_t mCallingUid;
    int32_t mStrictModePolicy;
    int32_t mLastTransactionBinderFlags;
    int32_t mWorkSource;
    bool mPropagateWorkSource;
};

}  // namespace android

#endif  // ANDROID_IPC_THREAD_STATE_H
