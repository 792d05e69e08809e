/*
 * Host stand-in of the camera server's buffer listener: told when a stream hands a buffer to the
 * camera HAL and when the HAL gives it back.
 */
#ifndef ANDROID_SERVERS_CAMERA3_STREAMBUFFERLISTENER_H
#define ANDROID_SERVERS_CAMERA3_STREAMBUFFERLISTENER_H

#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/Timers.h>

namespace android {

class CameraMetadata;

namespace camera3 {

class Camera3StreamBufferListener : public virtual RefBase {
public:
    struct BufferInfo {
        bool mOutput;  // if false then input buffer
        nsecs_t mTimestamp;
        bool mError;
        uint64_t mFrameNumber;
    };

    // A buffer was handed to the HAL.
    virtual void onBufferAcquired(const BufferInfo& bufferInfo) = 0;
    // A buffer came back from the HAL.
    virtual void onBufferReleased(const BufferInfo& bufferInfo) = 0;
    // A buffer was requested for a request with these settings.
    virtual void onBufferRequestForFrameNumber(uint64_t frameNumber, int streamId,
                                               const CameraMetadata& settings) = 0;

    virtual ~Camera3StreamBufferListener() {}
};

}  // namespace camera3

}  // namespace android

#endif
