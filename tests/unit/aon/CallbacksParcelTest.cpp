// The always-on callback interface on the wire: what the proxy sends and what the stub accepts.
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>

#include <string>
#include <vector>

#include "features/aon/IAONHECallbacks.h"

namespace {

using namespace android;

constexpr char kDescriptor[] = "android.hardware.IAONHECallbacks";

// Records the calls the stub makes.
class RecordingCallbacks : public BnAONHECallbacks {
public:
    binder::Status onOpened() override { return add("onOpened"); }
    binder::Status onClosed() override { return add("onClosed"); }
    binder::Status onError(int32_t code) override {
        return add("onError(" + std::to_string(code) + ")");
    }
    binder::Status onHEDetected() override { return add("onHEDetected"); }
    std::vector<std::string> calls;

private:
    binder::Status add(const std::string& call) {
        calls.push_back(call);
        return binder::Status::ok();
    }
};

void writeToken(Parcel& data, const char* descriptor = kDescriptor) {
    data.writeInterfaceToken(String16(descriptor));
}

status_t deliver(RecordingCallbacks& stub, uint32_t code, const Parcel& data, Parcel* reply) {
    data.setDataPosition(0);
    return stub.transact(code, data, reply, IBinder::FLAG_ONEWAY);
}

TEST(AONCallbacksStubTest, EachCodeCallsItsOperation) {
    sp<RecordingCallbacks> stub = new RecordingCallbacks();
    for (uint32_t code : {1u, 2u, 4u}) {
        Parcel data, reply;
        writeToken(data);
        EXPECT_EQ(OK, deliver(*stub, code, data, &reply)) << code;
    }
    Parcel error;
    writeToken(error);
    error.writeInt32(-1);
    Parcel reply;
    EXPECT_EQ(OK, deliver(*stub, 3, error, &reply));
    EXPECT_EQ((std::vector<std::string>{"onOpened", "onClosed", "onHEDetected", "onError(-1)"}),
              stub->calls);
}

TEST(AONCallbacksStubTest, WrongOrMissingTokenIsBadType) {
    sp<RecordingCallbacks> stub = new RecordingCallbacks();
    Parcel wrong, reply;
    writeToken(wrong, "android.hardware.camera");
    EXPECT_EQ(BAD_TYPE, deliver(*stub, 1, wrong, &reply));
    Parcel noToken;
    noToken.writeInt32(3);
    EXPECT_EQ(BAD_TYPE, deliver(*stub, 3, noToken, &reply));
    EXPECT_TRUE(stub->calls.empty());
}

TEST(AONCallbacksStubTest, DataLeftOverOrMissingIsRefused) {
    sp<RecordingCallbacks> stub = new RecordingCallbacks();
    Parcel extra;
    writeToken(extra);
    extra.writeInt32(7);
    Parcel reply;
    deliver(*stub, 4, extra, &reply);
    // The refusal travels as an exception in the reply, as the AIDL compiler's stubs send it.
    reply.setDataPosition(0);
    EXPECT_EQ(binder::Status::EX_BAD_PARCELABLE, reply.readExceptionCode());

    Parcel errorWithoutCode;
    writeToken(errorWithoutCode);
    Parcel reply2;
    EXPECT_NE(OK, deliver(*stub, 3, errorWithoutCode, &reply2));

    Parcel errorWithTwo;
    writeToken(errorWithTwo);
    errorWithTwo.writeInt32(1);
    errorWithTwo.writeInt32(2);
    Parcel reply3;
    deliver(*stub, 3, errorWithTwo, &reply3);
    EXPECT_TRUE(stub->calls.empty());
}

TEST(AONCallbacksStubTest, CodesOutsideTheInterfaceGoToTheBinderBase) {
    sp<RecordingCallbacks> stub = new RecordingCallbacks();
    for (uint32_t code : {0u, 5u, 10012u}) {
        Parcel data, reply;
        writeToken(data);
        EXPECT_EQ(UNKNOWN_TRANSACTION, deliver(*stub, code, data, &reply)) << code;
    }
    EXPECT_TRUE(stub->calls.empty());
}

TEST(AONCallbacksProxyTest, WritesTokenAndArgumentsOneWay) {
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-proxy", kDescriptor);
    sp<IAONHECallbacks> proxy = interface_cast<IAONHECallbacks>(app);
    ASSERT_NE(nullptr, proxy.get());
    EXPECT_TRUE(proxy->onOpened().isOk());
    EXPECT_TRUE(proxy->onClosed().isOk());
    EXPECT_TRUE(proxy->onError(3).isOk());
    EXPECT_TRUE(proxy->onHEDetected().isOk());

    const auto calls = app->transactions();
    ASSERT_EQ(4u, calls.size());
    for (uint32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(i + 1, calls[i].code);
        EXPECT_EQ(static_cast<uint32_t>(IBinder::FLAG_ONEWAY), calls[i].flags);
        EXPECT_EQ(kDescriptor, calls[i].interfaceName);
        const size_t payload = calls[i].data.size() - calls[i].payloadOffset;
        EXPECT_EQ(i == 2 ? 4u : 0u, payload) << "code " << i + 1;
    }
    int32_t code = 0;
    memcpy(&code, calls[2].data.data() + calls[2].payloadOffset, sizeof(code));
    EXPECT_EQ(3, code);
    hostctl::clearBinders();
}

TEST(AONCallbacksProxyTest, DeadOrNullBinderFailsQuietly) {
    EXPECT_EQ(nullptr, interface_cast<IAONHECallbacks>(nullptr).get());
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-dead", kDescriptor);
    sp<IAONHECallbacks> proxy = interface_cast<IAONHECallbacks>(app);
    app->kill();
    EXPECT_EQ(DEAD_OBJECT, proxy->onHEDetected().transactionError());
    hostctl::clearBinders();
}

TEST(AONCallbacksProxyTest, DefaultImplementationAnswersUnknownTransactions) {
    sp<RecordingCallbacks> fallback = new RecordingCallbacks();
    // The stub is a binder too; here it only stands in as a default implementation.
    class Forwarding : public IAONHECallbacksDefault {
    public:
        explicit Forwarding(sp<RecordingCallbacks> to) : mTo(to) {}
        binder::Status onError(int32_t code) override { return mTo->onError(code); }
        sp<RecordingCallbacks> mTo;
    };
    ASSERT_TRUE(IAONHECallbacks::setDefaultImpl(new Forwarding(fallback)));
    EXPECT_FALSE(IAONHECallbacks::setDefaultImpl(new Forwarding(fallback)));
    ASSERT_NE(nullptr, IAONHECallbacks::getDefaultImpl().get());

    sp<hostctl::HostBinder> old = hostctl::createBinder("aon-old", kDescriptor);
    old->setHandler([](uint32_t, const Parcel&, Parcel*, uint32_t) { return UNKNOWN_TRANSACTION; });
    interface_cast<IAONHECallbacks>(old)->onError(1);
    EXPECT_EQ(std::vector<std::string>{"onError(1)"}, fallback->calls);
    // The others fall to the do-nothing default.
    EXPECT_FALSE(interface_cast<IAONHECallbacks>(old)->onOpened().isOk());
    hostctl::clearBinders();
}

}  // namespace
