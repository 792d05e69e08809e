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

// A malformed string is skipped whole when its length fits the data, and otherwise only its
// length is read; either way the next item reads as on a phone.
TEST(ParcelPosition, MalformedStringsLeaveTheNextItemWhereLibbinderDoes) {
    struct {
        const char* what;
        std::vector<uint32_t> words;
        bool string8;
        size_t position;  // after the failed read
        int32_t next;
    } cases[] = {
        {"String16 with 'A' where the terminator belongs", {1, 0x00410041, 7}, false, 8, 7},
        {"String16 longer than the data", {10, 0x00000041}, false, 4, 0x41},
        {"String16 of a negative length other than null", {0xfffffff0, 5}, false, 4, 5},
        {"String8 without its terminator", {3, 0x41414141, 9}, true, 8, 9},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Parcel p;
        setWords(&p, c.words);
        if (c.string8) {
            android::String8 s;
            EXPECT_EQ(android::UNEXPECTED_NULL, p.readString8(&s));
        } else {
            size_t len = 99;
            EXPECT_EQ(nullptr, p.readString16Inplace(&len));
            EXPECT_EQ(0u, len);
        }
        EXPECT_EQ(c.position, p.dataPosition());
        EXPECT_EQ(c.next, p.readInt32());
    }
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
