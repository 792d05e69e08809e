/*
 * Host stand-in of libbinder's BBinder (a binder object implemented in this process) and
 * BpRefBase (the base of interface proxies holding a remote binder).
 */
#ifndef ANDROID_BINDER_H
#define ANDROID_BINDER_H

#include <binder/IBinder.h>

#include <atomic>

namespace android {

class BBinder : public IBinder {
public:
    BBinder();

    const String16& getInterfaceDescriptor() const override;
    bool isBinderAlive() const override;
    status_t pingBinder() override;
    status_t dump(int fd, const Vector<String16>& args) override;

    // Rewinds `data`, answers the transactions every binder understands (ping, extension,
    // debug pid) and hands the rest to onTransact; rewinds `reply` afterwards.
    status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0) final;

    // A local binder never dies: both return INVALID_OPERATION.
    status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                         uint32_t flags = 0) override;
    status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                           uint32_t flags = 0, wp<DeathRecipient>* outRecipient = nullptr) override;

    void* attachObject(const void* objectID, void* object, void* cleanupCookie,
                       object_cleanup_func func) final;
    void* findObject(const void* objectID) const final;
    void* detachObject(const void* objectID) final;

    BBinder* localBinder() override;

    bool isRequestingSid();
    void setRequestingSid(bool requestSid);

    sp<IBinder> getExtension();
    void setExtension(const sp<IBinder>& extension);

    pid_t getDebugPid();

protected:
    ~BBinder() override;

    virtual status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                uint32_t flags = 0);

private:
    BBinder(const BBinder& o) = delete;
    BBinder& operator=(const BBinder& o) = delete;

    class Extras;
    Extras* getOrCreateExtras();

    std::atomic<Extras*> mExtras;
    std::atomic<bool> mRequestingSid;
};

class BpRefBase : public virtual RefBase {
protected:
    explicit BpRefBase(const sp<IBinder>& o);
    ~BpRefBase() override;

    inline IBinder* remote() const { return mRemote.get(); }
    inline sp<IBinder> remoteStrong() const { return mRemote; }

private:
    BpRefBase(const BpRefBase& o) = delete;
    BpRefBase& operator=(const BpRefBase& o) = delete;

    const sp<IBinder> mRemote;
};

}  // namespace android

#endif  // ANDROID_BINDER_H
