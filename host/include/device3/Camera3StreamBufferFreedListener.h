/*
 * Host stand-in of the camera server's listener told when a stream frees a buffer the HAL knew.
 */
#ifndef ANDROID_SERVERS_CAMERA3_STREAMBUFFERFREEDLISTENER_H
#define ANDROID_SERVERS_CAMERA3_STREAMBUFFERFREEDLISTENER_H

#include <cutils/native_handle.h>
#include <utils/RefBase.h>

namespace android {

namespace camera3 {

class Camera3StreamBufferFreedListener : public virtual RefBase {
public:
    // Called when a buffer of stream `streamId` is freed; `handle` is no longer valid afterwards.
    virtual void onBufferFreed(int streamId, const native_handle_t* handle) = 0;
    virtual ~Camera3StreamBufferFreedListener() {}
};

}  // namespace camera3

}  // namespace android

#endif
