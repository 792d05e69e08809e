/*
 * Control of the host's binder: the calling identity each thread's incoming call has, the
 * permissions the platform grants, and named binders of other processes that tests and the
 * simulator hand to the library, watch and kill. The library only sees the
 * <binder/...> headers.
 */
#ifndef HOSTCTL_BINDER_H
#define HOSTCTL_BINDER_H

#include <binder/IBinder.h>
#include <binder/Parcel.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace hostctl {

// ---- Calling identity ------------------------------------------------------------------------

// The identity (uid, pid) of the incoming call the current thread serves, as
// IPCThreadState::getCallingUid()/getCallingPid() report it on this thread. With `flags` holding
// IBinder::FLAG_ONEWAY the call is one-way and, as the binder driver delivers it, has no calling
// pid: getCallingPid() reports 0.
void setCallingIdentity(uid_t uid, pid_t pid, uint32_t flags = 0);

// The current thread serves a hwbinder call from (uid, pid), e.g. a native client of the camera
// server's HIDL interface: CameraThreadState reports this identity while binder's IPCThreadState
// reports the process's own, as on a phone. Reset: the thread serves no hwbinder call.
void setHwbinderCallingIdentity(uid_t uid, pid_t pid);
void resetHwbinderCallingIdentity();
// This thread serves no call any more: it sees the process identity again.
void resetCallingIdentity();

// The process's own identity, seen by threads that serve no call and restored by
// clearCallingIdentity(). Default: getuid()/getpid().
void setProcessIdentity(uid_t uid, pid_t pid);
void resetProcessIdentity();

// Sets this thread's calling identity for the life of the object and then puts back what the
// thread had before.
class ScopedCallingIdentity {
public:
    ScopedCallingIdentity(uid_t uid, pid_t pid);
    ~ScopedCallingIdentity();
    ScopedCallingIdentity(const ScopedCallingIdentity&) = delete;
    ScopedCallingIdentity& operator=(const ScopedCallingIdentity&) = delete;

private:
    bool mHadIdentity;
    int64_t mToken;
};

// ---- Permissions -----------------------------------------------------------------------------

// checkPermission(permission, pid, uid) is true when `permission` was granted to the uid
// (any pid) or to that very (uid, pid). Nothing is granted by default, to any uid.
void grantPermission(uid_t uid, const std::string& permission);
void grantPermission(uid_t uid, pid_t pid, const std::string& permission);
void revokePermission(uid_t uid, const std::string& permission);
void revokePermission(uid_t uid, pid_t pid, const std::string& permission);
void clearPermissions();

struct PermissionCheck {
    std::string permission;
    pid_t pid;
    uid_t uid;
    bool granted;
};
// Every checkPermission the platform answered, oldest first.
std::vector<PermissionCheck> permissionChecks();
void clearPermissionChecks();

// ---- Services --------------------------------------------------------------------------------

// Forgets a service registered with defaultServiceManager()->addService, or all of them.
void removeService(const std::string& name);
void clearServices();

// ---- Binders of other processes --------------------------------------------------------------

// One transaction a host binder received.
struct Transaction {
    uint32_t code;
    uint32_t flags;
    // The parcel's bytes; binder objects in it are counted, not kept.
    std::vector<uint8_t> data;
    size_t binderCount;
    // The descriptor of the RPC header the data starts with, or empty without one.
    std::string interfaceName;
    // Where the payload after the RPC header (or the data) starts.
    size_t payloadOffset;
};

// A binder living in another (simulated) process: it can be linked to, pinged, called and
// killed. Calls are recorded and answered by an optional handler.
class HostBinder : public android::IBinder {
public:
    using Handler = std::function<android::status_t(uint32_t code, const android::Parcel& data,
                                                    android::Parcel* reply, uint32_t flags)>;

    HostBinder(const std::string& name, const std::string& descriptor);

    const std::string& name() const { return mName; }

