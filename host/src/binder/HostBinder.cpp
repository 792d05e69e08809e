/*
 * Named binders of simulated processes, for tests and the simulator.
 */
#include <binder/IPCThreadState.h>
#include <hostctl/Binder.h>
#include <string.h>
#include <sys/mman.h>

#include <map>

#include "ParcelWire.h"

namespace hostctl {

using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using android::String8;
using android::wp;

namespace {

// Reads the RPC header at the start of `data`, if there is one, without touching the thread's
// strict-mode state.
void decodeInterface(const Parcel& data, Transaction* t) {
    t->payloadOffset = 0;
    data.setDataPosition(0);
    int32_t words[3] = {0, 0, 0};
    for (int32_t& w : words) {
        if (data.readInt32(&w) != OK) break;
    }
    size_t len = 0;
    const char16_t* name = nullptr;
    if (words[2] == android::parcelwire::kHeader) name = data.readString16Inplace(&len);
    if (name != nullptr) {
        t->interfaceName = String8(name, len).string();
        t->payloadOffset = data.dataPosition();
    }
    data.setDataPosition(0);
}

Transaction makeTransaction(uint32_t code, uint32_t flags, const uint8_t* bytes, size_t size,
                            size_t binderCount) {
    Transaction t;
    t.code = code;
    t.flags = flags;
    t.data.assign(bytes, bytes + size);
    t.binderCount = binderCount;
    Parcel copy;
    copy.setData(bytes, size);
    decodeInterface(copy, &t);
    return t;
}

struct Registry {
    std::mutex lock;
    std::map<std::string, sp<HostBinder>> binders;
};

// Lives for the process; never destroyed so binders may be released from any static teardown.
Registry& registry() {
    static Registry* r = new Registry();
    return *r;
}

}  // namespace

HostBinder::HostBinder(const std::string& name, const std::string& descriptor)
    : mName(name), mDescriptor(String16(descriptor.c_str())), mDead(false) {}

HostBinder::~HostBinder() {
    for (const AttachedObject& obj : mObjects) {
        if (obj.func != nullptr) obj.func(obj.id, obj.object, obj.cleanupCookie);
    }
    drainJournalLocked();
}

void HostBinder::journalLocked(uint32_t code, const Parcel& data, uint32_t flags) {
    if (data.dataSize() > kJournalInlineBytes) {
        // A large parcel, which no signal handler sends, is recorded at once, after the calls
        // journaled before it.
        drainJournalLocked();
        mTransactions.push_back(
            makeTransaction(code, flags, data.data(), data.dataSize(), data.objectsCount()));
        return;
    }
    if (mJournalTail == nullptr || mJournalTail->used == kJournalChunkEntries) {
        // mmap, unlike malloc, may be called from a signal handler.
        void* memory = mmap(nullptr, sizeof(JournalChunk), PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) return;
        JournalChunk* chunk = static_cast<JournalChunk*>(memory);
        chunk->next = nullptr;
        chunk->used = 0;
        if (mJournalTail != nullptr) {
            mJournalTail->next = chunk;
        } else {
            mJournalHead = chunk;
        }
        mJournalTail = chunk;
    }
    JournalEntry& entry = mJournalTail->entries[mJournalTail->used];
    entry.code = code;
    entry.flags = flags;
    entry.binderCount = data.objectsCount();
    entry.size = data.dataSize();
    if (entry.size > 0) memcpy(entry.data, data.data(), entry.size);
    ++mJournalTail->used;
}

void HostBinder::drainJournalLocked() const {
    for (JournalChunk* chunk = mJournalHead; chunk != nullptr;) {
        for (size_t i = 0; i < chunk->used; ++i) {
            const JournalEntry& entry = chunk->entries[i];
            mTransactions.push_back(makeTransaction(entry.code, entry.flags, entry.data, entry.size,
                                                    entry.binderCount));
        }
        JournalChunk* next = chunk->next;
        munmap(chunk, sizeof(JournalChunk));
        chunk = next;
    }
    mJournalHead = mJournalTail = nullptr;
}

const String16& HostBinder::getInterfaceDescriptor() const {
    return mDescriptor;
}

bool HostBinder::isBinderAlive() const {
    return !mDead.load(std::memory_order_relaxed);
}

status_t HostBinder::pingBinder() {
    return isBinderAlive() ? OK : android::DEAD_OBJECT;
}

status_t HostBinder::dump(int /*fd*/, const android::Vector<String16>& /*args*/) {
    return isBinderAlive() ? OK : android::DEAD_OBJECT;
}

status_t HostBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    if (!isBinderAlive()) return android::DEAD_OBJECT;
    std::shared_ptr<const Handler> handler;
    {
        std::lock_guard<std::mutex> lock(mLock);
        journalLocked(code, data, flags);
        handler = mHandler;
    }
    // A one-way call has no reply, whatever the caller passed.
    if (flags & FLAG_ONEWAY) reply = nullptr;
    status_t err = OK;
    if (code == PING_TRANSACTION) {
        err = OK;
    } else if (code == INTERFACE_TRANSACTION) {
        err = reply != nullptr ? reply->writeString16(mDescriptor) : OK;
    } else if (handler != nullptr) {
        data.setDataPosition(0);
        err = (*handler)(code, data, reply, flags);
    }
    if (reply != nullptr) reply->setDataPosition(0);
    return err;
}

