/*
 * The camera server's view of the calling thread's binder identity.
 */
#ifndef ANDROID_SERVERS_CAMERA_THREADSTATE_H
#define ANDROID_SERVERS_CAMERA_THREADSTATE_H

#include <stdint.h>

namespace android {

class CameraThreadState {
public:
    static int64_t clearCallingIdentity();
    static void restoreCallingIdentity(int64_t token);
    static int getCallingUid();
    static int getCallingPid();
};

}  // namespace android

#endif  // ANDROID_SERVERS_CAMERA_THREADSTATE_H
