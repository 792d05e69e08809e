// Where a failed read leaves the parcel, as Android 13's libbinder leaves it: callers that read
// on after a malformed string or a refused read see the same items as on a phone.
#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <cstring>
#include <vector>

namespace {

using android::Parcel;
using android::sp;
using android::String16;

void setWords(Parcel* p, const std::vector<uint32_t>& words) {
    p->setData(reinterpret_cast<const uint8_t*>(words.data()), words.size() * sizeof(uint32_t));
    p->setDataPosition(0);
}

TEST(ParcelPosition, StringWithoutTerminatorIsSkippedWhole) {
    // Length 1, units 'A' 'A' where the terminator belongs, then 7.
    Parcel p;
    setWords(&p, {1, 0x00410041, 7});
    String16 s;
    EXPECT_EQ(android::UNEXPECTED_NULL, p.readString16(&s));
    EXPECT_EQ(8u, p.dataPosition());
    EXPECT_EQ(7, p.readInt32());
}

TEST(ParcelPosition, StringLongerThanTheDataLeavesOnlyItsLengthRead) {
    Parcel p;
    setWords(&p, {10, 0x00000041});
    size_t len = 99;
    EXPECT_EQ(nullptr, p.readString16Inplace(&len));
    EXPECT_EQ(0u, len);
    EXPECT_EQ(4u, p.dataPosition());
    EXPECT_EQ(0x41, p.readInt32());
}

TEST(ParcelPosition, NegativeLengthOtherThanNullLeavesItsLengthRead) {
    Parcel p;
    setWords(&p, {0xfffffff0, 5});
    EXPECT_EQ(String16(), p.readString16());
    EXPECT_EQ(4u, p.dataPosition());
    EXPECT_EQ(5, p.readInt32());
}

TEST(ParcelPosition, MalformedString8IsSkippedWhole) {
    Parcel p;
    setWords(&p, {3, 0x41414141, 9});
    android::String8 s;
    EXPECT_EQ(android::UNEXPECTED_NULL, p.readString8(&s));
    EXPECT_EQ(8u, p.dataPosition());
    EXPECT_EQ(9, p.readInt32());
}

TEST(ParcelPosition, RefusedReadOverABinderStillMovesPastIt) {
    Parcel p;
    p.writeStrongBinder(sp<android::IBinder>(new android::BBinder()));
    p.writeInt32(11);
    p.setDataPosition(0);
    int32_t value = 0;
    EXPECT_EQ(android::PERMISSION_DENIED, p.readInt32(&value));
    EXPECT_EQ(4u, p.dataPosition());

    // An in-place read over the object is refused and moves too.
    p.setDataPosition(0);
    EXPECT_EQ(nullptr, p.readInplace(8));
    EXPECT_EQ(8u, p.dataPosition());
}

TEST(ParcelPosition, StringReadOverABinderMovesPastWhatItCovered) {
    Parcel p;
    p.writeInt32(2);  // a length whose units would be the object's bytes
    p.writeStrongBinder(sp<android::IBinder>(new android::BBinder()));
    p.setDataPosition(0);
    size_t len = 0;
    EXPECT_EQ(nullptr, p.readString16Inplace(&len));
    EXPECT_EQ(12u, p.dataPosition());  // the length and three units, padded to 8
}

}  // namespace