status_t HostBinder::linkToDeath(const sp<DeathRecipient>& recipient, void* cookie, uint32_t flags) {
    if (recipient == nullptr) return android::BAD_VALUE;
    std::lock_guard<std::mutex> lock(mLock);
    if (!isBinderAlive()) return android::DEAD_OBJECT;
    mLinks.push_back(Link{recipient, cookie, flags});
    return OK;
}

status_t HostBinder::unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie,
                                   uint32_t flags, wp<DeathRecipient>* outRecipient) {
    std::lock_guard<std::mutex> lock(mLock);
    if (!isBinderAlive()) return android::DEAD_OBJECT;
    for (auto it = mLinks.begin(); it != mLinks.end(); ++it) {
        const bool sameRecipient = it->recipient == recipient;
        // With no recipient, the cookie names the link (libbinder's rule).
        const bool byCookie = recipient == nullptr && it->cookie == cookie;
        if ((sameRecipient || byCookie) && it->flags == flags) {
            if (outRecipient != nullptr) *outRecipient = it->recipient;
            mLinks.erase(it);
            return OK;
        }
    }
    return android::NAME_NOT_FOUND;
}

void* HostBinder::attachObject(const void* objectID, void* object, void* cleanupCookie,
                               object_cleanup_func func) {
    std::lock_guard<std::mutex> lock(mLock);
    for (const AttachedObject& obj : mObjects) {
        if (obj.id == objectID) return obj.object;
    }
    mObjects.push_back(AttachedObject{objectID, object, cleanupCookie, func});
    return nullptr;
}

void* HostBinder::findObject(const void* objectID) const {
    std::lock_guard<std::mutex> lock(mLock);
    for (const AttachedObject& obj : mObjects) {
        if (obj.id == objectID) return obj.object;
    }
    return nullptr;
}

void* HostBinder::detachObject(const void* objectID) {
    std::lock_guard<std::mutex> lock(mLock);
    for (auto it = mObjects.begin(); it != mObjects.end(); ++it) {
        if (it->id == objectID) {
            void* object = it->object;
            mObjects.erase(it);
            return object;
        }
    }
    return nullptr;
}

bool HostBinder::kill() {
    std::vector<Link> links;
    {
        std::lock_guard<std::mutex> lock(mLock);
        if (!isBinderAlive()) return false;
        mDead.store(true, std::memory_order_relaxed);
        links.swap(mLinks);
    }
    // Recipients run without the lock: they may unlink, look the binder up or drop it.
    const sp<IBinder> self(this);
    const wp<IBinder> who(self);
    for (const Link& link : links) {
        sp<DeathRecipient> recipient = link.recipient.promote();
        if (recipient != nullptr) recipient->binderDied(who);
    }
    return true;
}

void HostBinder::setHandler(Handler handler) {
    std::shared_ptr<const Handler> shared;
    if (handler) shared = std::make_shared<const Handler>(std::move(handler));
    std::lock_guard<std::mutex> lock(mLock);
    mHandler = std::move(shared);
}

std::vector<Transaction> HostBinder::transactions() const {
    std::lock_guard<std::mutex> lock(mLock);
    drainJournalLocked();
    return mTransactions;
}

void HostBinder::clearTransactions() {
    std::lock_guard<std::mutex> lock(mLock);
    drainJournalLocked();
    mTransactions.clear();
}

size_t HostBinder::linkCount() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mLinks.size();
}

sp<HostBinder> createBinder(const std::string& name, const std::string& descriptor) {
    sp<HostBinder> binder = new HostBinder(name, descriptor);
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    r.binders[name] = binder;
    return binder;
}

sp<HostBinder> findBinder(const std::string& name) {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    auto it = r.binders.find(name);
    return it != r.binders.end() ? it->second : nullptr;
}

bool killBinder(const std::string& name) {
    sp<HostBinder> binder = findBinder(name);
    return binder != nullptr && binder->kill();
}

std::vector<std::string> binderNames() {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    std::vector<std::string> names;
    for (const auto& entry : r.binders) names.push_back(entry.first);
    return names;
}

void clearBinders() {
    std::map<std::string, sp<HostBinder>> binders;
    Registry& r = registry();
    {
        std::lock_guard<std::mutex> lock(r.lock);
        binders.swap(r.binders);
    }
    // Released outside the lock: a binder's last reference may run arbitrary cleanups.
}

}  // namespace hostctl
