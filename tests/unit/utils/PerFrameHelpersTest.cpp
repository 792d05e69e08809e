// The small helpers the per-frame hooks use in place of general library calls must answer
// exactly as those calls do: the meta-buffer stamp as snprintf writes it, and key look-ups as
// KeyedVector::indexOfKey finds them.
#include <gtest/gtest.h>
#include <stdio.h>
#include <utils/KeyedVector.h>

#include <string>
#include <vector>

#include "utils/FrameStamp.h"
#include "utils/KeyedLookup.h"

namespace {

TEST(FrameStamp, WritesWhatSnprintfWritesForEverySizeAndFrame) {
    const uint32_t frames[] = {0, 7, 10, 1234, 99999, 4294967295u};
    for (uint32_t frame : frames) {
        for (size_t size = 0; size <= 32; ++size) {
            // Both fill a guarded buffer: nothing may be written beyond `size` bytes.
            std::vector<uint8_t> expected(40, 0xA5);
            std::vector<uint8_t> actual(40, 0xA5);
            snprintf(reinterpret_cast<char*>(expected.data()), size, "[frameId;INT;%u;]", frame);
            android::vantu::writeFrameStamp(actual.data(), size, frame);
            EXPECT_EQ(expected, actual) << "frame " << frame << ", size " << size;
        }
    }
    android::vantu::writeFrameStamp(nullptr, 8, 1);  // no buffer: nothing to do, no crash
}

TEST(KeyedLookup, FindsWhatIndexOfKeyFinds) {
    android::KeyedVector<uint32_t, std::string> map;
    for (uint32_t key : {40u, 2u, 4294967295u, 0u, 17u, 18u, 1000u}) {
        map.add(key, std::to_string(key));
    }
    for (uint32_t key :
         {0u, 1u, 2u, 3u, 17u, 18u, 19u, 40u, 999u, 1000u, 4294967294u, 4294967295u}) {
        EXPECT_EQ(map.indexOfKey(key), android::vantu::indexOfKey(map, key)) << key;
    }
    const android::KeyedVector<int, int> empty;
    EXPECT_EQ(android::NAME_NOT_FOUND, android::vantu::indexOfKey(empty, 0));
}

}  // namespace
