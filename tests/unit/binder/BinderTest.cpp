// Local binders, interfaces over them, and host binders of other processes: death
// notifications and recorded calls.
#include <binder/Binder.h>
#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>

#include <atomic>
#include <cstring>
#include <thread>

using android::BBinder;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using android::wp;

namespace bindertest {

// A small interface built with the meta-interface macros, as platform code declares them.
class IDoubler : public android::IInterface {
public:
    DECLARE_META_INTERFACE(Doubler)
    enum { DOUBLE = IBinder::FIRST_CALL_TRANSACTION };
    virtual int32_t twice(int32_t v) = 0;
};

class BpDoubler : public android::BpInterface<IDoubler> {
public:
    explicit BpDoubler(const sp<IBinder>& impl) : BpInterface<IDoubler>(impl) {}
    int32_t twice(int32_t v) override {
        Parcel data, reply;
        data.writeInterfaceToken(IDoubler::getInterfaceDescriptor());
        data.writeInt32(v);
        if (remote()->transact(DOUBLE, data, &reply) != OK) return -1;
        return reply.readInt32();
    }
};

IMPLEMENT_META_INTERFACE(Doubler, "test.IDoubler")

}  // namespace bindertest

using bindertest::IDoubler;

namespace {

class Doubler : public android::BnInterface<IDoubler> {
public:
    int32_t twice(int32_t v) override { return 2 * v; }
    size_t positionAtEntry = 99;

protected:
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        positionAtEntry = data.dataPosition();
        if (code != DOUBLE) return BBinder::onTransact(code, data, reply, flags);
        if (!data.enforceInterface(IDoubler::descriptor)) return android::PERMISSION_DENIED;
        return reply->writeInt32(twice(data.readInt32()));
    }
};

class Recipient : public IBinder::DeathRecipient {
public:
    void binderDied(const wp<IBinder>& who) override {
        ++calls;
        last = who;
        thread = std::this_thread::get_id();
    }
    std::atomic<int> calls{0};
    wp<IBinder> last;
    std::thread::id thread;
};

class HostBinderTest : public ::testing::Test {
protected:
    void TearDown() override { hostctl::clearBinders(); }
};

}  // namespace

TEST(LocalBinder, TransactRewindsDataAndReply) {
    sp<Doubler> impl = new Doubler();
    Parcel data, reply;
    data.writeInterfaceToken(IDoubler::descriptor);
    data.writeInt32(21);  // position left at the end, as after writing
    ASSERT_EQ(OK, impl->transact(IDoubler::DOUBLE, data, &reply));
    EXPECT_EQ(0u, impl->positionAtEntry);
    EXPECT_EQ(0u, reply.dataPosition());
    EXPECT_EQ(42, reply.readInt32());
}

TEST(LocalBinder, AnswersPingInterfaceAndUnknownCodes) {
    sp<Doubler> impl = new Doubler();
    Parcel data, reply;
    EXPECT_EQ(OK, impl->transact(IBinder::PING_TRANSACTION, data, &reply));
    ASSERT_EQ(OK, impl->transact(IBinder::INTERFACE_TRANSACTION, data, &reply));
    EXPECT_EQ(String16("test.IDoubler"), reply.readString16());
    EXPECT_EQ(android::UNKNOWN_TRANSACTION, impl->transact(12345, data, &reply));
}

TEST(LocalBinder, NeverDiesSoLinkingIsRefused) {
    sp<IBinder> local = new BBinder();
    sp<Recipient> r = new Recipient();
    EXPECT_EQ(android::INVALID_OPERATION, local->linkToDeath(r));
    EXPECT_EQ(android::INVALID_OPERATION, local->unlinkToDeath(r));
    EXPECT_TRUE(local->isBinderAlive());
}

