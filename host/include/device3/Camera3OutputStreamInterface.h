/*
 * Host stand-in of the camera server's output stream interface (Android 13), and of StreamSet,
 * the thread-safe id-to-stream table a device keeps of its configured output streams.
 */
#ifndef ANDROID_SERVERS_CAMERA3_OUTPUT_STREAM_INTERFACE_H
#define ANDROID_SERVERS_CAMERA3_OUTPUT_STREAM_INTERFACE_H

#include <sys/types.h>
#include <utils/KeyedVector.h>
#include <utils/String8.h>

#include <mutex>
#include <vector>

#include "device3/Camera3StreamInterface.h"

namespace android {

class Surface;
class GraphicBuffer;

namespace camera3 {

// An output stream: a stream whose buffers the HAL fills and the server hands to consumers.
class Camera3OutputStreamInterface : public virtual Camera3StreamInterface {
public:
    // Transform applied to the consumer's buffers (a HAL_TRANSFORM_* value).
    virtual status_t setTransform(int transform, bool mayChangeMirror) = 0;

    virtual bool isVideoStream() const = 0;

    // Whether the consumer of `surface_id` was deferred at configuration.
    virtual bool isConsumerConfigurationDeferred(size_t surface_id = 0) const = 0;

    virtual status_t setConsumers(const std::vector<sp<Surface>>& consumers) = 0;

    virtual status_t detachBuffer(sp<GraphicBuffer>* buffer, int* fenceFd) = 0;

    virtual ssize_t getSurfaceId(const sp<Surface>& surface) = 0;

    virtual status_t getUniqueSurfaceIds(const std::vector<size_t>& surfaceIds,
                                         /*out*/ std::vector<size_t>* outUniqueIds) = 0;

    virtual status_t updateStream(const std::vector<sp<Surface>>& outputSurfaces,
                                  const std::vector<OutputStreamInfo>& outputInfo,
                                  const std::vector<size_t>& removedSurfaceIds,
                                  KeyedVector<sp<Surface>, size_t>* outputMap /*out*/) = 0;

    // While dropping, filled buffers are cancelled instead of sent to the consumer.
    virtual status_t dropBuffers(bool dropping) = 0;

    virtual const String8& getPhysicalCameraId() const = 0;

    virtual status_t setBatchSize(size_t batchSize = 1) = 0;

    virtual void onMinDurationChanged(nsecs_t duration) = 0;
};

// The output streams of a device by stream id. Every operation takes the set's lock.
class StreamSet {
public:
    // Adds or replaces the stream of `streamId`. BAD_VALUE for a null stream; otherwise the
    // stream's position in the set (0 or more), not necessarily OK.
    status_t add(int streamId, sp<camera3::Camera3OutputStreamInterface>);
    // Position the stream had, or NAME_NOT_FOUND.
    ssize_t remove(int streamId);
    // The stream of `streamId`, or null.
    sp<camera3::Camera3OutputStreamInterface> get(int streamId);
    // The stream at `index` (positions run in stream id order); null when out of range.
    sp<camera3::Camera3OutputStreamInterface> operator[](size_t index);
    size_t size() const;
    // Stream ids in ascending order.
    std::vector<int> getStreamIds();
    void clear();

    StreamSet() {}
    StreamSet(const StreamSet& other);

private:
    mutable std::mutex mLock;
    KeyedVector<int, sp<camera3::Camera3OutputStreamInterface>> mData;
};

}  // namespace camera3

}  // namespace android

#endif
