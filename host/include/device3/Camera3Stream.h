/*
 * Host stand-in of the camera server's common stream base. On a phone it implements the stream
 * interface over a buffer queue; on the host the concrete streams are hostctl's, so the base
 * adds nothing to the interface. The capture output states refer to the input stream by it.
 */
#ifndef ANDROID_SERVERS_CAMERA3_STREAM_H
#define ANDROID_SERVERS_CAMERA3_STREAM_H

#include "device3/Camera3StreamInterface.h"

namespace android {

namespace camera3 {

class Camera3Stream : public virtual Camera3StreamInterface {
protected:
    ~Camera3Stream() override {}
};

}  // namespace camera3

}  // namespace android

#endif
