/*
 * Host stand-in of the camera server's in-flight request record (Android 13): what the device
 * keeps about a request between its submission and its last result, keyed by frame number; and
 * the HAL-shaped configuration, request, result and notification structs of the same header.
 */
#ifndef ANDROID_SERVERS_CAMERA3_INFLIGHT_REQUEST_H
#define ANDROID_SERVERS_CAMERA3_INFLIGHT_REQUEST_H

#include <camera/CameraMetadata.h>
#include <camera/CaptureResult.h>
#include <stdint.h>
#include <system/camera_metadata.h>
#include <utils/Errors.h>
#include <utils/KeyedVector.h>
#include <utils/String8.h>
#include <utils/Timers.h>
#include <utils/Vector.h>

#include <set>
#include <string>
#include <vector>

#include "common/CameraDeviceBase.h"
#include "device3/Camera3StreamInterface.h"

namespace android {

namespace camera3 {

typedef enum camera_msg_type {
    CAMERA_MSG_ERROR = 1,
    CAMERA_MSG_SHUTTER = 2,
    CAMERA_NUM_MESSAGES,
} camera_msg_type_t;

typedef struct camera_stream_configuration {
    uint32_t num_streams;
    camera_stream_t** streams;
    uint32_t operation_mode;
    bool input_is_multi_resolution;
} camera_stream_configuration_t;

typedef struct camera_capture_request {
    uint32_t frame_number;
    const camera_metadata_t* settings;
    camera_stream_buffer_t* input_buffer;
    uint32_t num_output_buffers;
    const camera_stream_buffer_t* output_buffers;
    uint32_t num_physcam_settings;
    const char** physcam_id;
    const camera_metadata_t** physcam_settings;
    int32_t input_width;
    int32_t input_height;
} camera_capture_request_t;

typedef struct camera_capture_result {
    uint32_t frame_number;
    const camera_metadata_t* result;
    uint32_t num_output_buffers;
    const camera_stream_buffer_t* output_buffers;
    const camera_stream_buffer_t* input_buffer;
    uint32_t partial_result;
    uint32_t num_physcam_metadata;
    const char** physcam_ids;
    const camera_metadata_t** physcam_metadata;
} camera_capture_result_t;

typedef struct camera_shutter_msg {
    uint32_t frame_number;
    uint64_t timestamp;
    uint64_t readout_timestamp;
} camera_shutter_msg_t;

typedef struct camera_error_msg {
    uint32_t frame_number;
    camera_stream_t* error_stream;
    int error_code;
} camera_error_msg_t;

typedef enum camera_error_msg_code {
    CAMERA_MSG_ERROR_DEVICE = 1,
    CAMERA_MSG_ERROR_REQUEST = 2,
    CAMERA_MSG_ERROR_RESULT = 3,
    CAMERA_MSG_ERROR_BUFFER = 4,
    CAMERA_MSG_NUM_ERRORS,
} camera_error_msg_code_t;

typedef struct camera_notify_msg {
    int type;
    union {
        camera_error_msg_t error;
        camera_shutter_msg_t shutter;
    } message;
} camera_notify_msg_t;

typedef enum {
    // Keep the buffers with STATUS_ERROR in the in-flight request.
    ERROR_BUF_CACHE,
    // Return the buffers with STATUS_ERROR to their stream.
    ERROR_BUF_RETURN,
    // Return them and also notify ERROR_BUFFER.
    ERROR_BUF_RETURN_NOTIFY,
} ERROR_BUF_STRATEGY;

struct InFlightRequest {
    // Expected frame duration bounds when the request does not set one.
    static constexpr nsecs_t kDefaultMinExpectedDuration = 33333333;   // 33 ms
    static constexpr nsecs_t kDefaultMaxExpectedDuration = 100000000;  // 100 ms

    // Set by the shutter notification; 0 until then.
    nsecs_t shutterTimestamp;
    nsecs_t shutterReadoutTimestamp;
    // Set by the result metadata's sensor timestamp.
    nsecs_t sensorTimestamp;
    int requestStatus;
    // The final (or only) result metadata has arrived.
    bool haveResultMetadata;
    // Output buffers still to come back from the HAL.
    int numBuffersLeft;
    CaptureResultExtras resultExtras;
    bool hasInputBuffer;
    // Result metadata waiting for the shutter before it can be sent.
    CameraMetadata pendingMetadata;
    // Partial results collected so far, when partial results are in use.
    CameraMetadata collectedPartialResult;
    // Output buffers waiting for the shutter before they can be returned.
    Vector<camera_stream_buffer_t> pendingOutputBuffers;
    // Whether the app expects callbacks for this request.
    bool hasCallback;
    nsecs_t minExpectedDuration;
    nsecs_t maxExpectedDuration;
    // Result metadata of this request is not sent to the app.
    bool skipResultMetadata;
    ERROR_BUF_STRATEGY errorBufStrategy;
    // The physical camera ids of each output of the request.
    std::set<std::set<String8>> physicalCameraIds;
    std::vector<PhysicalCaptureResultInfo> physicalMetadatas;
    bool stillCapture;
    bool zslCapture;
    bool rotateAndCropAuto;
    std::set<std::string> cameraIdsWithZoom;
    nsecs_t requestTimeNs;
    SurfaceMap outputSurfaces;
    int32_t transform;

    InFlightRequest()
        : shutterTimestamp(0),
          shutterReadoutTimestamp(0),
          sensorTimestamp(0),
          requestStatus(OK),
          haveResultMetadata(false),
          numBuffersLeft(0),
          hasInputBuffer(false),
          hasCallback(true),
          minExpectedDuration(kDefaultMinExpectedDuration),
          maxExpectedDuration(kDefaultMaxExpectedDuration),
          skipResultMetadata(false),
          errorBufStrategy(ERROR_BUF_CACHE),
          stillCapture(false),
          zslCapture(false),
          rotateAndCropAuto(false),
          requestTimeNs(0),
          transform(-1) {}

    InFlightRequest(int numBuffers, CaptureResultExtras extras, bool hasInput, bool hasAppCallback,
                    nsecs_t minDuration, nsecs_t maxDuration,
                    const std::set<std::set<String8>>& physicalCameraIdSet, bool isStillCapture,
                    bool isZslCapture, bool rotateAndCropAuto,
                    const std::set<std::string>& idsWithZoom, nsecs_t requestNs,
                    const SurfaceMap& outSurfaces = SurfaceMap{})
        : shutterTimestamp(0),
          shutterReadoutTimestamp(0),
          sensorTimestamp(0),
          requestStatus(OK),
          haveResultMetadata(false),
          numBuffersLeft(numBuffers),
          resultExtras(extras),
          hasInputBuffer(hasInput),
          hasCallback(hasAppCallback),
          minExpectedDuration(minDuration),
          maxExpectedDuration(maxDuration),
          skipResultMetadata(false),
          errorBufStrategy(ERROR_BUF_CACHE),
          physicalCameraIds(physicalCameraIdSet),
          stillCapture(isStillCapture),
          zslCapture(isZslCapture),
          rotateAndCropAuto(rotateAndCropAuto),
          cameraIdsWithZoom(idsWithZoom),
          requestTimeNs(requestNs),
          outputSurfaces(outSurfaces),
          transform(-1) {}
};

// In-flight requests by frame number.
typedef KeyedVector<uint32_t, InFlightRequest> InFlightRequestMap;

}  // namespace camera3

}  // namespace android

#endif
