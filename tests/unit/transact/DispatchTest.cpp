// Which codes the extension answers, the lenient interface token, the permission gate, and how
// parcels that are short or malformed are answered.
#include <gtest/gtest.h>
#include <hostctl/Binder.h>

#include <limits>
#include <vector>

#include "TransactTestSupport.h"

namespace {

using namespace android;
using transacttest::Call;
using transacttest::kSystemCamera;
using transacttest::TransactTest;

using DispatchTest = TransactTest;

TEST_F(DispatchTest, CodesOutsideThePrivateRangeAreNotTheExtensions) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    testsupport::LogCapture logs;
    for (uint32_t code : {0u, 1u, 10000u, 10015u, 20001u, std::numeric_limits<uint32_t>::max()}) {
        Call call;
        Parcel reply;
        const Parcel& data = call.data();
        EXPECT_EQ(INVALID_OPERATION, ext->onTransact(code, data, &reply, 0)) << code;
        // Left untouched for the server, which may try its own handling next.
        EXPECT_EQ(0u, data.dataPosition()) << code;
        EXPECT_EQ(0u, reply.dataSize()) << code;
    }
    EXPECT_TRUE(logs.lines().empty()) << logs.dump();
}

// The line a missing token leaves is pinned below and by transactions_codes.json.
TEST_F(DispatchTest, MissingTokenStillLetsTheCallTakeEffect) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    hostctl::ScopedCallingIdentity caller(10077, 4321);
    Call call(/*token=*/false);
    Parcel reply;
    EXPECT_EQ(OK, ext->onTransact(10006, call.data(), &reply, 0));
    EXPECT_EQ(10077, ext->apkUid());
    EXPECT_EQ(4321, ext->apkPid());
}

TEST_F(DispatchTest, TokenFailureLinesTakeTheShapeOfTheirCode) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    hostctl::grantPermission(getuid(), kSystemCamera);
    testsupport::LogCapture logs;
    const uint32_t flags = 1;
    for (uint32_t code = 10001; code <= 10014; ++code) {
        Call call(/*token=*/false);
        Parcel reply;
        ext->onTransact(code, call.data(), &reply, flags);
    }
    for (uint32_t code : {10004u, 10010u, 10011u, 10012u, 10013u}) {
        EXPECT_EQ(1u, logs.count("onTransact, " + std::to_string(code) +
                                 " enforceInterface res: 0, flags: 1"))
            << logs.dump();
    }
    EXPECT_EQ(1u, logs.count("[RIO-Torch] onTransact: 10008 enforceInterface res: 0"))
        << logs.dump();
    for (uint32_t code : {10001u, 10002u, 10003u, 10005u, 10006u, 10007u, 10014u}) {
        EXPECT_EQ(1u, logs.count("onTransact, " + std::to_string(code) + " enforceInterface res: 0"))
            << logs.dump();
    }
    // Disconnect-all is the one code that never reads a token.
    EXPECT_EQ(0u, logs.count("10009 enforceInterface")) << logs.dump();
    EXPECT_EQ(13u, logs.count("enforceInterface res: 0")) << logs.dump();
}

// ---- The SYSTEM_CAMERA gate of 10009 and 10011 ----

TEST_F(DispatchTest, GatedCodesRefuseACallerWithoutThePermissionAndWriteNothing) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    hostctl::ScopedCallingIdentity caller(10100, 5000);
    // Granted to someone else, and another permission to this caller.
    hostctl::grantPermission(10101, kSystemCamera);
    hostctl::grantPermission(10100, "android.permission.CAMERA");
    for (uint32_t code : {10009u, 10011u}) {
        Call call;
        Parcel reply;
        const status_t res = ext->onTransact(code, call.data(), &reply, 0);
        EXPECT_EQ(static_cast<status_t>(0x80000000u), res) << code;
        EXPECT_EQ(UNKNOWN_ERROR, res) << code;
        EXPECT_EQ(0u, reply.dataSize()) << code;
    }
    const auto checks = hostctl::permissionChecks();
    ASSERT_EQ(2u, checks.size());
    for (const auto& check : checks) {
        EXPECT_EQ(kSystemCamera, check.permission);
        EXPECT_EQ(10100u, check.uid);
        EXPECT_EQ(5000, check.pid);
        EXPECT_FALSE(check.granted);
    }
}

