// RPC headers and exception replies: what enforceInterface accepts and how Status travels.
#include <binder/IBinder.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <gtest/gtest.h>

using android::IPCThreadState;
using android::OK;
using android::Parcel;
using android::String16;
using android::String8;
using android::binder::Status;

namespace {

const String16 kCamera("android.hardware.camera");

}  // namespace

TEST(EnforceInterface, AcceptsItsOwnTokenAndLeavesThePayloadNext) {
    Parcel p;
    p.writeInterfaceToken(kCamera);
    p.writeInt32(77);
    p.setDataPosition(0);
    EXPECT_TRUE(p.enforceInterface(kCamera));
    EXPECT_EQ(77, p.readInt32());

    p.setDataPosition(0);
    EXPECT_TRUE(p.enforceInterface(kCamera.string(), kCamera.size()));
}

TEST(EnforceInterface, RefusesOtherWrongTruncatedAndMissingTokens) {
    Parcel refused[4];
    refused[0].writeInterfaceToken(String16("android.hardware.camerb"));
    refused[1].writeInterfaceToken(String16("android.hardware"));  // same prefix, shorter
    refused[2].writeInt32(0);
    refused[2].writeInt32(-1);
    refused[2].writeInt32(0x564E4452);  // 'VNDR': a vendor-built libbinder
    refused[2].writeString16(kCamera);
    refused[3].writeString16(String16("com.example.app"));  // only the payload, no token
    for (size_t i = 0; i < 4; ++i) {
        refused[i].setDataPosition(0);
        EXPECT_FALSE(refused[i].enforceInterface(kCamera)) << "parcel " << i;
    }
    Parcel full;
    full.writeInterfaceToken(kCamera);
    for (size_t cut : {size_t(0), size_t(8), size_t(12), size_t(20), full.dataSize() - 4}) {
        Parcel p;
        p.setData(full.data(), cut);
        EXPECT_FALSE(p.enforceInterface(kCamera)) << "cut at " << cut;
    }
}

TEST(EnforceInterface, TakesTheCallersStrictModePolicyUnlessOneWay) {
    IPCThreadState* ts = IPCThreadState::self();
    ts->setStrictModePolicy(0x15);
    Parcel p;
    p.writeInterfaceToken(kCamera);
    ts->setStrictModePolicy(0);

    p.setDataPosition(0);
    ASSERT_TRUE(p.enforceInterface(kCamera, ts));
    EXPECT_EQ(static_cast<int32_t>(0x80000015), ts->getStrictModePolicy());

    ts->setLastTransactionBinderFlags(android::IBinder::FLAG_ONEWAY);
    p.setDataPosition(0);
    ASSERT_TRUE(p.enforceInterface(kCamera, ts));
    EXPECT_EQ(0, ts->getStrictModePolicy());
    ts->setLastTransactionBinderFlags(0);
}

TEST(StatusWire, ServiceSpecificCarriesMessageEmptyTraceAndCode) {
    Parcel p;
    ASSERT_EQ(OK, Status::fromServiceSpecificError(1, "ab").writeToParcel(&p));
    Parcel expected;
    expected.writeInt32(Status::EX_SERVICE_SPECIFIC);
    expected.writeString16(String16("ab"));
    expected.writeInt32(0);
    expected.writeInt32(1);
    ASSERT_EQ(expected.dataSize(), p.dataSize());
    EXPECT_EQ(0, p.compareData(expected));
}

TEST(StatusWire, RoundTripsKeepCodeAndMessage) {
    const Status cases[] = {
        Status::ok(),
        Status::fromExceptionCode(Status::EX_SECURITY, "denied"),
        Status::fromExceptionCode(Status::EX_ILLEGAL_ARGUMENT),
        Status::fromServiceSpecificError(-7, String8("afterEndConfigure:12: no")),
        Status::fromExceptionCode(Status::EX_PARCELABLE, "p"),
    };
    for (const Status& in : cases) {
        Parcel p;
        ASSERT_EQ(OK, in.writeToParcel(&p));
        p.writeInt32(0x5a5a);  // what follows must still be in place
        p.setDataPosition(0);
        Status out = Status::fromExceptionCode(Status::EX_NULL_POINTER, "stale");
        ASSERT_EQ(OK, out.readFromParcel(p)) << in.toString8().string();
        EXPECT_EQ(in.exceptionCode(), out.exceptionCode());
        EXPECT_EQ(in.serviceSpecificErrorCode(), out.serviceSpecificErrorCode());
        EXPECT_EQ(in.exceptionMessage(), out.exceptionMessage());
        EXPECT_EQ(0x5a5a, p.readInt32());
    }
}

TEST(StatusWire, TransactionFailuresAreReturnedNotWritten) {
    Parcel p;
    EXPECT_EQ(android::DEAD_OBJECT, Status::fromStatusT(android::DEAD_OBJECT).writeToParcel(&p));
    EXPECT_EQ(0u, p.dataSize());
    EXPECT_TRUE(Status::fromStatusT(OK).isOk());
}

TEST(StatusWire, ReplyHeaderIsSkippedAsSuccess) {
    Parcel p;
    p.writeInt32(Status::EX_HAS_REPLY_HEADER);
    p.writeInt32(12);  // header size, its own word included
    p.writeInt32(0x1111);
    p.writeInt32(0x2222);
    p.writeInt32(99);
    p.setDataPosition(0);
    Status s;
    EXPECT_EQ(OK, s.readFromParcel(p));
    EXPECT_TRUE(s.isOk());
    EXPECT_EQ(99, p.readInt32());
}

TEST(StatusWire, MalformedRepliesBecomeTransactionFailures) {
    Parcel empty;
    EXPECT_EQ(Status::EX_TRANSACTION_FAILED, empty.readExceptionCode());

    Parcel noMessage;
    noMessage.writeInt32(Status::EX_SECURITY);
    noMessage.setDataPosition(0);
    Status s;
    EXPECT_NE(OK, s.readFromParcel(noMessage));
    EXPECT_EQ(Status::EX_TRANSACTION_FAILED, s.exceptionCode());

    Parcel hugeTrace;
    hugeTrace.writeInt32(Status::EX_SECURITY);
    hugeTrace.writeString16(String16("m"));
    hugeTrace.writeInt32(1 << 20);
    hugeTrace.setDataPosition(0);
    EXPECT_EQ(android::UNKNOWN_ERROR, s.readFromParcel(hugeTrace));
}

TEST(StatusText, ToString8FollowsLibbinder) {
    EXPECT_STREQ("No error", Status::ok().toString8().string());
    EXPECT_STREQ(
        "Status(-8, EX_SERVICE_SPECIFIC): '1: afterEndConfigure:10: bad'",
        Status::fromServiceSpecificError(1, "afterEndConfigure:10: bad").toString8().string());
    EXPECT_STREQ("Status(-1, EX_SECURITY): 'no'",
                 Status::fromExceptionCode(Status::EX_SECURITY, "no").toString8().string());
    EXPECT_STREQ("Status(-129, EX_TRANSACTION_FAILED): 'DEAD_OBJECT: '",
                 Status::fromStatusT(android::DEAD_OBJECT).toString8().string());
}
