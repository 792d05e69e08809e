// Parcel: byte layouts as a phone's libbinder writes them, round trips and malformed input.
#include <binder/Binder.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using android::BBinder;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::String16;
using android::String8;

namespace {

std::vector<uint8_t> bytes(const Parcel& p) {
    return std::vector<uint8_t>(p.data(), p.data() + p.dataSize());
}

// Little-endian int32 words.
std::vector<uint8_t> words(std::initializer_list<uint32_t> ws) {
    std::vector<uint8_t> out;
    for (uint32_t w : ws) {
        for (int i = 0; i < 4; ++i) out.push_back(static_cast<uint8_t>(w >> (8 * i)));
    }
    return out;
}

std::vector<uint8_t> concat(std::vector<uint8_t> a, const std::vector<uint8_t>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

void setBytes(Parcel* p, const std::vector<uint8_t>& b) {
    ASSERT_EQ(OK, p->setData(b.data(), b.size()));
}

}  // namespace

// No exception is one zero word.
TEST(ParcelWire, FixedSizeItemsAreLittleEndianAndBoolIsInt32) {
    Parcel p;
    p.writeNoException();
    p.writeInt32(-2);
    p.writeBool(true);
    p.writeBool(false);
    p.writeInt64(0x0102030405060708LL);
    p.writeByte(-1);
    EXPECT_EQ(concat(words({0, 0xfffffffe, 1, 0, 0x05060708}), words({0x01020304, 0xffffffff})),
              bytes(p));
}

TEST(ParcelWire, StringsAreLengthUnitsTerminatorAndZeroPadding) {
    Parcel odd;
    odd.writeString16(String16("abc"));  // 3 units + NUL = 8 bytes, no padding
    EXPECT_EQ(concat(words({3}), {'a', 0, 'b', 0, 'c', 0, 0, 0}), bytes(odd));

    Parcel even;
    even.writeString16(String16("ab"));  // 2 units + NUL = 6 bytes, padded to 8 with zeros
    EXPECT_EQ(concat(words({2}), {'a', 0, 'b', 0, 0, 0, 0, 0}), bytes(even));

    Parcel empty;
    empty.writeString16(String16(""));
    EXPECT_EQ(words({0, 0}), bytes(empty));

    Parcel null;
    null.writeString16(std::optional<String16>());
    null.writeString16(nullptr, 0);
    EXPECT_EQ(words({0xffffffff, 0xffffffff}), bytes(null));

    Parcel eight;  // String8: length, bytes, NUL and padding
    eight.writeString8(String8("abcd"));
    EXPECT_EQ(concat(words({4}), {'a', 'b', 'c', 'd', 0, 0, 0, 0}), bytes(eight));
}

TEST(ParcelWire, InterfaceTokenMatchesAndroid) {
    Parcel p;
    ASSERT_EQ(OK, p.writeInterfaceToken(String16("android.hardware.camera")));
    std::vector<uint8_t> expected = words({0x80000000, 0xffffffff, 0x53595354, 23});
    for (char c : std::string("android.hardware.camera")) {
        expected.push_back(static_cast<uint8_t>(c));
        expected.push_back(0);
    }
    expected.insert(expected.end(), {0, 0});  // terminator; 46 + 2 bytes need no padding
    EXPECT_EQ(expected, bytes(p));
    EXPECT_EQ(64u, p.dataSize());
}

TEST(ParcelWire, StrongBinderIsFlatObjectAndStabilityAndReadsBackAsTheSameObject) {
    Parcel p;
    sp<IBinder> local = new BBinder();
    p.writeInt32(7);
    ASSERT_EQ(OK, p.writeStrongBinder(local));
    ASSERT_EQ(OK, p.writeStrongBinder(sp<IBinder>()));
    p.writeInt32(8);
    ASSERT_EQ(4u + 56u + 4u, p.dataSize());
    EXPECT_EQ(1u, p.objectsCount());  // the null binder takes no table entry
    uint32_t type = 0;
    std::memcpy(&type, p.data() + 4, 4);
    EXPECT_EQ(0x73622a85u, type);  // BINDER_TYPE_BINDER
    // The null record: type BINDER, scheduling bits only, no binder, no cookie, stability 0.
    EXPECT_EQ(words({0x73622a85, 0x13, 0, 0, 0, 0, 0}),
              std::vector<uint8_t>(p.data() + 32, p.data() + 60));

    p.setDataPosition(0);
    EXPECT_EQ(7, p.readInt32());
    EXPECT_EQ(local, p.readStrongBinder());
    sp<IBinder> null = local;
    EXPECT_EQ(OK, p.readNullableStrongBinder(&null));
    EXPECT_EQ(nullptr, null);
    EXPECT_EQ(8, p.readInt32());
    p.setDataPosition(4 + 28);
    sp<IBinder> required;
    EXPECT_EQ(android::UNEXPECTED_NULL, p.readStrongBinder(&required));
}

TEST(ParcelRoundTrip, EveryScalarAndStringReadsBackAsWritten) {
    Parcel p;
    p.writeInt32(INT32_MIN);
    p.writeUint32(0xdeadbeef);
    p.writeInt64(INT64_MIN);
    p.writeUint64(UINT64_MAX);
    p.writeFloat(1.5f);
    p.writeDouble(-2.25);
    p.writeBool(true);
    p.writeChar(u'\u20ac');
    p.writeString16(String16("h\xc3\xa9llo"));
    p.writeString8(String8("xyz"));
    p.writeCString("c-str");
    p.writeUtf8AsUtf16(std::string("caf\xc3\xa9"));
    p.setDataPosition(0);

    EXPECT_EQ(INT32_MIN, p.readInt32());
    EXPECT_EQ(0xdeadbeefu, p.readUint32());
    EXPECT_EQ(INT64_MIN, p.readInt64());
    EXPECT_EQ(UINT64_MAX, p.readUint64());
    EXPECT_EQ(1.5f, p.readFloat());
    EXPECT_EQ(-2.25, p.readDouble());
    EXPECT_TRUE(p.readBool());
    EXPECT_EQ(u'\u20ac', p.readChar());
    EXPECT_EQ(String16("h\xc3\xa9llo"), p.readString16());
    EXPECT_EQ(String8("xyz"), p.readString8());
    EXPECT_STREQ("c-str", p.readCString());
    std::string utf8;
    EXPECT_EQ(OK, p.readUtf8FromUtf16(&utf8));
    EXPECT_EQ("caf\xc3\xa9", utf8);
    EXPECT_EQ(0u, p.dataAvail());
}

TEST(ParcelRoundTrip, VectorsAndNullVectors) {
    Parcel p;
    p.writeInt32Vector({1, -2, 3});
    p.writeString16Vector({String16("a"), String16("bc")});
    p.writeByteVector(std::vector<uint8_t>{9, 8, 7, 6, 5});
    p.writeInt32(-1);  // a null vector
    p.setDataPosition(0);
    std::vector<int32_t> ints;
    std::vector<String16> strs;
    std::vector<uint8_t> raw;
    EXPECT_EQ(OK, p.readInt32Vector(&ints));
    EXPECT_EQ(OK, p.readString16Vector(&strs));
    EXPECT_EQ(OK, p.readByteVector(&raw));
    EXPECT_EQ((std::vector<int32_t>{1, -2, 3}), ints);
    ASSERT_EQ(2u, strs.size());
    EXPECT_EQ(String16("bc"), strs[1]);
    EXPECT_EQ((std::vector<uint8_t>{9, 8, 7, 6, 5}), raw);
    EXPECT_EQ(android::UNEXPECTED_NULL, p.readInt32Vector(&ints));
}

TEST(ParcelRoundTrip, BlobInPlaceSurvivesTrailerWrites) {
    Parcel p;
    Parcel::WritableBlob blob;
    ASSERT_EQ(OK, p.writeBlob(6, false, &blob));
    // Writing after the blob before filling it is how camera metadata parcels are built.
    p.writeInt32(42);
    std::memcpy(blob.data(), "blob!", 6);
    p.setDataPosition(0);
    Parcel::ReadableBlob in;
    ASSERT_EQ(OK, p.readBlob(6, &in));
    EXPECT_STREQ("blob!", static_cast<const char*>(in.data()));
    EXPECT_EQ(42, p.readInt32());
}

TEST(ParcelBounds, ReadsPastTheEndFailWithoutMoving) {
    Parcel p;
    p.writeInt32(5);
    p.setDataPosition(0);
    int64_t wide = 1;
    EXPECT_EQ(android::NOT_ENOUGH_DATA, p.readInt64(&wide));
    EXPECT_EQ(0u, p.dataPosition());
    EXPECT_EQ(5, p.readInt32());
    EXPECT_EQ(0, p.readInt32());
    int32_t v = 3;
    EXPECT_EQ(android::NOT_ENOUGH_DATA, p.readInt32(&v));
    EXPECT_FALSE(p.readBool());
    EXPECT_EQ(nullptr, p.readStrongBinder());

    p.setDataPosition(1000);  // past the end: nothing reads, nothing crashes
    EXPECT_EQ(0u, p.dataAvail());
    EXPECT_EQ(4u, p.dataSize());  // callers copy dataSize() bytes from data()
    EXPECT_EQ(0, p.readInt32());
    EXPECT_EQ(nullptr, p.readCString());
    EXPECT_EQ(nullptr, p.readInplace(4));
}

TEST(ParcelBounds, MalformedStringsReadAsNull) {
    Parcel p;
    // Length 10 with only one unit of data behind it.
    setBytes(&p, words({10, 0x00000041}));
    String16 s("keep");
    EXPECT_EQ(android::UNEXPECTED_NULL, p.readString16(&s));
    EXPECT_EQ(String16(), s);

    // Length 1 but no terminator where the NUL must be.
    setBytes(&p, words({1, 0x00410041}));
    EXPECT_EQ(String16(), p.readString16());

    // A huge length must not be trusted for an allocation.
    setBytes(&p, words({0x7fffffff, 0}));
    size_t len = 99;
    EXPECT_EQ(nullptr, p.readString16Inplace(&len));
    EXPECT_EQ(0u, len);

    setBytes(&p, words({0xffffffff}));
    std::optional<String16> opt = String16("x");
    EXPECT_EQ(OK, p.readString16(&opt));
    EXPECT_FALSE(opt.has_value());
    EXPECT_EQ(android::BAD_VALUE, p.readString8(nullptr));
}

TEST(ParcelBounds, BogusVectorCountsAreRefused) {
    Parcel p;
    setBytes(&p, words({0x40000000, 1, 2}));
    std::vector<int32_t> v;
    EXPECT_EQ(android::BAD_VALUE, p.readInt32Vector(&v));
    p.setDataPosition(0);
    std::vector<int8_t> b;
    EXPECT_EQ(android::BAD_VALUE, p.readByteVector(&b));
    setBytes(&p, words({0xfffffff0}));
    EXPECT_EQ(android::BAD_VALUE, p.readInt32Vector(&v));
}

TEST(ParcelBounds, ForgedBinderRecordsAreRejected) {
    // A record copied in as raw bytes has no object table entry behind it.
    Parcel src;
    src.writeStrongBinder(sp<IBinder>(new BBinder()));
    Parcel forged;
    setBytes(&forged, bytes(src));
    sp<IBinder> out;
    EXPECT_EQ(android::BAD_TYPE, forged.readNullableStrongBinder(&out));

    // Plain reads cannot see through a binder object.
    src.setDataPosition(0);
    int32_t w = 0;
    EXPECT_EQ(android::PERMISSION_DENIED, src.readInt32(&w));
}

TEST(ParcelData, AppendFromKeepsBindersUsable) {
    sp<IBinder> local = new BBinder();
    Parcel a;
    a.writeInt32(1);
    a.writeStrongBinder(local);
    Parcel b;
    b.writeStrongBinder(sp<IBinder>(new BBinder()));
    ASSERT_EQ(OK, b.appendFrom(&a, 0, a.dataSize()));
    EXPECT_EQ(2u, b.objectsCount());
    b.setDataPosition(28 + 4);
    EXPECT_EQ(local, b.readStrongBinder());
    EXPECT_EQ(android::BAD_VALUE, b.appendFrom(&a, 4, a.dataSize()));
    EXPECT_EQ(android::BAD_VALUE, b.appendFrom(nullptr, 0, 4));
}

TEST(ParcelData, OverwriteInPlaceAndFreeData) {
    Parcel p;
    p.writeInt32(1);
    p.writeInt32(2);
    p.setDataPosition(0);
    p.writeInt32(9);
    EXPECT_EQ(8u, p.dataSize());
    p.setDataPosition(0);
    EXPECT_EQ(9, p.readInt32());
    EXPECT_EQ(2, p.readInt32());
    p.freeData();
    EXPECT_EQ(0u, p.dataSize());
    EXPECT_EQ(0u, p.dataPosition());
    EXPECT_EQ(android::BAD_VALUE, p.setData(nullptr, 4));
}

// Found by the transaction fuzzer: an empty write into a parcel with no storage yet passed a
// null pointer to memset.
TEST(ParcelData, EmptyWriteIntoAnEmptyParcelSucceedsAndAddsNothing) {
    Parcel p;
    const uint8_t byte = 7;
    EXPECT_EQ(OK, p.write(&byte, 0));
    EXPECT_EQ(0u, p.dataSize());
    EXPECT_EQ(OK, p.writeInt32(5));
    EXPECT_EQ(OK, p.write(&byte, 0));
    EXPECT_EQ(4u, p.dataSize());
}

TEST(ParcelStorage, GrowingPastTheInlineRoomKeepsEveryByte) {
    // Small parcels live in the parcel itself; the move to the heap must carry what was written.
    Parcel p;
    std::vector<uint8_t> expected;
    for (uint32_t i = 0; i < 200; ++i) {
        ASSERT_EQ(OK, p.writeInt32(static_cast<int32_t>(i * 0x01010101u)));
        const std::vector<uint8_t> w = words({i * 0x01010101u});
        expected.insert(expected.end(), w.begin(), w.end());
        ASSERT_EQ(expected, bytes(p)) << "after word " << i;
    }
    // Set again from outside, small then large, and emptied.
    p.setData(expected.data(), 8);
    EXPECT_EQ(std::vector<uint8_t>(expected.begin(), expected.begin() + 8), bytes(p));
    p.setData(expected.data(), expected.size());
    EXPECT_EQ(expected, bytes(p));
    p.freeData();
    EXPECT_EQ(0u, p.dataSize());
    EXPECT_EQ(OK, p.writeInt32(7));
    EXPECT_EQ(words({7}), bytes(p));
}
