// Capture result types, the in-flight request record and the capture output states holder.
#include <binder/Parcel.h>
#include <camera/CaptureResult.h>
#include <device3/InFlightRequest.h>
#include <gtest/gtest.h>
#include <system/camera_metadata.h>

#include "hostctl/HostCaptureOutputStates.h"
#include "hostctl/HostOutputStream.h"

namespace {

using android::CaptureResult;
using android::CaptureResultExtras;
using android::Parcel;
using android::PhysicalCaptureResultInfo;
using android::String16;
using android::camera3::InFlightRequest;

android::CameraMetadata timestamped(int64_t timestamp) {
    android::CameraMetadata metadata;
    metadata.update(ANDROID_SENSOR_TIMESTAMP, &timestamp, 1);
    return metadata;
}

TEST(CaptureResultExtras, ValidOnlyOnceItNamesARequest) {
    CaptureResultExtras extras;
    EXPECT_FALSE(extras.isValid());
    extras.requestId = 0;
    EXPECT_TRUE(extras.isValid());
}

TEST(CaptureResultExtras, ParcelRoundTripKeepsEveryField) {
    CaptureResultExtras extras(7, 1, 2, 3, 1234567890123LL, 2, 5, String16("3"), 10, 11, 12);
    Parcel parcel;
    ASSERT_EQ(android::OK, extras.writeToParcel(&parcel));
    parcel.setDataPosition(0);
    CaptureResultExtras read;
    ASSERT_EQ(android::OK, read.readFromParcel(&parcel));
    EXPECT_EQ(7, read.requestId);
    EXPECT_EQ(3, read.precaptureTriggerId);
    EXPECT_EQ(1234567890123LL, read.frameNumber);
    EXPECT_EQ(5, read.errorStreamId);
    EXPECT_EQ(String16("3"), read.errorPhysicalCameraId);
    EXPECT_EQ(12, read.lastCompletedZslFrameNumber);
}

TEST(CaptureResultExtras, TruncatedOrNullParcelFailsCleanly) {
    CaptureResultExtras extras;
    Parcel full;
    ASSERT_EQ(android::OK, extras.writeToParcel(&full));
    Parcel truncated;
    truncated.setData(full.data(), full.dataSize() - 4);
    truncated.setDataPosition(0);
    CaptureResultExtras read;
    EXPECT_NE(android::OK, read.readFromParcel(&truncated));
    EXPECT_EQ(android::BAD_VALUE, read.readFromParcel(nullptr));
    EXPECT_EQ(android::BAD_VALUE, extras.writeToParcel(nullptr));
}

TEST(CaptureResult, ParcelRoundTripKeepsMetadataAndPhysicalCameras) {
    CaptureResult result;
    result.mMetadata = timestamped(42);
    result.mPhysicalMetadatas.emplace_back(String16("2"), timestamped(43));
    result.mResultExtras.frameNumber = 9;
    Parcel parcel;
    ASSERT_EQ(android::OK, result.writeToParcel(&parcel));
    parcel.setDataPosition(0);

    CaptureResult read;
    ASSERT_EQ(android::OK, read.readFromParcel(&parcel));
    EXPECT_EQ(42, read.mMetadata.find(ANDROID_SENSOR_TIMESTAMP).data.i64[0]);
    ASSERT_EQ(1u, read.mPhysicalMetadatas.size());
    EXPECT_EQ(String16("2"), read.mPhysicalMetadatas[0].mPhysicalCameraId);
    EXPECT_EQ(
        43,
        read.mPhysicalMetadatas[0].mPhysicalCameraMetadata.find(ANDROID_SENSOR_TIMESTAMP).data.i64[0]);
    EXPECT_EQ(9, read.mResultExtras.frameNumber);
}

TEST(CaptureResult, NegativePhysicalCameraCountIsRejected) {
    Parcel parcel;
    ASSERT_EQ(android::OK, android::CameraMetadata().writeToParcel(&parcel));
    parcel.writeInt32(-1);
    parcel.setDataPosition(0);
    CaptureResult read;
    EXPECT_EQ(android::BAD_VALUE, read.readFromParcel(&parcel));
}

TEST(CaptureResult, CopyAndMoveKeepTheContents) {
    CaptureResult result;
    result.mMetadata = timestamped(5);
    result.mResultExtras.requestId = 3;
    CaptureResult copy(result);
    CaptureResult moved(std::move(result));
    EXPECT_EQ(5, copy.mMetadata.find(ANDROID_SENSOR_TIMESTAMP).data.i64[0]);
    EXPECT_EQ(5, moved.mMetadata.find(ANDROID_SENSOR_TIMESTAMP).data.i64[0]);
    EXPECT_EQ(3, moved.mResultExtras.requestId);
}

TEST(InFlightRequest, RequestConstructorKeepsItsArguments) {
    CaptureResultExtras extras;
    extras.requestId = 2;
    InFlightRequest request(3, extras, /*hasInput=*/true, /*hasAppCallback=*/false, 1000, 2000,
                            {{android::String8("4")}}, /*isStillCapture=*/true,
                            /*isZslCapture=*/false, /*rotateAndCropAuto=*/true, {"0"}, 77);
    EXPECT_EQ(3, request.numBuffersLeft);
    EXPECT_EQ(2, request.resultExtras.requestId);
    EXPECT_TRUE(request.hasInputBuffer);
    EXPECT_FALSE(request.hasCallback);
    EXPECT_EQ(1000, request.minExpectedDuration);
    EXPECT_EQ(2000, request.maxExpectedDuration);
    EXPECT_EQ(1u, request.physicalCameraIds.size());
    EXPECT_TRUE(request.stillCapture);
    EXPECT_FALSE(request.zslCapture);
    EXPECT_TRUE(request.rotateAndCropAuto);
    EXPECT_EQ(1u, request.cameraIdsWithZoom.count("0"));
    EXPECT_EQ(77, request.requestTimeNs);
}

// The states the library is handed must see the holder's storage, not copies of it.
TEST(HostCaptureOutputStates, StatesReferToTheHoldersStorage) {
    hostctl::HostCaptureOutputStates holder("0");
    android::camera3::CaptureOutputStates& states = holder.states();
    EXPECT_EQ(android::String8("0"), states.cameraId);

    holder.addInFlightRequest(12, InFlightRequest());
    ASSERT_GE(states.inflightMap.indexOfKey(12), 0);
    EXPECT_EQ(1u, holder.inFlightCount());
    EXPECT_TRUE(holder.removeInFlightRequest(12));
    EXPECT_FALSE(holder.removeInFlightRequest(12));

    states.outputStreams.add(1, new hostctl::HostOutputStream(1, 8, 8, HAL_PIXEL_FORMAT_BLOB));
    EXPECT_EQ(1u, holder.outputStreams.size());
    EXPECT_EQ(1u, holder.bufferRecords.getAllStreams().size());

    states.lastCompletedRegularFrameNumber = 11;
    EXPECT_EQ(11, holder.lastCompletedRegularFrameNumber);
    EXPECT_EQ(nullptr, states.inputStream);
}

TEST(HostCaptureOutputStates, RecordsWhatTheResultPathReports) {
    hostctl::HostCaptureOutputStates holder("1");
    android::camera3::CaptureOutputStates& states = holder.states();
    CaptureResultExtras extras;
    extras.frameNumber = 5;
    states.listener->notifyShutter(extras, 100);
    states.listener->notifyError(4, extras);
    states.setErrIntf.setErrorState("HAL returned %d for frame %d", -19, 5);
    states.inflightIntf.onInflightEntryRemovedLocked(33000000);
    EXPECT_EQ((std::vector<std::string>{"notifyShutter(5, 100)", "notifyError(4)"}),
              holder.listener->events());
    EXPECT_EQ((std::vector<std::string>{"HAL returned -19 for frame 5"}), holder.errors.messages());
    EXPECT_EQ((std::vector<nsecs_t>{33000000}), holder.inflightAccounting.removedDurations());
}

TEST(HostCaptureOutputStates, BufferRecordsPopWhatWasPushedOnce) {
    hostctl::HostCaptureOutputStates holder("0");
    auto& records = holder.states().bufferRecordsIntf;
    buffer_handle_t handle = nullptr;
    ASSERT_EQ(android::OK, records.pushInflightBufferLocked(3, 1, &handle));
    EXPECT_EQ(android::BAD_VALUE, records.pushInflightBufferLocked(3, 1, &handle));
    buffer_handle_t* popped = nullptr;
    EXPECT_EQ(android::OK, records.popInflightBuffer(3, 1, &popped));
    EXPECT_EQ(&handle, popped);
    EXPECT_EQ(android::NAME_NOT_FOUND, records.popInflightBuffer(3, 1, &popped));
}

}  // namespace