TEST(Interfaces, LocalBinderCastsToItselfRemoteOneToAProxy) {
    sp<Doubler> impl = new Doubler();
    sp<IBinder> binder = android::IInterface::asBinder(impl.get());
    EXPECT_EQ(impl.get(), android::interface_cast<IDoubler>(binder).get());
    EXPECT_EQ(nullptr, android::interface_cast<IDoubler>(sp<IBinder>()));

    // A host binder is remote: asInterface wraps it in the proxy, whose calls reach it.
    sp<hostctl::HostBinder> remote = hostctl::createBinder("doubler", "test.IDoubler");
    remote->setHandler([](uint32_t, const Parcel& data, Parcel* reply, uint32_t) -> status_t {
        if (!data.enforceInterface(IDoubler::descriptor)) return android::BAD_TYPE;
        return reply->writeInt32(data.readInt32() * 2);
    });
    sp<IDoubler> proxy = android::interface_cast<IDoubler>(remote);
    ASSERT_NE(nullptr, proxy);
    EXPECT_EQ(14, proxy->twice(7));
    EXPECT_EQ(remote.get(), android::IInterface::asBinder(proxy).get());
    hostctl::clearBinders();
}

TEST(Interfaces, ParcelWritesAnInterfaceAsItsBinder) {
    sp<Doubler> impl = new Doubler();
    Parcel p;
    ASSERT_EQ(OK, p.writeStrongBinder(sp<IDoubler>(impl)));
    p.setDataPosition(0);
    sp<IDoubler> back;
    ASSERT_EQ(OK, p.readStrongBinder(&back));
    EXPECT_EQ(impl.get(), back.get());
}

TEST_F(HostBinderTest, KillNotifiesEveryLinkedRecipientOnceOnTheKillingThread) {
    sp<hostctl::HostBinder> b = hostctl::createBinder("auth");
    sp<Recipient> r1 = new Recipient(), r2 = new Recipient();
    ASSERT_EQ(OK, b->linkToDeath(r1));
    ASSERT_EQ(OK, b->linkToDeath(r2, reinterpret_cast<void*>(0x1)));

    std::thread killer([] { EXPECT_TRUE(hostctl::killBinder("auth")); });
    const std::thread::id killerId = killer.get_id();
    killer.join();

    EXPECT_EQ(1, r1->calls);
    EXPECT_EQ(1, r2->calls);
    EXPECT_EQ(killerId, r1->thread);
    // The recipient is told which binder died, as the same object it linked to.
    EXPECT_EQ(b.get(), r1->last.promote().get());
    EXPECT_FALSE(b->isBinderAlive());
    EXPECT_EQ(android::DEAD_OBJECT, b->pingBinder());

    EXPECT_FALSE(b->kill());  // a second death notifies nobody
    EXPECT_EQ(1, r1->calls);
    EXPECT_EQ(android::DEAD_OBJECT, b->linkToDeath(r1));
    EXPECT_EQ(android::DEAD_OBJECT, b->unlinkToDeath(r1));
}

TEST_F(HostBinderTest, UnlinkedAndReleasedRecipientsAreNotNotified) {
    sp<hostctl::HostBinder> b = hostctl::createBinder("svc");
    sp<Recipient> kept = new Recipient(), unlinked = new Recipient();
    ASSERT_EQ(OK, b->linkToDeath(kept));
    ASSERT_EQ(OK, b->linkToDeath(unlinked));
    {
        sp<Recipient> released = new Recipient();
        ASSERT_EQ(OK, b->linkToDeath(released));
    }  // links hold recipients weakly
    EXPECT_EQ(OK, b->unlinkToDeath(unlinked));
    EXPECT_EQ(android::NAME_NOT_FOUND, b->unlinkToDeath(unlinked));
    EXPECT_EQ(2u, b->linkCount());
    b->kill();
    EXPECT_EQ(1, kept->calls);
    EXPECT_EQ(0, unlinked->calls);
}

