/*
 * Host stand-in of the camera server's record of the buffers the HAL holds: by frame number and
 * stream for buffers sent with requests, and by buffer id for buffers the HAL asked for itself.
 */
#ifndef ANDROID_SERVERS_CAMERA3_BUFFER_UTILS_H
#define ANDROID_SERVERS_CAMERA3_BUFFER_UTILS_H

#include <cutils/native_handle.h>
#include <stdint.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>

#include <tuple>
#include <vector>

#include "device3/Camera3StreamInterface.h"

namespace android {

namespace camera3 {

class BufferRecordsInterface {
public:
    // (frame number, stream id) of every buffer sent with a request and not yet returned.
    virtual void getInflightBufferKeys(std::vector<std::tuple<uint32_t, int32_t>>* out) = 0;
    // Buffer ids of every buffer the HAL requested and has not returned.
    virtual void getInflightRequestBufferKeys(std::vector<uint64_t>* out) = 0;
    virtual std::vector<sp<Camera3StreamInterface>> getAllStreams() = 0;

    // BAD_VALUE when the key is already recorded.
    virtual status_t pushInflightBufferLocked(int32_t frameNumber, int32_t streamId,
                                              buffer_handle_t* buffer) = 0;
    // NAME_NOT_FOUND when the key is not recorded.
    virtual status_t popInflightBuffer(int32_t frameNumber, int32_t streamId,
                                       /*out*/ buffer_handle_t** buffer) = 0;

    virtual status_t pushInflightRequestBuffer(uint64_t bufferId, buffer_handle_t* buf,
                                               int32_t streamId) = 0;
    virtual status_t popInflightRequestBuffer(uint64_t bufferId, /*out*/ buffer_handle_t** buffer,
                                              /*optional out*/ int32_t* streamId = nullptr) = 0;

    virtual ~BufferRecordsInterface() {}
};

}  // namespace camera3

}  // namespace android

#endif
