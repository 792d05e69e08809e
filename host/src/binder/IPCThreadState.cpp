#include <binder/IBinder.h>
#include <binder/IPCThreadState.h>

#include <new>

#include "HostIdentity.h"

namespace android {

namespace {

constexpr int kWorkSourcePropagatedBitIndex = 32;

}  // namespace

// Plain thread storage, built in place on a thread's first call and never destroyed (the state
// is only numbers): the first call may come from a signal handler making a one-way call, where
// registering a thread-exit destructor would allocate.
IPCThreadState* IPCThreadState::self() {
    alignas(IPCThreadState) thread_local unsigned char tStorage[sizeof(IPCThreadState)];
    thread_local bool tBuilt = false;
    if (!tBuilt) {
        new (tStorage) IPCThreadState();
        tBuilt = true;
    }
    return reinterpret_cast<IPCThreadState*>(tStorage);
}

IPCThreadState* IPCThreadState::selfOrNull() {
    return self();
}

IPCThreadState::IPCThreadState()
    : mHasCallingIdentity(false),
      mCallingPid(0),
      mCallingUid(0),
      mStrictModePolicy(0),
      mLastTransactionBinderFlags(0),
      mWorkSource(kUnsetWorkSource),
      mPropagateWorkSource(false) {}

IPCThreadState::~IPCThreadState() = default;

pid_t IPCThreadState::getCallingPid() const {
    if (mHasCallingIdentity) return mCallingPid;
    return hostbinder::processIdentity().pid;
}

const char* IPCThreadState::getCallingSid() const {
    return nullptr;
}

uid_t IPCThreadState::getCallingUid() const {
    if (mHasCallingIdentity) return mCallingUid;
    return hostbinder::processIdentity().uid;
}

void IPCThreadState::setStrictModePolicy(int32_t policy) {
    mStrictModePolicy = policy;
}

int32_t IPCThreadState::getStrictModePolicy() const {
    return mStrictModePolicy;
}

int64_t IPCThreadState::setCallingWorkSourceUid(uid_t uid) {
    const int64_t token = setCallingWorkSourceUidWithoutPropagation(uid);
    mPropagateWorkSource = true;
    return token;
}

int64_t IPCThreadState::setCallingWorkSourceUidWithoutPropagation(uid_t uid) {
    const int64_t propagatedBit = static_cast<int64_t>(mPropagateWorkSource)
                                  << kWorkSourcePropagatedBitIndex;
    const int64_t token = propagatedBit | static_cast<int64_t>(static_cast<uint32_t>(mWorkSource));
    mWorkSource = static_cast<int32_t>(uid);
    return token;
}

uid_t IPCThreadState::getCallingWorkSourceUid() const {
    return static_cast<uid_t>(mWorkSource);
}

int64_t IPCThreadState::clearCallingWorkSource() {
    return setCallingWorkSourceUid(static_cast<uid_t>(kUnsetWorkSource));
}

void IPCThreadState::restoreCallingWorkSource(int64_t token) {
    setCallingWorkSourceUidWithoutPropagation(static_cast<uid_t>(static_cast<int32_t>(token)));
    mPropagateWorkSource = ((token >> kWorkSourcePropagatedBitIndex) & 1) == 1;
}

void IPCThreadState::clearPropagateWorkSource() {
    mPropagateWorkSource = false;
}

bool IPCThreadState::shouldPropagateWorkSource() const {
    return mPropagateWorkSource;
}

void IPCThreadState::setLastTransactionBinderFlags(int32_t flags) {
    mLastTransactionBinderFlags = flags;
}

int32_t IPCThreadState::getLastTransactionBinderFlags() const {
    return mLastTransactionBinderFlags;
}

int64_t IPCThreadState::clearCallingIdentity() {
    const int64_t token = (static_cast<int64_t>(getCallingUid()) << 32) |
                          static_cast<int64_t>(static_cast<uint32_t>(getCallingPid()));
    mHasCallingIdentity = false;
    return token;
}

void IPCThreadState::restoreCallingIdentity(int64_t token) {
    mHasCallingIdentity = true;
    mCallingUid = static_cast<uid_t>(static_cast<uint64_t>(token) >> 32);
    mCallingPid = static_cast<pid_t>(static_cast<int32_t>(token));
}

void IPCThreadState::flushCommands() {}

void IPCThreadState::setCallingIdentityForHost(uid_t uid, pid_t pid, uint32_t flags) {
    mHasCallingIdentity = true;
    mCallingUid = uid;
    mCallingPid = (flags & IBinder::FLAG_ONEWAY) != 0 ? 0 : pid;
    mLastTransactionBinderFlags = static_cast<int32_t>(flags);
}

void IPCThreadState::resetCallingIdentityForHost() {
    mHasCallingIdentity = false;
}

}  // namespace android