TEST_F(HostBinderTest, UnlinkMatchesFlagsAndNullRecipientByCookie) {
    sp<hostctl::HostBinder> b = hostctl::createBinder("svc");
    sp<Recipient> r = new Recipient();
    void* cookie = reinterpret_cast<void*>(0x42);
    ASSERT_EQ(OK, b->linkToDeath(r, cookie, 0));
    EXPECT_EQ(android::NAME_NOT_FOUND, b->unlinkToDeath(r, cookie, 1));
    wp<IBinder::DeathRecipient> out;
    EXPECT_EQ(OK, b->unlinkToDeath(nullptr, cookie, 0, &out));
    EXPECT_EQ(r.get(), out.promote().get());
    EXPECT_EQ(android::BAD_VALUE, b->linkToDeath(nullptr));
}

TEST_F(HostBinderTest, RecordsOneWayCallsWithTheirInterface) {
    sp<hostctl::HostBinder> cb = hostctl::createBinder("aon", "android.hardware.IAONHECallbacks");
    Parcel data;
    data.writeInterfaceToken(String16("android.hardware.IAONHECallbacks"));
    data.writeInt32(5);
    Parcel reply;
    ASSERT_EQ(OK, cb->transact(3, data, &reply, IBinder::FLAG_ONEWAY));
    ASSERT_EQ(OK, cb->transact(4, data, nullptr, IBinder::FLAG_ONEWAY));

    std::vector<hostctl::Transaction> calls = cb->transactions();
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(3u, calls[0].code);
    EXPECT_EQ(static_cast<uint32_t>(IBinder::FLAG_ONEWAY), calls[0].flags);
    EXPECT_EQ("android.hardware.IAONHECallbacks", calls[0].interfaceName);
    EXPECT_EQ(data.dataSize() - 4, calls[0].payloadOffset);
    EXPECT_EQ(data.dataSize(), calls[0].data.size());
    EXPECT_EQ(0u, reply.dataSize());  // one-way calls have no reply

    cb->kill();
    EXPECT_EQ(android::DEAD_OBJECT, cb->transact(1, data, nullptr, IBinder::FLAG_ONEWAY));
    EXPECT_EQ(2u, cb->transactions().size());
}

TEST_F(HostBinderTest, RecordsManyCallsInOrderAcrossReadsSmallAndLarge) {
    // Calls are journaled in fixed-size entries and read back as transactions: order, sizes and
    // bytes must survive many entries, parcels too large for an entry, and reads in between.
    sp<hostctl::HostBinder> b = hostctl::createBinder("journal", "j.I");
    std::vector<std::vector<uint8_t>> sent;
    for (uint32_t i = 0; i < 300; ++i) {
        Parcel data;
        data.writeInterfaceToken(String16("j.I"));
        const size_t words = i % 7 == 0 ? 100 : 1;  // some exceed an entry's room
        for (size_t w = 0; w < words; ++w) data.writeInt32(static_cast<int32_t>(i * 1000 + w));
        sent.emplace_back(data.data(), data.data() + data.dataSize());
        ASSERT_EQ(OK, b->transact(i, data, nullptr, IBinder::FLAG_ONEWAY));
        if (i == 150) {
            EXPECT_EQ(151u, b->transactions().size());
        }
    }
    std::vector<hostctl::Transaction> calls = b->transactions();
    ASSERT_EQ(sent.size(), calls.size());
    for (uint32_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(i, calls[i].code);
        EXPECT_EQ(sent[i], calls[i].data) << i;
        EXPECT_EQ("j.I", calls[i].interfaceName) << i;
    }
    b->clearTransactions();
    EXPECT_TRUE(b->transactions().empty());
}

TEST_F(HostBinderTest, TravelsThroughParcelsAndIsFoundByName) {
    sp<hostctl::HostBinder> b = hostctl::createBinder("client");
    Parcel p;
    p.writeStrongBinder(b);
    p.setDataPosition(0);
    uint32_t type = 0;
    std::memcpy(&type, p.data(), sizeof(type));
    EXPECT_EQ(0x73682a85u, type);  // BINDER_TYPE_HANDLE: a binder of another process
    EXPECT_EQ(sp<IBinder>(b), p.readStrongBinder());
    EXPECT_EQ(b, hostctl::findBinder("client"));
    EXPECT_EQ(nullptr, hostctl::findBinder("nobody"));
    EXPECT_FALSE(hostctl::killBinder("nobody"));
}
