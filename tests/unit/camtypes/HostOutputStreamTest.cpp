// The host output stream: the server's configuration states and its buffer queue, as the meta
// stream uses them (configure, dequeue with a time-out, give back).
#include <camera/CameraMetadata.h>
#include <gtest/gtest.h>

#include <thread>

#include "hostctl/HostEnv.h"
#include "hostctl/HostOutputStream.h"
#include "support/TestSupport.h"
#include "utils/Env.h"

namespace {

using android::sp;
using android::camera3::camera_stream;
using android::camera3::camera_stream_buffer;
using hostctl::HostOutputStream;

constexpr int kMetaFormat = HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED;

sp<HostOutputStream> configured(uint32_t maxBuffers) {
    sp<HostOutputStream> s = new HostOutputStream(3, 300, 1024, kMetaFormat);
    camera_stream* hal = s->startConfiguration();
    hal->max_buffers = maxBuffers;
    EXPECT_EQ(android::OK, s->finishConfiguration());
    return s;
}

TEST(HostOutputStreamConfiguration, HandsOutItsOwnHalStream) {
    sp<HostOutputStream> s = new HostOutputStream(3, 300, 1024, kMetaFormat);
    EXPECT_EQ(android::INVALID_OPERATION, s->finishConfiguration());  // not started
    EXPECT_FALSE(s->isConfiguring());
    camera_stream* hal = s->asHalStream();
    ASSERT_NE(nullptr, hal);
    EXPECT_EQ(300u, hal->width);
    EXPECT_EQ(1024u, hal->height);
    EXPECT_EQ(kMetaFormat, hal->format);
    EXPECT_EQ(hal, s->startConfiguration());
    EXPECT_TRUE(s->isConfiguring());
}

TEST(HostOutputStreamConfiguration, FinishAllocatesMaxBuffersOfTheHalSide) {
    sp<HostOutputStream> s = configured(24);
    EXPECT_FALSE(s->isConfiguring());
    EXPECT_EQ(24u, s->bufferCount());
    EXPECT_EQ(24, s->getMaxHalBuffers());
}

TEST(HostOutputStreamConfiguration, ReconfigurationWaitsForTheBuffersAndKeepsThemIfUnchanged) {
    sp<HostOutputStream> s = configured(2);
    camera_stream_buffer buffer{};
    ASSERT_EQ(android::OK, s->getBuffer(&buffer, 0));
    const buffer_handle_t* handle = buffer.buffer;
    EXPECT_EQ(nullptr, s->startConfiguration()) << "refused while a buffer is out";
    ASSERT_EQ(android::OK, s->returnBuffer(buffer, 10, 10));

    ASSERT_NE(nullptr, s->startConfiguration());
    bool reconfigured = true;
    EXPECT_EQ(android::OK, s->finishConfiguration(&reconfigured));
    EXPECT_FALSE(reconfigured);
    EXPECT_GE(s->bufferIndex(handle), 0);
}

TEST(HostOutputStreamConfiguration, FailedFinishLeavesTheStreamInError) {
    sp<HostOutputStream> s = new HostOutputStream(3, 300, 1024, kMetaFormat);
    s->failNextFinishConfiguration(android::NO_INIT);
    ASSERT_NE(nullptr, s->startConfiguration());
    EXPECT_EQ(android::NO_INIT, s->finishConfiguration());
    EXPECT_EQ(nullptr, s->startConfiguration());
    camera_stream_buffer buffer{};
    EXPECT_EQ(android::INVALID_OPERATION, s->getBuffer(&buffer, 0));
}

TEST(HostOutputStreamConfiguration, FailedStartReturnsNull) {
    sp<HostOutputStream> s = new HostOutputStream(3, 300, 1024, kMetaFormat);
    s->failNextStartConfiguration();
    EXPECT_EQ(nullptr, s->startConfiguration());
    EXPECT_NE(nullptr, s->startConfiguration());
}

TEST(HostOutputStreamConfiguration, OversizedStreamFailsWithNoMemory) {
    sp<HostOutputStream> s = new HostOutputStream(3, 65535, 65535, HAL_PIXEL_FORMAT_RGBA_8888);
    ASSERT_NE(nullptr, s->startConfiguration());
    EXPECT_EQ(android::NO_MEMORY, s->finishConfiguration());
}

TEST(HostOutputStreamBuffers, GetBufferBeforeConfigurationIsRefused) {
    sp<HostOutputStream> s = new HostOutputStream(3, 300, 1024, kMetaFormat);
    camera_stream_buffer buffer{};
    EXPECT_EQ(android::INVALID_OPERATION, s->getBuffer(&buffer, 0));
    EXPECT_EQ(android::BAD_VALUE, configured(1)->getBuffer(nullptr, 0));
}

TEST(HostOutputStreamBuffers, GetBufferFillsTheStreamBuffer) {
    sp<HostOutputStream> s = configured(2);
    camera_stream_buffer buffer{};
    ASSERT_EQ(android::OK, s->getBuffer(&buffer, 1000));
    EXPECT_EQ(s->asHalStream(), buffer.stream);
    EXPECT_EQ(0, s->bufferIndex(buffer.buffer));
    // A fresh buffer is zeroed memory of the stream's size; an index past the last reads empty.
    EXPECT_EQ(std::vector<uint8_t>(300u * 1024u * 3 / 2, 0), s->bufferContents(0));
    EXPECT_TRUE(s->bufferContents(2).empty());
    EXPECT_EQ(android::camera3::CAMERA_BUFFER_STATUS_OK, buffer.status);
    EXPECT_EQ(-1, buffer.acquire_fence);
    EXPECT_EQ(1u, s->getOutstandingBuffersCount());
}

// With every buffer out the server waits at least a second, whatever the caller asked for.
TEST(HostOutputStreamBuffers, ExhaustedQueueTimesOutAfterTheServersMinimumWait) {
    testsupport::VirtualTime time;
    sp<HostOutputStream> s = configured(1);
    camera_stream_buffer first{};
    ASSERT_EQ(android::OK, s->getBuffer(&first, 1000));
    auto* env = android::vantu::Env::Default();
    const nsecs_t start = env->monotonicNs();
    camera_stream_buffer second{};
    EXPECT_EQ(android::TIMED_OUT, s->getBuffer(&second, 1000));
    EXPECT_GE(env->monotonicNs() - start, HostOutputStream::kMinWaitForBuffer);
}

TEST(HostOutputStreamBuffers, BufferReturnedDuringAVirtualWaitEndsIt) {
    testsupport::VirtualTime time;
    sp<HostOutputStream> s = configured(1);
    camera_stream_buffer first{};
    ASSERT_EQ(android::OK, s->getBuffer(&first, 0));
    bool returned = false;
    hostctl::setScheduler([&](nsecs_t) {
        if (returned) return false;
        returned = true;
        EXPECT_EQ(android::OK, s->returnBuffer(first, 100, 100));
        return true;
    });
    camera_stream_buffer second{};
    EXPECT_EQ(android::OK, s->getBuffer(&second, 0));
    EXPECT_EQ(first.buffer, second.buffer);
}

TEST(HostOutputStreamBuffers, BufferReturnedByAnotherThreadEndsARealWait) {
    sp<HostOutputStream> s = configured(1);
    camera_stream_buffer first{};
    ASSERT_EQ(android::OK, s->getBuffer(&first, 0));
    std::thread resultThread([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(android::OK, s->returnBuffer(first, 100, 100));
    });
    camera_stream_buffer second{};
    EXPECT_EQ(android::OK, s->getBuffer(&second, 0));
    resultThread.join();
}

TEST(HostOutputStreamBuffers, ReturnedBuffersComeBackOldestFirst) {
    sp<HostOutputStream> s = configured(3);
    camera_stream_buffer a{}, b{}, c{};
    ASSERT_EQ(android::OK, s->getBuffer(&a, 0));
    ASSERT_EQ(android::OK, s->getBuffer(&b, 0));
    ASSERT_EQ(android::OK, s->returnBuffer(b, 10, 10));
    ASSERT_EQ(android::OK, s->returnBuffer(a, 20, 20));
    ASSERT_EQ(android::OK, s->getBuffer(&c, 0));  // the never-used third buffer
    camera_stream_buffer d{};
    ASSERT_EQ(android::OK, s->getBuffer(&d, 0));
    EXPECT_EQ(b.buffer, d.buffer);
}

TEST(HostOutputStreamBuffers, UnknownOrTwiceReturnedBufferIsRefused) {
    sp<HostOutputStream> s = configured(2);
    camera_stream_buffer buffer{};
    ASSERT_EQ(android::OK, s->getBuffer(&buffer, 0));
    ASSERT_EQ(android::OK, s->returnBuffer(buffer, 10, 10));
    EXPECT_EQ(android::BAD_VALUE, s->returnBuffer(buffer, 20, 20));
    camera_stream_buffer stranger{};
    EXPECT_EQ(android::BAD_VALUE, s->returnBuffer(stranger, 30, 30));
}

TEST(HostOutputStreamBuffers, NonIncreasingTimestampIsDeliveredAsAnError) {
    sp<HostOutputStream> s = configured(2);
    camera_stream_buffer a{}, b{};
    ASSERT_EQ(android::OK, s->getBuffer(&a, 0));
    ASSERT_EQ(android::OK, s->getBuffer(&b, 0));
    ASSERT_EQ(android::OK, s->returnBuffer(a, 50, 50, true, {}, 7));
    ASSERT_EQ(android::OK, s->returnBuffer(b, 50, 50, true, {}, 8));
    std::vector<HostOutputStream::Delivered> delivered = s->delivered();
    ASSERT_EQ(2u, delivered.size());
    EXPECT_FALSE(delivered[0].error);
    EXPECT_EQ(7u, delivered[0].frameNumber);
    EXPECT_TRUE(delivered[1].error);
}

TEST(HostOutputStreamBuffers, DisconnectIsRefusedWhileBuffersAreOut) {
    sp<HostOutputStream> s = configured(1);
    camera_stream_buffer buffer{};
    ASSERT_EQ(android::OK, s->getBuffer(&buffer, 0));
    EXPECT_EQ(android::INVALID_OPERATION, s->disconnect());
    ASSERT_EQ(android::OK, s->returnBuffer(buffer, 10, 10));
    EXPECT_EQ(android::OK, s->disconnect());
    EXPECT_EQ(0u, s->bufferCount());
    EXPECT_EQ(android::INVALID_OPERATION, s->getBuffer(&buffer, 0));
}

TEST(HostOutputStreamBuffers, RecordsTheLibrarysCallsWithTheirOutcome) {
    sp<HostOutputStream> s = new HostOutputStream(3, 300, 1024, kMetaFormat);
    camera_stream_buffer buffer{};
    s->getBuffer(&buffer, 0);
    s->startConfiguration();
    s->finishConfiguration();
    s->getBuffer(&buffer, 0);
    s->returnBuffer(buffer, 5, 5, true, {}, 12);
    EXPECT_EQ((std::vector<std::string>{"getBuffer -> -38", "startConfiguration",
                                        "finishConfiguration -> 0", "getBuffer -> 0",
                                        "returnBuffer(frame 12) -> 0"}),
              s->calls());
}

// The records keep the newest calls and deliveries, oldest first, once they wrap around, and the
// delivery count goes on counting (the simulator finds a step's deliveries by it).
TEST(HostOutputStreamBuffers, RecordsKeepTheNewestInOrder) {
    sp<HostOutputStream> s = configured(1);
    s->clearCalls();
    const uint64_t frames = HostOutputStream::kMaxRecords + 5;
    for (uint64_t frame = 1; frame <= frames; ++frame) {
        camera_stream_buffer buffer{};
        ASSERT_EQ(android::OK, s->getBuffer(&buffer, 0));
        ASSERT_EQ(android::OK, s->returnBuffer(buffer, frame, frame, true, {}, frame));
    }
    const std::vector<HostOutputStream::Delivered> delivered = s->delivered();
    ASSERT_EQ(HostOutputStream::kMaxRecords, delivered.size());
    EXPECT_EQ(6u, delivered.front().frameNumber);
    EXPECT_EQ(frames, delivered.back().frameNumber);
    EXPECT_EQ(frames, s->deliveredTotal());
    const std::vector<std::string> calls = s->calls();
    ASSERT_EQ(HostOutputStream::kMaxRecords, calls.size());
    EXPECT_EQ("getBuffer -> 0", calls.front());
    EXPECT_EQ("returnBuffer(frame " + std::to_string(frames) + ") -> 0", calls.back());
    EXPECT_EQ("returnBuffer(frame " + std::to_string(frames - 1) + ") -> 0",
              calls[calls.size() - 3]);
}

TEST(HostOutputStreamConfiguration, CancelReturnsToTheStateBeforeStart) {
    sp<HostOutputStream> s = configured(2);
    camera_stream* hal = s->startConfiguration();
    hal->max_buffers = 9;
    EXPECT_EQ(android::OK, s->cancelConfiguration());
    EXPECT_FALSE(s->isConfiguring());
    EXPECT_EQ(2, s->getMaxHalBuffers());
    EXPECT_EQ(android::INVALID_OPERATION, s->cancelConfiguration());
    camera_stream_buffer buffer{};
    EXPECT_EQ(android::OK, s->getBuffer(&buffer, 0));
}

TEST(HostOutputStreamBuffers, GetBuffersTakesAllOrNone) {
    sp<HostOutputStream> s = configured(2);
    camera_stream_buffer a{}, b{}, c{};
    std::vector<android::camera3::Camera3StreamInterface::OutstandingBuffer> two{{&a, {}}, {&b, {}}};
    ASSERT_EQ(android::OK, s->getBuffers(&two, 0));
    EXPECT_NE(a.buffer, b.buffer);
    std::vector<android::camera3::Camera3StreamInterface::OutstandingBuffer> three{
        {&a, {}}, {&b, {}}, {&c, {}}};
    EXPECT_EQ(android::INVALID_OPERATION, s->getBuffers(&three, 0));
    EXPECT_EQ(2u, s->getOutstandingBuffersCount());
}

class RecordingBufferListener : public android::camera3::Camera3StreamBufferListener {
public:
    void onBufferAcquired(const BufferInfo&) override { events.push_back("acquired"); }
    void onBufferReleased(const BufferInfo& info) override {
        events.push_back("released " + std::to_string(info.mFrameNumber) +
                         (info.mError ? " error" : ""));
    }
    void onBufferRequestForFrameNumber(uint64_t frameNumber, int streamId,
                                       const android::CameraMetadata&) override {
        events.push_back("request " + std::to_string(frameNumber) + " on " +
                         std::to_string(streamId));
    }
    std::vector<std::string> events;
};

TEST(HostOutputStreamBuffers, ListenersAndStatusTrackerFollowTheBuffers) {
    sp<HostOutputStream> s = configured(2);
    sp<RecordingBufferListener> listener = new RecordingBufferListener();
    sp<android::camera3::StatusTracker> tracker = new android::camera3::StatusTracker();
    s->addBufferListener(listener);
    s->setStatusTracker(tracker);
    EXPECT_TRUE(tracker->isIdle());

    camera_stream_buffer buffer{};
    ASSERT_EQ(android::OK, s->getBuffer(&buffer, 0));
    EXPECT_FALSE(tracker->isIdle());
    buffer.status = android::camera3::CAMERA_BUFFER_STATUS_ERROR;
    ASSERT_EQ(android::OK, s->returnBuffer(buffer, 10, 10, true, {}, 4));
    EXPECT_TRUE(tracker->isIdle());
    s->fireBufferRequestForFrameNumber(5, android::CameraMetadata());

    s->removeBufferListener(listener);
    ASSERT_EQ(android::OK, s->getBuffer(&buffer, 0));
    EXPECT_EQ((std::vector<std::string>{"acquired", "released 4 error", "request 5 on 3"}),
              listener->events);
}

}  // namespace
