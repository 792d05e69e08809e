// StreamSet: the server's id-to-stream table the meta stream logic edits during configuration.
#include <device3/Camera3OutputStreamInterface.h>
#include <gtest/gtest.h>

#include <thread>

#include "hostctl/HostOutputStream.h"

namespace {

using android::sp;
using android::camera3::Camera3OutputStreamInterface;
using android::camera3::StreamSet;
using hostctl::HostOutputStream;

sp<Camera3OutputStreamInterface> stream(int id) {
    return new HostOutputStream(id, 640, 480, HAL_PIXEL_FORMAT_YCBCR_420_888);
}

// add() answers the position in id order, not OK; an existing id has its stream replaced.
TEST(StreamSet, AddKeepsIdOrderReplacesAndRefusesNull) {
    StreamSet set;
    EXPECT_EQ(0, set.add(5, stream(5)));
    EXPECT_EQ(0, set.add(1, stream(1)));  // goes before 5
    EXPECT_EQ(1, set.add(3, stream(3)));
    sp<Camera3OutputStreamInterface> replacement = stream(1);
    EXPECT_EQ(0, set.add(1, replacement));
    EXPECT_EQ(android::BAD_VALUE, set.add(2, nullptr));
    EXPECT_EQ((std::vector<int>{1, 3, 5}), set.getStreamIds());
    EXPECT_EQ(replacement, set.get(1));
}

TEST(StreamSet, RemoveReportsThePositionOrNotFound) {
    StreamSet set;
    set.add(1, stream(1));
    set.add(7, stream(7));
    EXPECT_EQ(1, set.remove(7));
    EXPECT_EQ(android::NAME_NOT_FOUND, set.remove(7));
    EXPECT_EQ((std::vector<int>{1}), set.getStreamIds());
}

TEST(StreamSet, AbsentIdAndOutOfRangeIndexGiveNull) {
    StreamSet set;
    set.add(4, stream(4));
    EXPECT_EQ(nullptr, set.get(3));
    EXPECT_NE(nullptr, set[0]);
    EXPECT_EQ(nullptr, set[1]);
}

TEST(StreamSet, CopyIsIndependentOfTheOriginal) {
    StreamSet set;
    set.add(1, stream(1));
    set.add(2, stream(2));
    StreamSet copy(set);
    set.remove(1);
    set.clear();
    EXPECT_EQ(0u, set.size());
    EXPECT_EQ((std::vector<int>{1, 2}), copy.getStreamIds());
    EXPECT_EQ(2, copy.get(2)->getId());
}

// The configuration thread edits the set while the result thread reads it.
TEST(StreamSet, ConcurrentEditsAndReadsStayConsistent) {
    StreamSet set;
    std::thread writer([&set] {
        for (int i = 0; i < 500; i++) {
            set.add(i % 8, stream(i % 8));
            set.remove((i + 3) % 8);
        }
    });
    for (int i = 0; i < 500; i++) {
        for (int id : set.getStreamIds()) {
            sp<Camera3OutputStreamInterface> s = set.get(id);
            if (s != nullptr) {
                EXPECT_EQ(id, s->getId());
            }
        }
        StreamSet snapshot(set);
        EXPECT_LE(snapshot.size(), 8u);
    }
    writer.join();
}

}  // namespace
