/*
 * Host stand-in of the camera server's stream interface (Android 13): the HAL-shaped stream and
 * buffer structs and the pure interface every camera3 stream implements. Operations whose
 * parameter types belong to the graphics stack (Surface, GraphicBuffer, IGraphicBufferProducer)
 * keep their place in the interface with those types only declared, so the layout of the
 * interface is the server's.
 */
#ifndef ANDROID_SERVERS_CAMERA3_STREAM_INTERFACE_H
#define ANDROID_SERVERS_CAMERA3_STREAM_INTERFACE_H

#include <cutils/native_handle.h>
#include <stdint.h>
#include <system/graphics.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>
#include <utils/Timers.h>
#include <utils/Vector.h>

#include <unordered_set>
#include <vector>

#include "device3/Camera3StreamBufferFreedListener.h"
#include "device3/Camera3StreamBufferListener.h"
#include "device3/StatusTracker.h"

namespace android {

class IGraphicBufferProducer;
class CameraMetadata;

namespace camera3 {

typedef enum camera_buffer_status {
    CAMERA_BUFFER_STATUS_OK = 0,
    CAMERA_BUFFER_STATUS_ERROR = 1,
} camera_buffer_status_t;

typedef enum camera_stream_type {
    CAMERA_STREAM_OUTPUT = 0,
    CAMERA_STREAM_INPUT = 1,
    CAMERA_NUM_STREAM_TYPES,
} camera_stream_type_t;

typedef enum camera_stream_rotation {
    CAMERA_STREAM_ROTATION_0 = 0,
    CAMERA_STREAM_ROTATION_90 = 1,
    CAMERA_STREAM_ROTATION_180 = 2,
    CAMERA_STREAM_ROTATION_270 = 3,
} camera_stream_rotation_t;

// The description of a stream the HAL sees in stream configuration.
typedef struct camera_stream {
    camera_stream_type_t stream_type;
    uint32_t width;
    uint32_t height;
    int format;
    uint32_t usage;
    uint32_t max_buffers;
    android_dataspace_t data_space;
    camera_stream_rotation_t rotation;
    const char* physical_camera_id;
    std::unordered_set<int32_t> sensor_pixel_modes_used;
    int64_t dynamic_range_profile;
    int64_t use_case;
} camera_stream_t;

// One buffer of a stream as it travels between the server and the HAL.
typedef struct camera_stream_buffer {
    camera_stream_t* stream;
    buffer_handle_t* buffer;
    camera_buffer_status_t status;
    int acquire_fence;
    int release_fence;
} camera_stream_buffer_t;

struct Size {
    uint32_t width;
    uint32_t height;
    explicit Size(uint32_t w = 0, uint32_t h = 0) : width(w), height(h) {}
};

enum {
    // The stream shares buffers with no other stream.
    CAMERA3_STREAM_SET_ID_INVALID = -1,
    // Invalid output stream id.
    CAMERA3_STREAM_ID_INVALID = -1,
};

// What an output stream's consumer asked for.
class OutputStreamInfo {
public:
    int width;
    int height;
    int format;
    android_dataspace dataSpace;
    uint64_t consumerUsage;
    bool finalized = false;
    bool supportsOffline = false;
    std::unordered_set<int32_t> sensorPixelModesUsed;
    int64_t dynamicRangeProfile;
    int64_t streamUseCase;
    int timestampBase;
    int mirrorMode;

    // Dynamic range STANDARD (1), use case DEFAULT (0), timestamp base DEFAULT (0) and mirror
    // mode AUTO (0) are the platform's defaults.
    OutputStreamInfo()
        : width(-1),
          height(-1),
          format(-1),
          dataSpace(HAL_DATASPACE_UNKNOWN),
          consumerUsage(0),
          dynamicRangeProfile(1),
          streamUseCase(0),
          timestampBase(0),
          mirrorMode(0) {}
    OutputStreamInfo(int _width, int _height, int _format, android_dataspace _dataSpace,
                     uint64_t _consumerUsage,
                     const std::unordered_set<int32_t>& _sensorPixelModesUsed,
                     int64_t _dynamicRangeProfile, int64_t _streamUseCase, int _timestampBase,
                     int _mirrorMode)
        : width(_width),
          height(_height),
          format(_format),
          dataSpace(_dataSpace),
          consumerUsage(_consumerUsage),
          sensorPixelModesUsed(_sensorPixelModesUsed),
          dynamicRangeProfile(_dynamicRangeProfile),
          streamUseCase(_streamUseCase),
          timestampBase(_timestampBase),
          mirrorMode(_mirrorMode) {}
};

// A single stream of input and/or output data of the camera device.
class Camera3StreamInterface : public virtual RefBase {
public:
    enum {
        ALLOCATE_PIPELINE_MAX = 0,  // allocate the most buffers the pipeline needs
    };

