// The meta stream's record, buffer counts and failure paths, through the configuration, request
// and result hooks.
#include <thread>
#include <vector>

#include "CaptureTestSupport.h"
#include "platform/CameraServiceExtImpl_mtk.h"

namespace {

using android::sp;
using android::String8;
using capturetest::CaptureTest;

class MetaStreamTest : public CaptureTest {
protected:
    // Camera "0" with a preview stream and the meta stream (id 5) configured.
    void configureMetaStream(bool locksFail = false) {
        mMeta = stream(5, 300, 1024, locksFail);
        mStreams.add(0, stream(0, 1920, 1080));
        mStreams.add(5, mMeta);
        ASSERT_EQ(std::vector<int>({0}), configure(mStreams));
        ASSERT_TRUE(mExt->hasMetaRecord(0));
    }

    android::camera3::StreamSet mStreams;
    sp<hostctl::HostOutputStream> mMeta;
};

TEST_F(MetaStreamTest, MetaStreamIsHiddenFromHardwareAndPutBackWithTwentyFourBuffers) {
    configureMetaStream();
    EXPECT_EQ(std::vector<int>({0, 5}), mStreams.getStreamIds());
    EXPECT_EQ(24, mMeta->asHalStream()->max_buffers);
    EXPECT_FALSE(mMeta->isConfiguring());
}

TEST_F(MetaStreamTest, ReturnMetaBufferWithoutRecordIsFalse) {
    EXPECT_FALSE(mExt->returnMetaBuffer(0, 1));
    EXPECT_EQ(android::OK, mExt->flush(String8("0")));
}

TEST_F(MetaStreamTest, ReturnMetaBufferReleasesFromTheFrontByCount) {
    configureMetaStream();
    for (int i = 0; i < 5; ++i) request();
    ASSERT_EQ(5u, listed());
    const buffer_handle_t* third = nullptr;
    {
        android::MetaStreamInfo copy = mExt->metaRecord(0);
        copy.mMetaBufferList.pop_front();
        copy.mMetaBufferList.pop_front();
        third = copy.mMetaBufferList.front().buffer;
    }
    EXPECT_TRUE(mExt->returnMetaBuffer(0, 2));
    EXPECT_EQ(3u, listed());
    EXPECT_EQ(third, mExt->metaRecord(0).mMetaBufferList.front().buffer);

    // More than are listed: stops when the list is empty.
    EXPECT_TRUE(mExt->returnMetaBuffer(0, 10));
    EXPECT_EQ(0u, listed());
    EXPECT_FALSE(mExt->metaRecord(0).mDisabled);
}

TEST_F(MetaStreamTest, ZeroEmptiesWithoutDisablingAndMinusOneDisables) {
    configureMetaStream();
    request();
    request();
    EXPECT_TRUE(mExt->returnMetaBuffer(0, 0));
    EXPECT_EQ(0u, listed());
    request();
    EXPECT_EQ(1u, listed());

    EXPECT_TRUE(mExt->returnMetaBuffer(0, -1));
    EXPECT_TRUE(mExt->metaRecord(0).mDisabled);
    EXPECT_EQ(0u, listed());
    EXPECT_TRUE(mLogs.contains("returnMetaBuffer, mDisabled"));
    request();
    EXPECT_EQ(0u, listed());

    // The end of the next configuration serves again.
    int client = 0;
    mExt->afterEndConfigure(android::CameraMetadata(), &client, capturetest::kProvider,
                            String8("0"));
    request();
    EXPECT_EQ(1u, listed());
}

TEST_F(MetaStreamTest, BuffersThatNeverComeBackOnlyLog) {
    configureMetaStream();
    for (int i = 0; i < 24; ++i) request();
    ASSERT_EQ(24u, listed());
    request();
    EXPECT_EQ(24u, listed());
    EXPECT_TRUE(mLogs.contains("afterSendRequestsBatch, get buf fail!, mMetaBufferList size: 24"));
}

TEST_F(MetaStreamTest, AStreamWithAnotherIdReplacesTheRecord) {
    configureMetaStream();
    request();
    android::camera3::StreamSet next;
    next.add(7, stream(7, 300, 1024));
    configure(next);
    EXPECT_EQ(7, mExt->metaRecord(0).mMetaStream->getId());
    EXPECT_EQ(0u, listed());
    EXPECT_TRUE(mLogs.contains("ignore meta stream(id: 7: add: 1)"));
}

TEST_F(MetaStreamTest, FailedMetaStreamConfigurationIsLoggedAndTheStreamStillReturns) {
    mMeta = stream(5, 300, 1024);
    mMeta->failNextFinishConfiguration(-19);
    mStreams.add(5, mMeta);
    configure(mStreams);
    EXPECT_TRUE(
        mLogs.contains("afterConfigureStreamsLocked: Can't finish configuring meta stream 5: "
                       "No such device (-19)"));
    EXPECT_EQ(std::vector<int>({5}), mStreams.getStreamIds());

    android::camera3::StreamSet again;
    sp<hostctl::HostOutputStream> other = stream(6, 300, 1024);
    other->failNextStartConfiguration();
    again.add(6, other);
    configure(again);
    EXPECT_TRUE(
        mLogs.contains("afterConfigureStreamsLocked: Can't start meta stream configuration"));
}

TEST_F(MetaStreamTest, StampedCopyGoesToTheConsumerAndFailuresReturnAnErrorBuffer) {
    configureMetaStream(/*locksFail=*/true);
    hostctl::HostCaptureOutputStates states("0");
    android::CaptureResult r = result(9);
    mExt->beforeMetadataSendToApp(&r, 9, states.states());
    EXPECT_TRUE(mLogs.contains("beforeMetadataSendToApp: lock meta buf error!"));
    ASSERT_EQ(1u, mMeta->delivered().size());
    EXPECT_TRUE(mMeta->delivered()[0].error);
}

TEST_F(MetaStreamTest, ResultBiggerThanTheMetaBufferIsNotCopied) {
    configureMetaStream();
    hostctl::HostCaptureOutputStates states("0");
    android::CaptureResult r = result(3, 300 * 1024 * 3 / 2);
    mExt->beforeMetadataSendToApp(&r, 3, states.states());
    EXPECT_TRUE(mLogs.contains("beforeMetadataSendToApp: copy meta buf error!"));
    ASSERT_EQ(1u, mMeta->delivered().size());
    EXPECT_TRUE(mMeta->delivered()[0].error);
}

TEST_F(MetaStreamTest, UnknownStampTagIsLoggedAndTheCopyStillGoesOut) {
    hostctl::clearVendorTags();
    configureMetaStream();
    hostctl::HostCaptureOutputStates states("0");
    android::CaptureResult r = result(4, 0);
    mExt->beforeMetadataSendToApp(&r, 4, states.states());
    EXPECT_TRUE(mLogs.contains("beforeMetadataSendToApp: mAPSRsultTag 0"));
    ASSERT_EQ(1u, mMeta->delivered().size());
    EXPECT_TRUE(mMeta->delivered()[0].error);
}

TEST_F(MetaStreamTest, CountdownHoldsTheFirstTwoReadyResults) {
    configureMetaStream();
    int client = 0;
    mExt->afterEndConfigure(android::CameraMetadata(), &client, capturetest::kProvider,
                            String8("0"));
    hostctl::HostCaptureOutputStates states("0");
    std::vector<bool> ready;
    for (uint32_t frame = 0; frame < 4; ++frame) {
        states.addInFlightRequest(frame, android::camera3::InFlightRequest());
        android::CaptureResult r = result(frame);
        ready.push_back(mExt->beforeMetadataSendToApp(&r, frame, states.states()));
    }
    EXPECT_EQ(std::vector<bool>({false, false, true, true}), ready);
    android::camera3::InFlightRequest reprocess;
    reprocess.hasInputBuffer = true;
    states.addInFlightRequest(9, reprocess);
    android::CaptureResult r = result(9);
    EXPECT_FALSE(mExt->beforeMetadataSendToApp(&r, 9, states.states()));
}

// The request thread feeds the list while the result thread drains it: every buffer taken is
// either stamped and delivered or still listed, none is lost or handed out twice.
TEST_F(MetaStreamTest, RequestAndResultThreadsShareTheListSafely) {
    configureMetaStream();
    int client = 0;
    mExt->afterEndConfigure(android::CameraMetadata(), &client, capturetest::kProvider,
                            String8("0"));
    android::setExtLogSwitch(0);
    hostctl::HostCaptureOutputStates states("0");
    constexpr uint32_t kFrames = 300;
    std::thread requests([&] {
        for (uint32_t i = 0; i < kFrames; ++i) request();
    });
    std::thread results([&] {
        for (uint32_t frame = 1; frame <= kFrames; ++frame) {
            android::CaptureResult r = result(frame);
            mExt->beforeMetadataSendToApp(&r, frame, states.states());
        }
    });
    requests.join();
    results.join();
    size_t stamped = 0;
    for (const auto& d : mMeta->delivered()) stamped += d.error ? 0 : 1;
    EXPECT_EQ(mMeta->delivered().size(), stamped);
    EXPECT_EQ(mMeta->getOutstandingBuffersCount(), listed());
}

TEST(MetaBufferQueueTest, KeepsOrderAcrossWrapAndGrowth) {
    android::MetaBufferQueue queue;
    std::vector<buffer_handle_t> handles(40);
    auto entry = [&](size_t i) {
        android::camera3::camera_stream_buffer b{};
        b.buffer = &handles[i];
        return b;
    };
    for (size_t i = 0; i < 20; ++i) queue.push_back(entry(i));
    for (size_t i = 0; i < 15; ++i) queue.pop_front();
    for (size_t i = 20; i < 40; ++i) queue.push_back(entry(i));
    ASSERT_EQ(25u, queue.size());
    for (size_t i = 15; i < 40; ++i) {
        ASSERT_EQ(&handles[i], queue.front().buffer);
        queue.pop_front();
    }
    EXPECT_TRUE(queue.empty());
    queue.pop_front();  // on an empty queue: nothing happens
    EXPECT_TRUE(queue.empty());
}

TEST_F(MetaStreamTest, OutputFormatsAcceptedPerFamily) {
    sp<android::CameraServiceExtImpl_mtk> mtk = new android::CameraServiceExtImpl_mtk();
    auto formatStream = [](int format) {
        return sp<android::camera3::Camera3OutputStreamInterface>(
            new hostctl::HostOutputStream(1, 640, 480, format));
    };
    EXPECT_TRUE(mExt->isValidOutputStream(formatStream(34)));
    EXPECT_TRUE(mExt->isValidOutputStream(formatStream(0x7FA30C06)));
    EXPECT_FALSE(mExt->isValidOutputStream(formatStream(0x32315659)));
    EXPECT_FALSE(mExt->isValidOutputStream(nullptr));
    EXPECT_TRUE(mtk->isValidOutputStream(formatStream(34)));
    EXPECT_TRUE(mtk->isValidOutputStream(formatStream(0x32315659)));
    EXPECT_FALSE(mtk->isValidOutputStream(formatStream(0x7FA30C06)));
}

}  // namespace
