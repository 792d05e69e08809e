/*
 * IBinder's defaults, BBinder, BpRefBase and IInterface.
 */
#include <binder/Binder.h>
#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <unistd.h>

#include <map>
#include <mutex>

namespace android {

// ---------------------------------------------------------------------------------------------
// IBinder

IBinder::IBinder() : RefBase() {}

IBinder::~IBinder() = default;

sp<IInterface> IBinder::queryLocalInterface(const String16& /*descriptor*/) {
    return nullptr;
}

bool IBinder::checkSubclass(const void* /*subclassID*/) const {
    return false;
}

BBinder* IBinder::localBinder() {
    return nullptr;
}

BpBinder* IBinder::remoteBinder() {
    return nullptr;
}

status_t IBinder::getExtension(sp<IBinder>* out) {
    if (out == nullptr) return BAD_VALUE;
    BBinder* local = localBinder();
    if (local != nullptr) {
        *out = local->getExtension();
        return OK;
    }
    Parcel data;
    Parcel reply;
    status_t status = transact(EXTENSION_TRANSACTION, data, &reply);
    if (status != OK) return status;
    return reply.readNullableStrongBinder(out);
}

status_t IBinder::getDebugPid(pid_t* outPid) {
    if (outPid == nullptr) return BAD_VALUE;
    BBinder* local = localBinder();
    if (local != nullptr) {
        *outPid = local->getDebugPid();
        return OK;
    }
    Parcel data;
    Parcel reply;
    status_t status = transact(DEBUG_PID_TRANSACTION, data, &reply);
    if (status != OK) return status;
    int32_t pid = 0;
    status = reply.readInt32(&pid);
    if (status != OK) return status;
    *outPid = pid;
    return OK;
}

// ---------------------------------------------------------------------------------------------
// BBinder

class BBinder::Extras {
public:
    struct Entry {
        void* object;
        void* cleanupCookie;
        IBinder::object_cleanup_func func;
    };

    ~Extras() {
        for (auto& it : mObjects) {
            if (it.second.func != nullptr) {
                it.second.func(it.first, it.second.object, it.second.cleanupCookie);
            }
        }
    }

    mutable std::mutex mLock;
    std::map<const void*, Entry> mObjects;
    sp<IBinder> mExtension;
};

BBinder::BBinder() : mExtras(nullptr), mRequestingSid(false) {}

BBinder::~BBinder() {
    delete mExtras.load(std::memory_order_acquire);
}

BBinder::Extras* BBinder::getOrCreateExtras() {
    Extras* e = mExtras.load(std::memory_order_acquire);
    if (e != nullptr) return e;
    Extras* created = new Extras();
    // Another thread may have won the race; its object is kept and ours dropped.
    if (!mExtras.compare_exchange_strong(e, created, std::memory_order_acq_rel)) {
        delete created;
        return e;
    }
    return created;
}

const String16& BBinder::getInterfaceDescriptor() const {
    static const String16 kEmpty;
    return kEmpty;
}

bool BBinder::isBinderAlive() const {
    return true;
}

status_t BBinder::pingBinder() {
    return OK;
}

status_t BBinder::dump(int /*fd*/, const Vector<String16>& /*args*/) {
    return OK;
}

status_t BBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    data.setDataPosition(0);
    status_t err = NO_ERROR;
    switch (code) {
        case PING_TRANSACTION:
            err = pingBinder();
            break;
        case EXTENSION_TRANSACTION:
            if (reply == nullptr) {
                err = BAD_VALUE;
            } else {
                err = reply->writeStrongBinder(getExtension());
            }
            break;
        case DEBUG_PID_TRANSACTION:
            if (reply == nullptr) {
                err = BAD_VALUE;
            } else {
                err = reply->writeInt32(getDebugPid());
            }
            break;
        case SET_RPC_CLIENT_TRANSACTION:
            // No RPC sessions on the host.
            err = INVALID_OPERATION;
            break;
        default:
            err = onTransact(code, data, reply, flags);
            break;
    }
    if (reply != nullptr) reply->setDataPosition(0);
    return err;
}

status_t BBinder::linkToDeath(const sp<DeathRecipient>& /*recipient*/, void* /*cookie*/,
                              uint32_t /*flags*/) {
    return INVALID_OPERATION;
}

status_t BBinder::unlinkToDeath(const wp<DeathRecipient>& /*recipient*/, void* /*cookie*/,
                                uint32_t /*flags*/, wp<DeathRecipient>* /*outRecipient*/) {
    return INVALID_OPERATION;
}

void* BBinder::attachObject(const void* objectID, void* object, void* cleanupCookie,
                            object_cleanup_func func) {
    Extras* e = getOrCreateExtras();
    std::lock_guard<std::mutex> lock(e->mLock);
    auto it = e->mObjects.find(objectID);
    if (it != e->mObjects.end()) return it->second.object;
    e->mObjects[objectID] = Extras::Entry{object, cleanupCookie, func};
    return nullptr;
}

void* BBinder::findObject(const void* objectID) const {
    Extras* e = mExtras.load(std::memory_order_acquire);
    if (e == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(e->mLock);
    auto it = e->mObjects.find(objectID);
    return it != e->mObjects.end() ? it->second.object : nullptr;
}

void* BBinder::detachObject(const void* objectID) {
    Extras* e = mExtras.load(std::memory_order_acquire);
    if (e == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(e->mLock);
    auto it = e->mObjects.find(objectID);
    if (it == e->mObjects.end()) return nullptr;
    void* object = it->second.object;
    e->mObjects.erase(it);
    return object;
}

BBinder* BBinder::localBinder() {
    return this;
}

bool BBinder::isRequestingSid() {
    return mRequestingSid.load(std::memory_order_relaxed);
}

void BBinder::setRequestingSid(bool requestSid) {
    mRequestingSid.store(requestSid, std::memory_order_relaxed);
}

sp<IBinder> BBinder::getExtension() {
    Extras* e = mExtras.load(std::memory_order_acquire);
    if (e == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(e->mLock);
    return e->mExtension;
}

void BBinder::setExtension(const sp<IBinder>& extension) {
    Extras* e = getOrCreateExtras();
    std::lock_guard<std::mutex> lock(e->mLock);
    e->mExtension = extension;
}

pid_t BBinder::getDebugPid() {
    return getpid();
}

status_t BBinder::onTransact(uint32_t code, const Parcel& /*data*/, Parcel* reply,
                             uint32_t /*flags*/) {
    switch (code) {
        case INTERFACE_TRANSACTION:
            if (reply == nullptr) return BAD_VALUE;
            return reply->writeString16(getInterfaceDescriptor());
        case DUMP_TRANSACTION:
        case SHELL_COMMAND_TRANSACTION:
        case SYSPROPS_TRANSACTION:
            // No file descriptors and no system-property service to poke on the host.
            return OK;
        default:
            return UNKNOWN_TRANSACTION;
    }
}

// ---------------------------------------------------------------------------------------------
// BpRefBase

BpRefBase::BpRefBase(const sp<IBinder>& o) : mRemote(o) {}

BpRefBase::~BpRefBase() = default;

// ---------------------------------------------------------------------------------------------
// IInterface

IInterface::IInterface() : RefBase() {}

IInterface::~IInterface() = default;

sp<IBinder> IInterface::asBinder(const IInterface* iface) {
    if (iface == nullptr) return nullptr;
    return const_cast<IInterface*>(iface)->onAsBinder();
}

sp<IBinder> IInterface::asBinder(const sp<IInterface>& iface) {
    if (iface == nullptr) return nullptr;
    return iface->onAsBinder();
}

}  // namespace android