    virtual int getId() const = 0;
    virtual int getStreamSetId() const = 0;
    virtual bool isMultiResolution() const = 0;
    virtual int getHalStreamGroupId() const = 0;

    virtual uint32_t getWidth() const = 0;
    virtual uint32_t getHeight() const = 0;
    virtual int getFormat() const = 0;
    virtual int64_t getDynamicRangeProfile() const = 0;
    virtual android_dataspace getDataSpace() const = 0;

    virtual void setFormatOverride(bool formatOverriden) = 0;
    virtual bool isFormatOverridden() const = 0;
    virtual int getOriginalFormat() const = 0;
    virtual void setDataSpaceOverride(bool dataSpaceOverriden) = 0;
    virtual bool isDataSpaceOverridden() const = 0;
    virtual android_dataspace getOriginalDataSpace() const = 0;

    // Buffers the HAL may hold at once, and that count plus the consumer's own.
    virtual int getMaxHalBuffers() const = 0;
    virtual int getMaxTotalBuffers() const = 0;

    virtual void setOfflineProcessingSupport(bool support) = 0;
    virtual bool getOfflineProcessingSupport() const = 0;

    // The HAL's description of the stream, without starting configuration.
    virtual camera_stream* asHalStream() = 0;

    // Starts configuration and returns the description to pass to the HAL, whose usage and
    // max_buffers may change until finishConfiguration(). NULL on error.
    virtual camera_stream* startConfiguration() = 0;

    // True between startConfiguration() and finishConfiguration().
    virtual bool isConfiguring() const = 0;

    // Completes configuration. OK, NO_INIT (HAL error), NO_MEMORY (buffer registration failed)
    // or INVALID_OPERATION (consumer connection failed, or configuration not started).
    virtual status_t finishConfiguration(/*out*/ bool* streamReconfigured = nullptr) = 0;

    // Returns the stream to its state before startConfiguration().
    virtual status_t cancelConfiguration() = 0;

    virtual bool isUnpreparable() = 0;
    virtual void markUnpreparable() = 0;
    virtual status_t startPrepare(int maxCount, bool blockRequest) = 0;
    virtual bool isBlockedByPrepare() const = 0;
    virtual status_t prepareNextBuffer() = 0;
    virtual status_t cancelPrepare() = 0;
    virtual status_t tearDown() = 0;

    // Fills `buffer` with the next free buffer of the stream for the HAL. When the HAL already
    // holds every buffer, waits up to `waitBufferTimeout` for one to come back.
    virtual status_t getBuffer(camera_stream_buffer* buffer, nsecs_t waitBufferTimeout,
                               const std::vector<size_t>& surface_ids = std::vector<size_t>()) = 0;

    struct OutstandingBuffer {
        camera_stream_buffer* outBuffer;
        std::vector<size_t> surface_ids;
    };
    virtual status_t getBuffers(std::vector<OutstandingBuffer>* buffers,
                                nsecs_t waitBufferTimeout) = 0;

    // Gives a buffer from getBuffer() back to the stream, filled (status OK) or not (ERROR).
    virtual status_t returnBuffer(const camera_stream_buffer& buffer, nsecs_t timestamp,
                                  nsecs_t readoutTimestamp, bool timestampIncreasing = true,
                                  const std::vector<size_t>& surface_ids = std::vector<size_t>(),
                                  uint64_t frameNumber = 0, int32_t transform = -1) = 0;

    virtual status_t getInputBuffer(camera_stream_buffer* buffer, Size* size,
                                    bool respectHalLimit = true) = 0;
    virtual status_t returnInputBuffer(const camera_stream_buffer& buffer) = 0;
    virtual status_t getInputBufferProducer(sp<IGraphicBufferProducer>* producer) = 0;

    // Whether the HAL holds any of the stream's buffers.
    virtual bool hasOutstandingBuffers() const = 0;
    virtual size_t getOutstandingBuffersCount() const = 0;

    enum { TIMEOUT_NEVER = -1 };

    virtual status_t setStatusTracker(sp<StatusTracker> statusTracker) = 0;

    // Disconnects the stream from its consumer; configuration must start again afterwards.
    virtual status_t disconnect() = 0;
    virtual bool isAbandoned() const = 0;

    virtual void dump(int fd, const Vector<String16>& args) const = 0;

    virtual void addBufferListener(wp<Camera3StreamBufferListener> listener) = 0;
    virtual void removeBufferListener(const sp<Camera3StreamBufferListener>& listener) = 0;
    virtual status_t setBufferFreedListener(wp<Camera3StreamBufferFreedListener> listener) = 0;

    virtual void fireBufferRequestForFrameNumber(uint64_t frameNumber,
                                                 const CameraMetadata& settings) = 0;
};

}  // namespace camera3

}  // namespace android

#endif
