/*
 * Host stand-in of the parts of the camera server's device base header that the capture path
 * refers to: the surface map of a request and the listener a device reports events to.
 */
#ifndef ANDROID_SERVERS_CAMERA_CAMERADEVICEBASE_H
#define ANDROID_SERVERS_CAMERA_CAMERADEVICEBASE_H

#include <camera/CaptureResult.h>
#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/Timers.h>

#include <unordered_map>
#include <vector>

namespace android {

namespace hardware {
class CameraStreamStats;
}  // namespace hardware

// Stream id -> the ids of the surfaces of that stream that a request targets.
typedef std::unordered_map<int, std::vector<size_t>> SurfaceMap;

// Receives the events of a camera device: errors, shutters, idle, and the API1 3A states.
class NotificationListener : public virtual RefBase {
public:
    // Required for API1 and API2.
    virtual void notifyError(int32_t errorCode, const CaptureResultExtras& resultExtras) = 0;

    // Required only for API2.
    virtual void notifyIdle(int64_t requestCount, int64_t resultErrorCount, bool deviceError,
                            const std::vector<hardware::CameraStreamStats>& streamStats) = 0;
    virtual void notifyShutter(const CaptureResultExtras& resultExtras, nsecs_t timestamp) = 0;
    virtual void notifyPrepared(int streamId) = 0;
    virtual void notifyRequestQueueEmpty() = 0;

    // Required only for API1.
    virtual void notifyAutoFocus(uint8_t newState, int triggerId) = 0;
    virtual void notifyAutoExposure(uint8_t newState, int triggerId) = 0;
    virtual void notifyAutoWhitebalance(uint8_t newState, int triggerId) = 0;
    virtual void notifyRepeatingRequestError(long lastFrameNumber) = 0;

protected:
    virtual ~NotificationListener() {}
};

}  // namespace android

#endif