    const android::String16& getInterfaceDescriptor() const override;
    bool isBinderAlive() const override;
    android::status_t pingBinder() override;
    android::status_t dump(int fd, const android::Vector<android::String16>& args) override;
    // DEAD_OBJECT once killed. Otherwise records the call, then answers ping and interface
    // queries itself and hands the rest to the handler (OK with an empty reply without one).
    android::status_t transact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags = 0) override;
    // BAD_VALUE for a null recipient, DEAD_OBJECT once killed.
    android::status_t linkToDeath(const android::sp<DeathRecipient>& recipient,
                                  void* cookie = nullptr, uint32_t flags = 0) override;
    // Removes the first link with this recipient (or, for a null recipient, this cookie) and
    // these flags; NAME_NOT_FOUND if there is none, DEAD_OBJECT once killed.
    android::status_t unlinkToDeath(const android::wp<DeathRecipient>& recipient,
                                    void* cookie = nullptr, uint32_t flags = 0,
                                    android::wp<DeathRecipient>* outRecipient = nullptr) override;
    void* attachObject(const void* objectID, void* object, void* cleanupCookie,
                       object_cleanup_func func) override;
    void* findObject(const void* objectID) const override;
    void* detachObject(const void* objectID) override;

    // Kills the process behind the binder: every linked recipient that still exists gets
    // binderDied once, on this thread, after the links are dropped. False if already dead.
    bool kill();

    void setHandler(Handler handler);
    std::vector<Transaction> transactions() const;
    void clearTransactions();
    size_t linkCount() const;

protected:
    ~HostBinder() override;

private:
    struct Link {
        android::wp<DeathRecipient> recipient;
        void* cookie;
        uint32_t flags;
    };
    struct AttachedObject {
        const void* id;
        void* object;
        void* cleanupCookie;
        object_cleanup_func func;
    };
    // A small call as transact() first records it: a fixed-size entry in chunks taken with
    // mmap, so that recording it allocates nothing on the calling thread (the always-on camera's
    // signal handler makes one-way calls). Entries become Transactions when read; a larger call
    // becomes one at once.
    static constexpr size_t kJournalInlineBytes = 192;
    static constexpr size_t kJournalChunkEntries = 64;
    struct JournalEntry {
        uint32_t code;
        uint32_t flags;
        size_t binderCount;
        size_t size;
        uint8_t data[kJournalInlineBytes];
    };
    struct JournalChunk {
        JournalChunk* next;
        size_t used;
        JournalEntry entries[kJournalChunkEntries];
    };
    // Under mLock.
    void journalLocked(uint32_t code, const android::Parcel& data, uint32_t flags);
    void drainJournalLocked() const;

    const std::string mName;
    const android::String16 mDescriptor;
    std::atomic<bool> mDead;
    mutable std::mutex mLock;
    std::vector<Link> mLinks;
    // Reading moves the journal's calls into mTransactions.
    mutable std::vector<Transaction> mTransactions;
    // Calls not yet moved into mTransactions, oldest first.
    mutable JournalChunk* mJournalHead = nullptr;
    mutable JournalChunk* mJournalTail = nullptr;
    std::vector<AttachedObject> mObjects;
    // Shared, so that transact() takes it without copying the function.
    std::shared_ptr<const Handler> mHandler;
};

// Creates a binder registered under `name` (replacing any earlier one of that name, which is
// not killed) with the interface descriptor `descriptor`.
android::sp<HostBinder> createBinder(const std::string& name, const std::string& descriptor = "");
// The binder registered under `name`, or null.
android::sp<HostBinder> findBinder(const std::string& name);
// Kills the binder registered under `name`; false if there is none or it is already dead.
bool killBinder(const std::string& name);
std::vector<std::string> binderNames();
// Forgets every registered binder (none is killed).
void clearBinders();

}  // namespace hostctl

#endif  // HOSTCTL_BINDER_H