TEST_F(DispatchTest, PermissionGrantedToTheCallersPidAloneIsEnough) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    hostctl::ScopedCallingIdentity caller(1047, 812);
    hostctl::grantPermission(1047, 812, kSystemCamera);
    ext->setConnectStatus(true);
    Call call;
    Parcel reply;
    ASSERT_EQ(OK, ext->onTransact(10011, call.data(), &reply, 0));
    reply.setDataPosition(0);
    EXPECT_EQ(0, reply.readExceptionCode());
    EXPECT_TRUE(reply.readBool());
    EXPECT_EQ(0u, reply.dataAvail());
}

// ---- Short and malformed parcels ----

TEST_F(DispatchTest, MissingNumbersFailWithBadValueAndChangeNothing) {
    hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
    sp<transacttest::TransactExtension> ext = makeExtension();
    sp<MagnecticSensorManager> rio = ext->giveMagneticManager();
    rio->setTorchIntensity(7);
    {
        Call call;  // package and uid, no pid
        call.str("com.vantu.camera").i32(10050);
        Parcel reply;
        EXPECT_EQ(BAD_VALUE, ext->onTransact(10005, call.data(), &reply, 0));
        EXPECT_TRUE(ext->privilegedUids().empty());
        EXPECT_EQ(-1, ext->apkUid());
        EXPECT_EQ(String16("NULL"), ext->getAPKPackageName());
    }
    {
        Call call;
        Parcel reply;
        EXPECT_EQ(BAD_VALUE, ext->onTransact(10008, call.data(), &reply, 0));
        EXPECT_EQ(7, rio->getTorchIntensity());
    }
}

TEST_F(DispatchTest, BadStringLengthsReadAsAnEmptyPackage) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    const std::vector<std::vector<int32_t>> bodies = {
        {},                                                 // nothing after the token
        {-1},                                               // null string
        {-7, 0x00630061},                                   // negative length other than -1
        {std::numeric_limits<int32_t>::max(), 0x00630061},  // far longer than the parcel
        {0x40000000, 0},              // length whose byte count overflows an int32
        {3, 0x00620061, 0x00640063},  // no terminator where it belongs
    };
    for (const auto& body : bodies) {
        ext->setAPKPackageName(String16("before"));
        Call call;
        for (int32_t w : body) call.i32(w);
        Parcel reply;
        EXPECT_EQ(OK, ext->onTransact(10003, call.data(), &reply, 0));
        EXPECT_EQ(String16(""), ext->getAPKPackageName()) << body.size();
    }
}

TEST_F(DispatchTest, MalformedBinderFailsWithBadValueAndNoReply) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    // Without the authorised-app manager 10002 reads nothing and succeeds.
    std::vector<uint32_t> codes = {10012};
    if (ext->hasAuthManager()) codes.push_back(10002);
    for (uint32_t code : codes) {
        for (const auto& body : std::vector<std::vector<int32_t>>{
                 {},                      // truncated
                 {5, 6, 7, 8, 9, 10, 0},  // wrong type word
                 // A binder record naming an object the parcel does not carry.
                 {static_cast<int32_t>(B_PACK_CHARS('s', 'b', '*', 0x85)), 0, 1, 0, 0, 0, 0x0c},
             }) {
            Call call;
            for (int32_t w : body) call.i32(w);
            Parcel reply;
            EXPECT_EQ(BAD_VALUE, ext->onTransact(code, call.data(), &reply, 0))
                << code << " " << body.size();
            EXPECT_EQ(0u, reply.dataSize());
        }
    }
}

// Run under ASan: a one-way call comes without a reply parcel, and no code may write through
// it. Each call must still take the effect and status it has when a reply is given.
TEST_F(DispatchTest, NullReplyParcelIsNeverWrittenAndChangesNoOutcome) {
    sp<transacttest::TransactExtension> ext = makeExtension();
    sp<transacttest::TransactExtension> twin = makeExtension();
    hostctl::grantPermission(getuid(), kSystemCamera);
    for (uint32_t code = 10001; code <= 10014; ++code) {
        Call call;
        call.str("com.app").i32(1).i32(2).i32(3);
        Call same;
        same.str("com.app").i32(1).i32(2).i32(3);
        Parcel reply;
        EXPECT_EQ(twin->onTransact(code, same.data(), &reply, IBinder::FLAG_ONEWAY),
                  ext->onTransact(code, call.data(), nullptr, IBinder::FLAG_ONEWAY))
            << code;
    }
    EXPECT_EQ(twin->apkUid(), ext->apkUid());
    EXPECT_EQ(twin->apkPid(), ext->apkPid());
}

}  // namespace
